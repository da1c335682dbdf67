// The items of the cleanup under review: before it by method, during it with what has become of
// each, after it those that were not cleaned.
#pragma once

#include "app/state/AppModel.h"
#include "app/state/CleanResults.h"
#include "app/state/RowModel.h"

namespace tidewright {

/// Main thread only. Empty while the AppModel has no session; when the AppModel is gone it goes on
/// showing what it showed.
class SessionListModel : public RecordModel<ScanItem> {
    Q_OBJECT
    Q_PROPERTY(tidewright::CleaningSession::Phase phase READ phase NOTIFY phaseChanged)
    Q_PROPERTY(QString face READ face NOTIFY faceChanged)
    Q_PROPERTY(tidewright::CleanResults results READ results NOTIFY resultsChanged)
    Q_PROPERTY(tidewright::ByteCount totalSize READ totalSize NOTIFY figuresChanged)
    Q_PROPERTY(tidewright::ByteCount permanent READ permanent NOTIFY figuresChanged)
    Q_PROPERTY(tidewright::ByteCount toTrash READ toTrash NOTIFY figuresChanged)
    Q_PROPERTY(int attentionCount READ attentionCount NOTIFY figuresChanged)
    Q_PROPERTY(QString attentionText READ attentionText NOTIFY figuresChanged)
    Q_PROPERTY(QString cleanTitle READ cleanTitle NOTIFY figuresChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QString progressText READ progressText NOTIFY progressChanged)

public:
    enum class Role {
        itemID = Qt::UserRole, ///< bytes; they need not be UTF-8
        title,
        version, ///< empty where there is none
        sizeBytes,
        sizeText,
        methodGroup,
        detail,
        attention, ///< whether the detail is something to look at
        /// Empty under review; else "pending", "running", "skipped", "failed", "cleaned" or
        /// "movedToTrash".
        state,
        symbolName, ///< empty while it runs
        stateTitle, ///< the state as a reader says it; empty under review
        tint,       ///< of the symbol: "secondary", "accent", "green", "orange" or "red"
    };
    Q_ENUM(Role)

    explicit SessionListModel(AppModel& model, QObject* parent = nullptr);

    CleaningSession::Phase phase() const { return m_phase; }
    /// "review", "cleaning" or "finished"; empty where there is no session.
    const QString& face() const { return m_face; }
    const CleanResults& results() const { return m_results; } ///< empty unless finished
    ByteCount totalSize() const { return m_figures.total; }
    ByteCount permanent() const { return m_figures.permanent; } ///< gone for good
    ByteCount toTrash() const { return m_figures.trash; }
    int attentionCount() const { return m_figures.attention; }
    QString attentionText() const; ///< empty where nothing asks for attention
    QString cleanTitle() const;
    double progress() const; ///< from 0 to 1
    QString progressText() const;

    /// Shows the audit log of a finished cleanup in the file manager.
    Q_INVOKABLE void showAuditLog();

Q_SIGNALS:
    void phaseChanged();
    void faceChanged();
    void resultsChanged();
    void figuresChanged();
    void progressChanged();

protected:
    QVariant value(std::size_t position, int role) const override;
    std::string_view key(const ScanItem& item) const override { return item.id; }

private:
    struct Figures {
        ByteCount total;
        ByteCount permanent;
        ByteCount trash;
        int attention = 0;
        bool operator==(const Figures&) const = default;
    };

    struct Progress {
        std::size_t completed = 0;
        std::size_t total = 0;
        bool operator==(const Progress&) const = default;
    };

    void takeSession();
    void takePhase();
    void takeFace();
    void takeResults();
    void takeState(const std::string& itemID);
    void takeProgress();
    void takeFigures();
    Rows rowsOf(const CleaningSession& session) const;
    Rows failures(const CleanSummary& summary) const;
    QString detail(std::size_t position) const;
    bool asksForAttention(std::size_t position) const;

    QPointer<AppModel> m_model;
    QPointer<CleaningSession> m_session;
    CleaningSession::Phase m_phase = CleaningSession::Phase::review;
    QString m_face;
    CleanResults m_results;
    std::vector<CleaningSession::ItemState> m_states;               ///< by position
    std::unordered_map<std::string_view, std::size_t> m_positionOf; ///< of the records, by id
    Figures m_figures;
    Progress m_progress;
};

} // namespace tidewright
