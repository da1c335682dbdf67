#include "app/state/AppUsageListModel.h"

#include "core/support/RelativeDate.h"

namespace tidewright {

AppUsageListModel::AppUsageListModel(AppModel& model, std::function<Date()> now, QObject* parent)
    : FoundListModel(model, {tr("Name"), tr("Last opened"), tr("Size")}, std::move(now), parent) {
    connect(&model, &AppModel::reportChanged, this, &AppUsageListModel::takeReport);
    connect(&model.settings(), &SettingsStore::unusedAppDaysChanged, this,
            &AppUsageListModel::takeReport);
    takeReport();
}

void AppUsageListModel::setShowAll(bool showAll) {
    if (m_showAll == showAll)
        return;
    m_showAll = showAll;
    showApps();
    Q_EMIT showAllChanged();
}

QString AppUsageListModel::dateText(const Found& app) const {
    if (app.date)
        return FoundListModel::dateText(app);
    if (app.addedOn)
        return tr("Never (added %1)").arg(shownText(relativeDateText(*app.addedOn, now())));
    return tr("Never");
}

void AppUsageListModel::takeReport() {
    m_report = model()->report();
    m_unusedAppDays = model()->settings().unusedAppDays();
    showApps();
}

void AppUsageListModel::showApps() {
    std::vector<Found> found;
    if (m_report)
        for (const AppUsage& app : m_report->apps)
            if (m_showAll || app.idleDays(now()).value_or(0) >= m_unusedAppDays)
                found.push_back({app.url, app.name, app.lastUsed, app.addedOn, app.sizeBytes});
    showFound(std::move(found));
    setEmpty(emptyText());
}

EmptyText AppUsageListModel::emptyText() const {
    if (!m_report)
        return {tr("Not scanned yet"), QStringLiteral("app.dashed"),
                tr("Scan your Mac to see apps you haven't used lately.")};
    if (!rows().empty())
        return {};
    return {{},
            QStringLiteral("checkmark.circle"),
            tr("Every app was opened in the last %1 days.").arg(m_unusedAppDays)};
}

} // namespace tidewright
