// The state of the program: its settings, history and picture of the disk, the screen that is
// shown, the last scan, what the user has selected, and the cleanup under review.
#pragma once

#include "app/state/AppEnvironment.h"
#include "app/state/CleaningSession.h"
#include "app/state/HistoryStore.h"

#include <unordered_set>

namespace tidewright {

/// What the main window shows.
struct Destination {
    struct OfCategory {
        Category category = Category::android;
        bool operator==(const OfCategory&) const = default;
        static constexpr auto fields() { return std::tuple{field("_0", &OfCategory::category)}; }
    };
    struct Overview {
        bool operator==(const Overview&) const = default;
        static constexpr auto fields() { return std::tuple{}; }
    };
    struct Insights {
        bool operator==(const Insights&) const = default;
        static constexpr auto fields() { return std::tuple{}; }
    };
    struct Apps {
        bool operator==(const Apps&) const = default;
        static constexpr auto fields() { return std::tuple{}; }
    };
    struct History {
        bool operator==(const History&) const = default;
        static constexpr auto fields() { return std::tuple{}; }
    };

    static constexpr std::array<std::string_view, 5> cases{"category", "overview", "insights",
                                                           "apps", "history"};
    std::variant<OfCategory, Overview, Insights, Apps, History> choice = Overview{};

    static Destination category(Category category) { return {OfCategory{category}}; }
    static Destination overview() { return {Overview{}}; }
    static Destination insights() { return {Insights{}}; }
    static Destination apps() { return {Apps{}}; }
    static Destination history() { return {History{}}; }

    bool operator==(const Destination&) const = default;
};

struct ScanState {
    struct Idle { ///< nothing was scanned yet
        bool operator==(const Idle&) const = default;
    };
    struct Scanning {
        ScanProgress progress;
        bool operator==(const Scanning&) const = default;
    };
    struct Ready { ///< there is a report
        bool operator==(const Ready&) const = default;
    };
    struct Failed {
        std::string sentence; ///< for the user
        bool operator==(const Failed&) const = default;
    };
    std::variant<Idle, Scanning, Ready, Failed> choice;

    bool operator==(const ScanState&) const = default;
};

/// What the selected items of a report come to.
struct SelectionSums {
    bool hasItems = false; ///< that may be selected
    Int64 bytes = 0;       ///< of these
    /// By category, of all whose id is selected, in bytes.
    std::array<Int64, EnumCases<Category>::cases.size()> reclaimable{};
};

/// Main thread only. Operations return at once; what they start comes back later, and not at all
/// once the model is gone. A signal comes only when a value has changed.
class AppModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString destinationName READ destinationName WRITE setDestinationName NOTIFY
                   destinationChanged)
    Q_PROPERTY(bool hasFullDiskAccess READ hasFullDiskAccess NOTIFY hasFullDiskAccessChanged)

