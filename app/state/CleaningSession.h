// One pass through review and cleaning: the frozen list of items, the phase of the pass, and what
// has become of each item. It cleans nothing itself.
#pragma once

#include "app/state/Workers.h"
#include "core/cleaning/Cleaner.h"

#include <QObject>

#include <unordered_map>

namespace tidewright {

/// Main thread only. It must not be destroyed while it cleans, except to end the program: that
/// cancels the cleanup.
class CleaningSession : public QObject {
    Q_OBJECT

public:
    enum class Phase { review, cleaning, finished };
    Q_ENUM(Phase)

    struct ItemState {
        struct Pending {
            bool operator==(const Pending&) const = default;
        };
        struct Running {
            bool operator==(const Running&) const = default;
        };
        struct Done {
            CleanOutcome::Status status;
            bool operator==(const Done&) const = default;
        };
        std::variant<Pending, Running, Done> choice;

        bool operator==(const ItemState&) const = default;
    };

    /// Two items with one id end the program.
    explicit CleaningSession(std::vector<ScanItem> items, QObject* parent = nullptr);
    ~CleaningSession() override;

    const std::string& id() const { return m_id; }                 ///< a UUID
    const std::vector<ScanItem>& items() const { return m_items; } ///< largest first
    Phase phase() const { return m_phase; }
    const std::optional<CleanSummary>& summary() const { return m_summary; } ///< when finished
    /// Pending for an id that nobody knows.
    ItemState state(const std::string& itemID) const;

    Int64 totalBytes() const;
    Int64 permanentBytes() const; ///< of what is gone for good
    Int64 trashBytes() const;     ///< of what goes to the Trash
    /// Items to check or leave, and items of projects.
    static bool needsAttention(const ScanItem& item);
    std::vector<ScanItem> needsAttention() const;
    std::size_t completedCount() const { return m_completedCount; }

    /// Cleans on other threads and returns at once; once in a session, later calls do nothing.
    /// `onFinish` is called with the summary, unless the session was stopped.
    void run(const Cleaner& cleaner,
             Workers& workers,
             std::function<void(const CleanSummary&)> onFinish);

    /// Stops listening, which also tells the cleaner to begin nothing further. What has been said
    /// is still heard, the summary is not: the phase stays `cleaning`.
    void stop();

    /// Has the cleaner begin nothing further; what is under way ends, and the summary comes.
    void windUp();

Q_SIGNALS:
    void phaseChanged();
    void stateChanged(const std::string& itemID);
    void completedCountChanged();

private:
    void hear(const CleanEvent& event);
    void setState(const std::string& itemID, ItemState state);

    std::string m_id;
    std::vector<ScanItem> m_items;
    Phase m_phase = Phase::review;
    std::optional<CleanSummary> m_summary;
    std::unordered_map<std::string, ItemState> m_states;
    std::size_t m_completedCount = 0;
    std::function<void(const CleanSummary&)> m_onFinish;
    CancelSource m_stop;
    CancelSource m_windUp;
};

} // namespace tidewright
