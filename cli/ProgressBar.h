// A live bar for the progress of a scan; silent where there is no terminal.
#pragma once

#include "cli/LiveLine.h"
#include "core/model/ScanProgress.h"

namespace tidewright {

/// The line of the bar, without any escape: "█████░░░░░  42 %  Measuring sizes… 3 of 12".
std::string progressLine(const ScanProgress& progress, std::size_t columns);

/// Draws on one line of a stream and leaves that line empty at its end. One thread at a time.
class ProgressBar {
public:
    explicit ProgressBar(std::FILE* stream) : m_line(stream) {}

    void show(const ScanProgress& progress) {
        m_line.show(progressLine(progress, m_line.columns()));
    }

private:
    LiveLine m_line;
};

} // namespace tidewright
