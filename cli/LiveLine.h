// One line of a terminal that is written anew again and again; silent where there is no terminal.
#pragma once

#include "cli/Terminal.h"

namespace tidewright {

/// Leaves its line empty at its end. One thread at a time.
class LiveLine {
public:
    explicit LiveLine(std::FILE* stream);
    ~LiveLine();
    LiveLine(const LiveLine&) = delete;
    LiveLine& operator=(const LiveLine&) = delete;

    /// The text is cut to what the line holds.
    void show(std::string_view text);
    /// Makes room for other output.
    void clear();

    /// How many columns a text may take without being cut.
    std::size_t columns() const;

private:
    std::FILE* m_stream;
    Terminal m_terminal;
};

} // namespace tidewright
