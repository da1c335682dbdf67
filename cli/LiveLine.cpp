#include "cli/LiveLine.h"

#include "core/support/Text.h"

namespace tidewright {

namespace {

constexpr const char* toLineStart = "\r\x1b[K"; // and erase to the line's end

} // namespace

LiveLine::LiveLine(std::FILE* stream) : m_stream(stream), m_terminal(terminalOf(stream)) {}

LiveLine::~LiveLine() { clear(); }

void LiveLine::show(std::string_view text) {
    if (m_terminal.isTerminal)
        writeAll(m_stream, toLineStart + elidedMiddle(text, columns()));
}

void LiveLine::clear() {
    if (m_terminal.isTerminal)
        writeAll(m_stream, toLineStart);
}

std::size_t LiveLine::columns() const {
    // One column stays free: a full line would wrap.
    return m_terminal.columns.value_or(80) - 1;
}

} // namespace tidewright
