// All that the screens bind to, in one place.
#pragma once

#include "app/state/AppUsageListModel.h"
#include "app/state/CategoryListModel.h"
#include "app/state/HistoryListModel.h"
#include "app/state/InsightListModel.h"
#include "app/state/ItemListModel.h"
#include "app/state/LargeFileListModel.h"
#include "app/state/MenuBarModel.h"
#include "app/state/OverviewModel.h"
#include "app/state/ProjectListModel.h"
#include "app/state/SessionListModel.h"
#include "app/state/SettingsModel.h"
#include "app/state/Shell.h"
#include "app/state/SidebarModel.h"

namespace tidewright {

/// Main thread only.
class ScreenModels : public QObject {
    Q_OBJECT
    Q_PROPERTY(tidewright::AppModel* app READ app CONSTANT)
    Q_PROPERTY(tidewright::Shell* shell READ shell CONSTANT)
    Q_PROPERTY(tidewright::OverviewModel* overview READ overview CONSTANT)
    Q_PROPERTY(tidewright::SidebarModel* sidebar READ sidebar CONSTANT)
    Q_PROPERTY(tidewright::CategoryListModel* categories READ categories CONSTANT)
    Q_PROPERTY(tidewright::InsightListModel* insights READ insights CONSTANT)
    Q_PROPERTY(tidewright::InsightListModel* topInsights READ topInsights CONSTANT)
    Q_PROPERTY(tidewright::ProjectListModel* projects READ projects CONSTANT)
    Q_PROPERTY(tidewright::SessionListModel* session READ session CONSTANT)
    Q_PROPERTY(tidewright::AppUsageListModel* appUsage READ appUsage CONSTANT)
    Q_PROPERTY(tidewright::LargeFileListModel* largeFiles READ largeFiles CONSTANT)
    Q_PROPERTY(tidewright::HistoryListModel* history READ history CONSTANT)
    Q_PROPERTY(tidewright::MenuBarModel* menuBar READ menuBar CONSTANT)
    /// Whether lists show where their bytes are: in a window with room for it, unless the user did
    /// not want it; in a smaller one, if the user asked for it.
    Q_PROPERTY(bool mapShownInRoom READ mapShownInRoom NOTIFY mapShownChanged)
    Q_PROPERTY(bool mapShownInTightness READ mapShownInTightness NOTIFY mapShownChanged)
    Q_PROPERTY(tidewright::SettingsModel* settings READ settings CONSTANT)

public:
    /// `model` must outlive this.
    explicit ScreenModels(AppModel& model,
                          std::function<Date()> now = currentDate,
                          QObject* parent = nullptr);

    AppModel* app() const { return &m_app; }
    Shell* shell() { return &m_shell; }
    OverviewModel* overview() { return &m_overview; }
    SidebarModel* sidebar() { return &m_sidebar; }
    CategoryListModel* categories() { return &m_categories; }
    InsightListModel* insights() { return &m_insights; } ///< all
    /// As many as the overview has room for.
    InsightListModel* topInsights() { return &m_topInsights; }
    ProjectListModel* projects() { return &m_projects; }
    SessionListModel* session() { return &m_session; }
    AppUsageListModel* appUsage() { return &m_appUsage; }
    LargeFileListModel* largeFiles() { return &m_largeFiles; }
    HistoryListModel* history() { return &m_history; }
    MenuBarModel* menuBar() { return &m_menuBar; }
    SettingsModel* settings() { return &m_settings; }

    /// A new list of the category's items, which belongs to the caller; null where no category has
    /// this raw value.
    Q_INVOKABLE tidewright::ItemListModel* items(const QString& category) const;

    bool mapShownInRoom() const { return m_wantsMap.value_or(true); }
    bool mapShownInTightness() const { return m_wantsMap.value_or(false); }
    /// The user's choice, for all lists and as long as the program runs.
    Q_INVOKABLE void showMap(bool shown);

Q_SIGNALS:
    void mapShownChanged();

private:
    AppModel& m_app;
    std::function<Date()> m_now;
    Shell m_shell{this};
    OverviewModel m_overview{m_app, this};
    SidebarModel m_sidebar{m_app, this};
    CategoryListModel m_categories{m_app, this};
    InsightListModel m_insights{m_app, this};
    InsightListModel m_topInsights{m_app, this};
    ProjectListModel m_projects{m_app, m_now, this};
    SessionListModel m_session{m_app, this};
    AppUsageListModel m_appUsage{m_app, m_now, this};
    LargeFileListModel m_largeFiles{m_app, m_now, this};
    HistoryListModel m_history{m_app, this};
    MenuBarModel m_menuBar{m_app, m_now, this};
    std::optional<bool> m_wantsMap;
    SettingsModel m_settings{m_app, this};
};

} // namespace tidewright
