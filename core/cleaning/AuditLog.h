// The record on disk of what one cleanup did: JSON Lines, one flat object of strings per line. The
// keys are sorted, the objects compact, and a slash in a text is written "\/". A line without its
// line end, which only a program that was killed leaves, is not whole.
//
// The log is a side record: no failure of it is reported or interferes with the cleaning.
#pragma once

#include "core/model/CleanSummary.h"
#include "core/model/ScanItem.h"
#include "core/platform/LogFile.h"

#include <map>

namespace tidewright {

/// One per cleanup; closed when it is destroyed. Touched by one thread only, so that lines stand in
/// the order in which things ended.
class AuditLog {
public:
    /// Makes the file "clean-2026-03-01T10-30-00.jsonl", named by the user's local time, in a
    /// folder that is made where it is missing.
    AuditLog(const URL& directory, Date date);

    /// Absent where the file could not be made: then nothing is written.
    std::optional<URL> fileURL() const;

    /// Appends one line with these texts and, under "time", the moment of writing.
    void write(std::map<std::string, std::string> line);

    /// Appends the line of an item that was processed.
    void record(const ScanItem& item, const CleanOutcome& outcome);

private:
    std::optional<LogFile> m_file;
};

} // namespace tidewright
