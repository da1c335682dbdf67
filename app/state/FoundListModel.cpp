#include "app/state/FoundListModel.h"

#include "app/state/Folding.h"
#include "core/support/Collation.h"
#include "core/support/RelativeDate.h"

namespace tidewright {

FoundListModel::FoundListModel(AppModel& model,
                               QStringList columns,
                               std::function<Date()> now,
                               QObject* parent)
    : RecordModel(QMetaEnum::fromType<Role>(), std::move(columns), parent),
      m_model(&model),
      m_now(std::move(now)) {}

void FoundListModel::reveal(int row) {
    if (m_model && hasRow(row))
        m_model->reveal({record(row).url});
}

QString FoundListModel::dateText(const Found& found) const {
    return found.date ? shownText(relativeDateText(*found.date, now())) : QString();
}

void FoundListModel::showFound(std::vector<Found> found) {
    const auto records = std::make_shared<const std::vector<Found>>(std::move(found));
    const auto focused = positionIn(records, focusedPosition());
    show(records, ordered(*records), [&] {
        moveFocused(focused);
        m_foldedNames.clear();
    });
    ByteCount shown;
    for (const Found& each : *records)
        shown.bytes += each.sizeBytes;
    if (std::exchange(m_shown, shown) != shown)
        Q_EMIT shownChanged();
    updateFocus();
}

QVariant FoundListModel::value(std::size_t position, int role) const {
    const Found& found = (*records())[position];
    switch (static_cast<Role>(role)) {
    case Role::path:
        return shownText(found.url.path());
    case Role::name:
        return shownText(found.name);
    case Role::folder:
        return shownText(found.url.deletingLastPathComponent().path());
    case Role::date:
        return shownDate(found.date);
    case Role::dateText:
        return dateText(found);
    case Role::sizeBytes:
        return QVariant::fromValue<qint64>(found.sizeBytes);
    case Role::sizeText:
        return tidewright::sizeText(found.sizeBytes);
    }
    return {};
}

FoundListModel::Rows FoundListModel::sortedRows() { return ordered(*records()); }

bool FoundListModel::startsWith(std::size_t position, const std::string& beginning) {
    if (m_foldedNames.empty()) {
        const Folding fold;
        for (const Found& each : *records())
            m_foldedNames.push_back(fold(each.name));
    }
    return m_foldedNames[position].starts_with(beginning);
}

FoundListModel::Rows FoundListModel::ordered(const std::vector<Found>& found) const {
    Rows positions(found.size());
    std::iota(positions.begin(), positions.end(), std::size_t{0});
    const auto column = static_cast<Column>(sortColumn());
    std::vector<std::string> names;
    if (column == Column::name)
        for (const Found& each : found)
            names.push_back(sortKey(each.name));
    arrange(positions, [&](std::size_t left, std::size_t right) {
        switch (column) {
        case Column::name:
            return names[left] < names[right];
        case Column::date:
            return found[left].date < found[right].date;
        case Column::size:
            return found[left].sizeBytes < found[right].sizeBytes;
        }
        return false;
    });
    if (column == Column::date)
        std::ranges::stable_partition(
            positions, [&](std::size_t position) { return found[position].date.has_value(); });
    return positions;
}

} // namespace tidewright
