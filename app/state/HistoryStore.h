// The record of past cleanups, in one file of the user's.
#pragma once

#include "core/model/CleanSummary.h"
#include "core/platform/SystemLog.h"
#include "core/support/Result.h"

#include <QObject>

#include <algorithm>

namespace tidewright {

/// One finished cleanup. Its coded form is that of the history file: locations as `file://` URLs,
/// dates as seconds since 2001-01-01 UTC.
struct HistoryEntry {
    std::string id;             ///< a UUID, upper case
    Date date;                  ///< of the end
    Int64 measuredGain = 0;     ///< in available bytes; negative when others wrote meanwhile
    Int64 estimatedFreed = 0;   ///< bytes, as the scan measured them
    Int64 movedToTrash = 0;     ///< bytes that are not free yet
    Int64 itemCount = 0;        ///< cleaned or moved to the Trash
    Int64 failures = 0;         ///< tried in vain; what was skipped counts nowhere
    std::optional<URL> logFile; ///< the audit log

    /// In bytes, the larger of measured gain and estimate: others may have spoilt the one, and the
    /// other may fall short.
    Int64 freed() const { return std::max(measuredGain, estimatedFreed); }

    bool operator==(const HistoryEntry&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("id", &HistoryEntry::id),
                          field("date", &HistoryEntry::date),
                          field("measuredGain", &HistoryEntry::measuredGain),
                          field("estimatedFreed", &HistoryEntry::estimatedFreed),
                          field("movedToTrash", &HistoryEntry::movedToTrash),
                          field("itemCount", &HistoryEntry::itemCount),
                          field("failures", &HistoryEntry::failures),
                          field("logFile", &HistoryEntry::logFile)};
    }
};

/// Main thread only; the file is small and is read and written there. No failure is reported but to
/// the log: what can't be saved is kept in memory and saved with the next cleanup.
class HistoryStore : public QObject {
    Q_OBJECT

public:
    /// Reads `history.json` in the folder, which need not exist.
    explicit HistoryStore(const URL& directory, QObject* parent = nullptr);

    /// Adds an entry and replaces the file; a file that holds no history is first put aside as
    /// `history.json.unreadable`, and one that can't be read at all is left as it is. What other
    /// programs have added since comes in as well: they take turns by `history.json.lock`.
    void record(const CleanSummary& summary);

    const std::vector<HistoryEntry>& entries() const { return m_entries; } ///< oldest first
    /// In bytes, of each cleanup the larger of measured gain and estimate. A sum that bytes can't
    /// hold ends the program.
    Int64 totalFreed() const;
    const URL& fileURL() const { return m_fileURL; }

Q_SIGNALS:
    void entriesChanged();

private:
    Result<void, SystemError> save();
    /// Takes in what others have put into the file, or puts aside what is no history.
    Result<void, SystemError> mergeFile();

    std::vector<HistoryEntry> m_entries;
    URL m_fileURL;
    Logger m_logger{"com.tidewright.app", "history"};
};

} // namespace tidewright
