#include "app/state/SidebarModel.h"

#include <algorithm>

namespace tidewright {

SidebarModel::SidebarModel(AppModel& model, QObject* parent)
    : RecordModel(QMetaEnum::fromType<Role>(), {}, parent),
      m_model(&model) {
    connect(&model, &AppModel::reportChanged, this, &SidebarModel::update);
    connect(&model, &AppModel::selectionChanged, this, &SidebarModel::update);
    connect(&model, &AppModel::destinationChanged, this, &SidebarModel::takeDestination);
    update();
    takeDestination();
}

void SidebarModel::open(int row) {
    if (m_model && hasRow(row))
        m_model->setDestinationName(shownText(record(row).destination));
}

QVariant SidebarModel::value(std::size_t position, int role) const {
    const SidebarRow& row = (*records())[position];
    switch (static_cast<Role>(role)) {
    case Role::destination:
        return shownText(row.destination);
    case Role::title:
        return row.title;
    case Role::symbolName:
        return row.symbolName;
    case Role::section:
        return row.section;
    case Role::badge:
        return row.badge;
    case Role::sizeText:
        return row.sizeText;
    }
    return {};
}

void SidebarModel::update() {
    const QString developer = tr("Developer");
    const QString mac = tr("Mac");
    const auto rows = std::make_shared<const std::vector<SidebarRow>>(std::vector<SidebarRow>{
        {"overview",
         tr("Overview"),
         QStringLiteral("gauge.with.dots.needle.67percent"),
         {},
         {},
         {}},
        {"insights",
         tr("Insights"),
         QStringLiteral("sparkle.magnifyingglass"),
         {},
         insightsBadge(),
         {}},
        categoryRow(Category::android, developer),
        categoryRow(Category::xcode, developer),
        categoryRow(Category::javascript, developer),
        categoryRow(Category::projects, developer),
        categoryRow(Category::system, mac),
        {"apps", tr("Apps & Files"), QStringLiteral("square.grid.2x2"), mac, {}, {}},
        {"history", tr("History"), QStringLiteral("clock.arrow.circlepath"), mac, {}, {}},
    });
    show(rows, allOf(rows));
}

SidebarRow SidebarModel::categoryRow(Category category, const QString& section) const {
    const Int64 bytes = m_model->reclaimable(category);
    return {.destination = std::string(rawValue(category)),
            .title = shownText(title(category)),
            .symbolName = shownText(symbolName(category)),
            .section = section,
            .badge = {},
            .sizeText = bytes >= 1 ? tidewright::sizeText(bytes) : QString()};
}

QString SidebarModel::insightsBadge() const {
    const auto& report = m_model->report();
    if (!report)
        return {};
    const auto notable = std::ranges::count_if(report->insights, [](const Insight& insight) {
        return insight.severity != Insight::Severity::tip;
    });
    return notable > 0 ? QString::number(notable) : QString();
}

void SidebarModel::takeDestination() {
    const std::string shown = m_model->destinationName().toStdString();
    const auto found = std::ranges::find(*records(), shown, &SidebarRow::destination);
    const int row = static_cast<int>(found - records()->begin());
    if (m_currentRow == row)
        return;
    m_currentRow = row;
    Q_EMIT currentRowChanged();
}

} // namespace tidewright
