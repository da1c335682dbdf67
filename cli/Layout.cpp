#include "cli/Layout.h"

#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace tidewright {

namespace {

std::string blanksUpTo(std::size_t columns, std::string_view text) {
    const std::size_t width = displayWidth(text);
    return std::string(columns > width ? columns - width : 0, ' ');
}

std::optional<std::size_t> columnsLeft(const Terminal& terminal, std::size_t taken) {
    if (!terminal.columns)
        return std::nullopt;
    return *terminal.columns - std::min(*terminal.columns - 1, taken);
}

} // namespace

std::string padded(std::string_view text, std::size_t columns) {
    return std::string(text) + blanksUpTo(columns, text);
}

std::string rightAligned(std::string_view text, std::size_t columns) {
    return blanksUpTo(columns, text).append(text);
}

std::vector<std::string> paragraph(std::string_view text, std::optional<std::size_t> columns) {
    if (!columns)
        return {printable(text)};
    return wrapped(printable(text), *columns);
}

std::string indentedParagraph(std::string_view text,
                              std::size_t indentation,
                              const Terminal& terminal,
                              Ink ink) {
    std::string result;
    for (const std::string& line : paragraph(text, columnsLeft(terminal, indentation)))
        result += std::string(indentation, ' ') + terminal.inked(ink, line) + "\n";
    return result;
}

std::string fitted(std::string_view text, std::size_t columnsTaken, const Terminal& terminal) {
    const std::string line = printable(text);
    return elidedMiddle(line, columnsLeft(terminal, columnsTaken).value_or(std::string::npos));
}

std::string titleOf(const ScanItem& item) {
    if (!item.version || contains(item.title, *item.version))
        return printable(item.title);
    return printable(item.title + " " + *item.version);
}

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

} // namespace tidewright
