#include "app/state/InsightListModel.h"

#include <algorithm>

namespace tidewright {

namespace {

QString actionTitle(const Insight& insight) {
    if (std::holds_alternative<Insight::Action::None>(insight.action.choice))
        return {};
    return shownText(insight.actionTitle.value_or(""));
}

} // namespace

InsightListModel::InsightListModel(AppModel& model, QObject* parent)
    : RecordModel(QMetaEnum::fromType<Role>(), {}, parent),
      m_model(&model) {
    connect(&model, &AppModel::reportChanged, this, &InsightListModel::takeReport);
    takeReport();
}

void InsightListModel::setLimit(int limit) {
    if (m_limit == limit)
        return;
    m_limit = limit;
    showFirst(records());
    Q_EMIT limitChanged();
}

void InsightListModel::leaveOut(std::string insightID) {
    m_leftOut = std::move(insightID);
    showFirst(records());
}

void InsightListModel::perform(int row) {
    if (!m_model || !hasRow(row))
        return;
    const Records kept = records(); // what is done may bring another report
    m_model->perform(record(row));
}

QVariant InsightListModel::value(std::size_t position, int role) const {
    const Insight& insight = (*records())[position];
    switch (static_cast<Role>(role)) {
    case Role::insightID:
        return shownText(insight.id);
    case Role::severity:
        return shownText(rawValue(insight.severity));
    case Role::symbolName:
        return shownText(insight.symbolName);
    case Role::title:
        return shownText(insight.title);
    case Role::message:
        return shownText(insight.message);
    case Role::gainBytes:
        return QVariant::fromValue<qint64>(insight.estimatedGain);
    case Role::gainText:
        return insight.estimatedGain > 0 ? sizeText(insight.estimatedGain) : QString();
    case Role::actionTitle:
        return tidewright::actionTitle(insight);
    }
    return {};
}

void InsightListModel::takeReport() {
    const Records insights = recordsOf(m_model->report(), &ScanReport::insights);
    showFirst(insights);
    const auto notable = std::ranges::count_if(*insights, [](const Insight& insight) {
        return insight.severity != Insight::Severity::tip;
    });
    const Totals totals{static_cast<int>(insights->size()), static_cast<int>(notable)};
    if (m_totals != totals) {
        m_totals = totals;
        Q_EMIT totalsChanged();
    }
    setEmpty(m_model->report()
                 ? EmptyText()
                 : EmptyText{tr("Not scanned yet"), QStringLiteral("sparkle.magnifyingglass"),
                             tr("Scan your Mac to see what needs attention.")});
}

void InsightListModel::showFirst(const Records& insights) {
    Rows rows = allOf(insights);
    std::erase_if(rows, [&](std::size_t row) { return (*insights)[row].id == m_leftOut; });
    const bool hasMore = m_limit >= 0 && rows.size() > static_cast<std::size_t>(m_limit);
    if (hasMore)
        rows.resize(static_cast<std::size_t>(m_limit));
    show(insights, std::move(rows));
    if (std::exchange(m_hasMore, hasMore) != hasMore)
        Q_EMIT hasMoreChanged();
}

} // namespace tidewright
