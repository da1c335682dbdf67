// Pieces from which the commands lay out what people read in a terminal.
#pragma once

#include "cli/Terminal.h"
#include "core/model/ScanItem.h"

#include <vector>

namespace tidewright {

/// With blanks behind it, up to so many columns.
std::string padded(std::string_view text, std::size_t columns);

/// With blanks before it, up to so many columns.
std::string rightAligned(std::string_view text, std::size_t columns);

/// The lines of a paragraph, made printable; one line where there is no limit.
std::vector<std::string> paragraph(std::string_view text, std::optional<std::size_t> columns);

/// The same as text, each line behind so many blanks and within the terminal.
std::string indentedParagraph(std::string_view text,
                              std::size_t indentation,
                              const Terminal& terminal,
                              Ink ink = Ink::plain);

/// A text behind the columns of its line that are taken, made printable and cut to what is left.
std::string fitted(std::string_view text, std::size_t columnsTaken, const Terminal& terminal);

/// With the version, which tells items of one title apart; printable.
std::string titleOf(const ScanItem& item);

/// "1 item", "2 items".
std::string counted(std::size_t count, std::string_view one, std::string_view many);

} // namespace tidewright
