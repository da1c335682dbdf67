#include "app/state/HistoryListModel.h"

#include "core/support/DateText.h"

#include <algorithm>

namespace tidewright {

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
    case Role::freedGigabytes:
        return static_cast<double>(entry.freed()) / gigabyte;
    case Role::itemsText:
        return itemsText(entry);
    case Role::itemCount:
        return QVariant::fromValue<qint64>(entry.itemCount);
    case Role::failures:
        return QVariant::fromValue<qint64>(entry.failures);
    case Role::hasLog:
        return entry.logFile.has_value();
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
    show(entries, std::move(rows));
    if (!entries->empty())
        return setEmpty({});
    setEmpty({tr("No cleanups yet"), QStringLiteral("clock.arrow.circlepath"),
              tr("Each cleanup is recorded here with an audit log of every path and command.")});
}

} // namespace tidewright
