// Installed applications: those that were not used lately, or all.
#pragma once

#include "app/state/FoundListModel.h"

namespace tidewright {

/// Main thread only. When the AppModel is gone it goes on showing what it showed.
class AppUsageListModel : public FoundListModel {
    Q_OBJECT
    Q_PROPERTY(bool showAll READ showAll WRITE setShowAll NOTIFY showAllChanged)

public:
    explicit AppUsageListModel(AppModel& model,
                               std::function<Date()> now = currentDate,
                               QObject* parent = nullptr);

    bool showAll() const { return m_showAll; }
    void setShowAll(bool showAll);

Q_SIGNALS:
    void showAllChanged();

protected:
    QString dateText(const Found& app) const override;

private:
    void takeReport();
    void showApps();
    EmptyText emptyText() const;

    bool m_showAll = false;
    std::shared_ptr<const ScanReport> m_report; ///< null before the first scan
    qint64 m_unusedAppDays = 0;                 ///< idle for so long counts as unused
};

} // namespace tidewright
