#include "app/state/AppUsageListModel.h"

#include "core/support/RelativeDate.h"

namespace tidewright {

AppUsageListModel::AppUsageListModel(AppModel& model, std::function<Date()> now, QObject* parent)
    : RecordModel(QMetaEnum::fromType<Role>(), {tr("Name"), tr("Last opened"), tr("Size")}, parent),
      m_model(&model),
      m_now(std::move(now)) {
    connect(&model, &AppModel::reportChanged, this, &AppUsageListModel::takeReport);
    connect(&model.settings(), &SettingsStore::unusedAppDaysChanged, this,
            &AppUsageListModel::takeReport);
    takeReport();
}

void AppUsageListModel::setShowAll(bool showAll) {
    if (m_showAll == showAll)
        return;
    m_showAll = showAll;
    showApps(records());
    Q_EMIT showAllChanged();
}

void AppUsageListModel::reveal(int row) {
    if (m_model && hasRow(row))
        m_model->reveal({record(row).url});
}

QVariant AppUsageListModel::value(std::size_t position, int role) const {
    const AppUsage& app = (*records())[position];
    switch (static_cast<Role>(role)) {
    case Role::path:
        return shownText(app.url.path());
    case Role::name:
        return shownText(app.name);
    case Role::lastUsed:
        return shownDate(app.lastUsed);
    case Role::addedOn:
        return shownDate(app.addedOn);
    case Role::lastUsedText:
        return lastUsedText(app);
    case Role::sizeBytes:
        return QVariant::fromValue<qint64>(app.sizeBytes);
    case Role::sizeText:
        return tidewright::sizeText(app.sizeBytes);
    }
    return {};
}

QString AppUsageListModel::lastUsedText(const AppUsage& app) const {
    if (app.lastUsed)
        return shownText(relativeDateText(*app.lastUsed, m_now()));
    if (app.addedOn)
        return tr("Never (added %1)").arg(shownText(relativeDateText(*app.addedOn, m_now())));
    return tr("Never");
}

void AppUsageListModel::takeReport() {
    m_isScanned = m_model->report() != nullptr;
    m_unusedAppDays = m_model->settings().unusedAppDays();
    showApps(recordsOf(m_model->report(), &ScanReport::apps));
}

void AppUsageListModel::showApps(const Records& apps) {
    Rows rows = allOf(apps);
    if (!m_showAll)
        std::erase_if(rows, [&, now = m_now()](std::size_t position) {
            return (*apps)[position].idleDays(now).value_or(0) < m_unusedAppDays;
        });
    ByteCount shown;
    for (const std::size_t position : rows)
        shown.bytes += (*apps)[position].sizeBytes;
    show(apps, std::move(rows));
    if (m_shown != shown) {
        m_shown = shown;
        Q_EMIT shownChanged();
    }
    setEmpty(emptyText());
}

EmptyText AppUsageListModel::emptyText() const {
    if (!m_isScanned)
        return {tr("Not scanned yet"), QStringLiteral("app.dashed"),
                tr("Scan your Mac to see apps you haven't used lately.")};
    if (!rows().empty())
        return {};
    return {{},
            QStringLiteral("checkmark.circle"),
            tr("Every app was opened in the last %1 days.").arg(m_unusedAppDays)};
}

} // namespace tidewright
