// What the standard streams are connected to, and the few escapes that we use there.
#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace tidewright {

enum class Ink { plain, bold, dim, green, yellow, blue };

struct Terminal {
    bool isTerminal = false;
    bool hasColour = false;             ///< a terminal, and the user has not declined (NO_COLOR)
    std::optional<std::size_t> columns; ///< absent: lines may be of any length

    std::string inked(Ink ink, std::string_view text) const;
};

/// To be called first: a standard stream that the caller has closed becomes one on which nothing
/// can be read or written. Otherwise the next file that is opened would take its place, and get
/// what is meant for people. False where that can't be done.
bool holdStandardStreams();

/// The terminal behind a standard stream, as it is now.
Terminal terminalOf(std::FILE* stream);

/// Writes all of `text` and flushes; false when the stream does not take it (a full disk).
bool writeAll(std::FILE* stream, std::string_view text);

/// Whether somebody can be asked: who reads standard error and types into standard input.
bool canAsk();

/// Puts a question on standard error and waits for the line that is typed as its answer. What was
/// typed before the question counts for nothing. Absent where no line comes.
std::optional<std::string> answerTo(std::string_view question);

} // namespace tidewright
