#include "cli/CommandLine.h"

int main(int argumentCount, char** arguments) {
    return tidewright::runCommandLine(argumentCount, arguments);
}