public:
    /// `defaults` and `workers` must outlive this.
    AppModel(AppEnvironment environment,
             DefaultsStore& defaults,
             Workers& workers,
             QObject* parent = nullptr);
    /// Cancels a scan and a cleanup under way; `workers` waits for their end.
    ~AppModel() override;

    const AppEnvironment& environment() const { return m_environment; }
    SettingsStore& settings() { return m_settings; }
    HistoryStore& history() { return m_history; }
    DiskMonitor& monitor() { return m_monitor; }

    const Destination& destination() const { return m_destination; }
    void setDestination(Destination destination);
    /// The name of a screen, or the raw value of a category.
    QString destinationName() const;
    /// Does nothing where no screen is called so.
    void setDestinationName(const QString& name);

    const ScanState& scanState() const { return m_scanState; }
    bool isScanning() const;
    /// The last finished scan, without what has been cleaned since; null when there is none. What
    /// it points to never changes: a change comes as another report.
    const std::shared_ptr<const ScanReport>& report() const { return m_report; }
    bool hasFullDiskAccess() const { return m_hasFullDiskAccess; }
    /// Whether the system protects files of the user and the user has not let the program read
    /// them.
    bool asksForFullDiskAccess() const;
    /// Finds out anew.
    Q_INVOKABLE void checkFullDiskAccess();
    /// Opens the place where the user can grant it.
    Q_INVOKABLE void openFullDiskAccessSettings();

    /// Does nothing while a scan runs.
    Q_INVOKABLE void scan();
    Q_INVOKABLE void cancelScan();

    /// Whether a user may pick the item for cleaning.
    static bool maySelect(const ScanItem& item);
    /// Whether the item's id is selected; ids of items that may not be are also found here.
    bool isSelected(const std::string& itemID) const { return m_selection.contains(itemID); }
    const std::unordered_set<std::string>& selection() const { return m_selection; }
    void setSelected(const ScanItem& item, bool on);
    /// What would go into a review now, in report order.
    std::vector<ScanItem> selectedItems() const;
    bool hasSelectedItems() const;
    Int64 selectedBytes() const; ///< of `selectedItems`
    /// Bytes of everything in the category whose id is selected.
    Int64 reclaimable(Category category) const;

    /// The pass through review and cleaning; null when there is none.
    CleaningSession* session() const { return m_session.get(); }
    /// Opens a session on what is selected.
    Q_INVOKABLE void reviewSelection();
    /// Selects these items besides the others and opens a session on these alone.
    void review(const std::vector<std::string>& itemIDs);
    /// Leaves the review, or its results. A cleanup under way goes on.
    Q_INVOKABLE void closeSession();
    /// Does what the insight proposes.
    void perform(const Insight& insight);
    /// Cleans what the session holds; at its end history and report are brought up to date.
    Q_INVOKABLE void startCleaning();
    /// Ends the listening to a cleanup under way: its phase stays as it is, and nothing of it is
    /// recorded.
    Q_INVOKABLE void stopCleaning();

    /// The keys `TWDestination` and `TWScanOnLaunch`.
    void applyLaunchArguments(const DefaultsStore& defaults);

    /// Shows those of the locations that exist in the file manager.
    void reveal(const std::vector<URL>& urls);

    /// What may be touched when these are the projects.
    PathPolicy policy(const std::vector<Project>& projects) const;
    /// What `startCleaning` cleans with; there must be a report.
    Cleaner cleaner() const;
    /// What `scan` scans with.
    DiskScanner scanner() const;

Q_SIGNALS:
    void destinationChanged();
    void scanStateChanged();
    void reportChanged();
    void selectionChanged();
    void sessionChanged();
    void hasFullDiskAccessChanged();

private:
    using ScanResult = Result<std::shared_ptr<const ScanReport>, ScanFailure>;

    const SelectionSums& sums() const;
    void selectionHasChanged();
    void setScanState(ScanState state);
    void setSession(std::shared_ptr<CleaningSession> session);
    void setReport(std::shared_ptr<const ScanReport> report);
    void endScan(const ScanResult& result);
    void leaveScanning();
    bool isChosen(const ScanItem& item) const;
    void endCleaning(const CleanSummary& summary, CleaningSession* session);
    void applyResults(const CleanSummary& summary);
    void setSelection(std::unordered_set<std::string> selection);

    AppEnvironment m_environment;
    Workers& m_workers;
    SettingsStore m_settings;
    HistoryStore m_history;
    DiskMonitor m_monitor;
    Destination m_destination;
    ScanState m_scanState;
    std::shared_ptr<const ScanReport> m_report;
    std::unordered_set<std::string> m_selection;
    mutable std::optional<SelectionSums> m_sums; ///< absent until asked for
    std::shared_ptr<CleaningSession> m_session;
    std::vector<std::shared_ptr<CleaningSession>> m_cleaning; ///< those that clean just now
    bool m_hasFullDiskAccess = false;
    std::optional<CancelSource> m_scanCancel;
    Logger m_logger{"com.tidewright.app", "model"};
};

} // namespace tidewright
