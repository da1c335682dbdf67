#include "app/state/HistoryListModel.h"

#include "core/support/DateText.h"

#include <algorithm>

namespace tidewright {

namespace {

// Of the chart, in pixels.
constexpr double narrowestBar = 3;
constexpr double widestBar = 28;
constexpr double dateSpacing = 28;
constexpr double pointerReach = 12;

QVariantList listOf(const std::vector<ChartTick>& ticks) {
    QVariantList list;
    for (const ChartTick& tick : ticks)
        list.append(QVariant::fromValue(tick));
    return list;
}

} // namespace

HistoryListModel::HistoryListModel(AppModel& model, QObject* parent)
    : RecordModel(QMetaEnum::fromType<Role>(), {}, parent),
      m_model(&model) {
    connect(&model.history(), &HistoryStore::entriesChanged, this, [this] {
        takeEntries();
        Q_EMIT entriesChanged();
    });
    takeEntries();
}

QString HistoryListModel::cleanups() const { return tr("freed across %1 cleanups").arg(count()); }

void HistoryListModel::setPlotWidth(double width) {
    if (m_plotWidth == width)
        return;
    m_plotWidth = width;
    layOut();
    Q_EMIT plotWidthChanged();
}

void HistoryListModel::setDateWidth(double width) {
    if (m_dateWidth == width)
        return;
    m_dateWidth = width;
    layOut();
    Q_EMIT dateWidthChanged();
}

QVariantList HistoryListModel::dateTicks() const { return listOf(m_chart.dates); }

QVariantList HistoryListModel::sizeTicks() const { return listOf(m_chart.sizes); }

int HistoryListModel::rowAt(double x, double y) const {
    const auto position = m_chart.barAt(x, y, share(pointerReach));
    if (!position)
        return -1;
    return static_cast<int>(std::ranges::find(rows(), *position) - rows().begin());
}

void HistoryListModel::revealLog(int row) {
    if (m_model && hasRow(row) && record(row).logFile)
        m_model->reveal({*record(row).logFile});
}

QVariant HistoryListModel::value(std::size_t position, int role) const {
    const HistoryEntry& entry = (*records())[position];
    switch (static_cast<Role>(role)) {
    case Role::entryID:
        return shownText(entry.id);
    case Role::date:
        return shownDate(entry.date);
    case Role::dateText:
        return shownText(dateAndTimeText(entry.date));
    case Role::freedBytes:
        return QVariant::fromValue<qint64>(entry.freed());
    case Role::freedText:
        return sizeText(entry.freed());
    case Role::itemsText:
        return itemsText(entry);
    case Role::itemCount:
        return QVariant::fromValue<qint64>(entry.itemCount);
    case Role::failures:
        return QVariant::fromValue<qint64>(entry.failures);
    case Role::hasLog:
        return entry.logFile.has_value();
    case Role::barLeft:
        return m_chart.bars[position].left;
    case Role::barWidth:
        return m_chart.bars[position].width;
    case Role::barBottom:
        return m_chart.bars[position].bottom;
    case Role::barHeight:
        return m_chart.bars[position].height;
    }
    return {};
}

QString HistoryListModel::itemsText(const HistoryEntry& entry) {
    const QString cleaned = tr("%1 items cleaned").arg(entry.itemCount);
    return entry.failures > 0 ? cleaned + tr(", %1 failed").arg(entry.failures) : cleaned;
}

void HistoryListModel::takeEntries() {
    const HistoryStore& history = m_model->history();
    m_totalFreed.bytes = history.totalFreed();
    const auto entries = std::make_shared<const std::vector<HistoryEntry>>(history.entries());
    Rows rows = allOf(entries);
    std::ranges::reverse(rows);
    std::ranges::stable_sort(rows, std::ranges::greater(),
                             [&](std::size_t each) { return (*entries)[each].date; });
    const HistoryChart before = m_chart;
    const auto focused = positionIn(entries, focusedPosition());
    show(entries, std::move(rows), [&] {
        moveFocused(focused);
        m_chart = chartOf(*entries);
    });
    tellChart(before);
    updateFocus();
    if (!entries->empty())
        return setEmpty({});
    setEmpty({tr("No cleanups yet"), QStringLiteral("clock.arrow.circlepath"),
              tr("Each cleanup is recorded here with an audit log of every path and command.")});
}

double HistoryListModel::share(double pixels) const {
    return m_plotWidth > pixels ? pixels / m_plotWidth : 1;
}

HistoryChart HistoryListModel::chartOf(const std::vector<HistoryEntry>& entries) const {
    return HistoryChart::of(entries, {.narrowestBar = share(narrowestBar),
                                      .widestBar = share(widestBar),
                                      .date = share(m_dateWidth + dateSpacing)});
}

void HistoryListModel::layOut() {
    const HistoryChart before = m_chart;
    m_chart = chartOf(*records());
    tellChart(before);
}

void HistoryListModel::tellChart(const HistoryChart& before) {
    if (before.bars != m_chart.bars)
        tellChanged([](int) { return true; },
                    {static_cast<int>(Role::barLeft), static_cast<int>(Role::barWidth),
                     static_cast<int>(Role::barBottom), static_cast<int>(Role::barHeight)});
    if (before.dates != m_chart.dates)
        Q_EMIT dateTicksChanged();
    if (before.sizes != m_chart.sizes)
        Q_EMIT sizeTicksChanged();
}

} // namespace tidewright
