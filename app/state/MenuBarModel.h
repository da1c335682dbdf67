// What the status item and its panel say; what they have in common with the overview is there.
#pragma once

#include "app/state/InsightListModel.h"

#include <QTimer>

namespace tidewright {

/// The text of the status item: "9.9 GB", "128 GB".
QString compactText(Int64 bytes);

/// Main thread only. When the AppModel is gone it goes on showing what it showed.
class MenuBarModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString health READ health NOTIFY statusChanged)
    Q_PROPERTY(QString pillText READ pillText NOTIFY statusChanged)
    Q_PROPERTY(QString sentence READ sentence NOTIFY statusChanged)
    Q_PROPERTY(QString availableText READ availableText NOTIFY statusChanged)
    Q_PROPERTY(QString availableCaption READ availableCaption NOTIFY statusChanged)
    Q_PROPERTY(QString trashText READ trashText NOTIFY trashTextChanged)
    Q_PROPERTY(QString checkedText READ checkedText NOTIFY checkedTextChanged)
    Q_PROPERTY(QString action READ action NOTIFY actionChanged)
    Q_PROPERTY(QString actionTitle READ actionTitle NOTIFY actionChanged)
    Q_PROPERTY(bool isWatched READ isWatched WRITE setWatched NOTIFY isWatchedChanged)
    Q_PROPERTY(tidewright::InsightListModel* insights READ insights CONSTANT)

public:
    explicit MenuBarModel(AppModel& model,
                          std::function<Date()> now = currentDate,
                          QObject* parent = nullptr);

    const QString& health() const { return m_status.health; }     ///< "good", "low" or "critical"
    const QString& pillText() const { return m_status.pillText; } ///< empty where none is shown
    const QString& sentence() const {
        return m_status.sentence;
    } ///< what a reader says of the pill
    const QString& availableText() const { return m_status.availableText; }
    const QString& availableCaption() const { return m_status.availableCaption; }
    const QString& trashText() const { return m_trashText; } ///< empty where the Trash is
    /// When the disk was last measured; empty before. While nobody watches it grows old.
    const QString& checkedText() const { return m_checkedText; }
    const QString& action() const { return m_action.name; } ///< "scan", "scanning" or "review"
    const QString& actionTitle() const { return m_action.title; }
    /// The first few, but not the one that says that all is well.
    InsightListModel* insights() { return &m_insights; }

    /// Whether somebody sees the texts that change with time.
    bool isWatched() const { return m_clock.isActive(); }
    void setWatched(bool isWatched);

Q_SIGNALS:
    void statusChanged();
    void trashTextChanged();
    void checkedTextChanged();
    void actionChanged();
    void isWatchedChanged();

private:
    struct Status {
        QString health;
        QString pillText;
        QString sentence;
        QString availableText;
        QString availableCaption;
        bool operator==(const Status&) const = default;
    };
    struct Action {
        QString name;
        QString title;
        bool operator==(const Action&) const = default;
    };

    void takeStatus();
    void takeTrash();
    void takeChecked();
    void takeAction();
    Action nextAction() const;

    QPointer<AppModel> m_model;
    std::function<Date()> m_now;
    InsightListModel m_insights;
    Status m_status;
    QString m_trashText;
    QString m_checkedText;
    Action m_action;
    QTimer m_clock;
};

} // namespace tidewright
