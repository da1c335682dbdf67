#include "cli/Terminal.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace tidewright {

namespace {

// Narrower windows wrap by themselves: a report for less is not readable anyway.
constexpr std::size_t fewestColumns = 40;
constexpr std::size_t usualColumns = 80;

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

bool isDumb() {
    const char* kind = std::getenv("TERM");
    return kind == nullptr || std::string_view(kind) == "dumb";
}

std::size_t columnsOf(int descriptor) {
    winsize size = {};
    if (ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return usualColumns;
    return std::max<std::size_t>(size.ws_col, fewestColumns);
}

/// Select Graphic Rendition of ECMA-48.
const char* escapeOf(Ink ink) {
    switch (ink) {
    case Ink::bold:
        return "\x1b[1m";
    case Ink::dim:
        return "\x1b[2m";
    case Ink::green:
        return "\x1b[32m";
    case Ink::yellow:
        return "\x1b[33m";
    case Ink::blue:
        return "\x1b[34m";
    case Ink::plain:
        break;
    }
    return "";
}

} // namespace

std::string Terminal::inked(Ink ink, std::string_view text) const {
    if (!hasColour || ink == Ink::plain)
        return std::string(text);
    return std::string(escapeOf(ink)).append(text).append("\x1b[0m");
}

bool holdStandardStreams() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) != -1)
            continue;
        // For the direction that is of no use; the lowest descriptor that is free is this one.
        const int flags = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        if (open("/dev/null", flags) != descriptor)
            return false;
    }
    return true;
}

Terminal terminalOf(std::FILE* stream) {
    const int descriptor = fileno(stream);
    Terminal terminal;
    terminal.isTerminal = isatty(descriptor) == 1;
    if (!terminal.isTerminal)
        return terminal;
    terminal.hasColour = !isSet("NO_COLOR") && !isDumb();
    terminal.columns = columnsOf(descriptor);
    return terminal;
}

bool writeAll(std::FILE* stream, std::string_view text) {
    return std::fwrite(text.data(), 1, text.size(), stream) == text.size() &&
           std::fflush(stream) == 0;
}

bool canAsk() { return terminalOf(stdin).isTerminal && terminalOf(stderr).isTerminal; }

std::optional<std::string> answerTo(std::string_view question) {
    tcflush(STDIN_FILENO, TCIFLUSH);
    writeAll(stderr, question);
    std::string answer;
    if (std::getline(std::cin, answer))
        return answer;
    writeAll(stderr, "\n");
    return std::nullopt;
}

} // namespace tidewright
