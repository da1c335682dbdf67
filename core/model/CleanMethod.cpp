#include "core/model/CleanMethod.h"

namespace tidewright {

std::string ShellCommand::displayString() const {
    std::string line = tool;
    for (const std::string& argument : arguments) {
        const bool quoted = argument.find(' ') != std::string::npos;
        line += quoted ? " '" + argument + "'" : " " + argument;
    }
    return line;
}

Int64 SizeSource::initialBytes() const {
    const auto* known = std::get_if<Known>(&choice);
    return known != nullptr ? known->bytes : 0;
}

} // namespace tidewright
