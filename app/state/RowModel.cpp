#include "app/state/RowModel.h"

#include <algorithm>
#include <ranges>
#include <unordered_map>

namespace tidewright {

namespace {

/// The ranges of `whole` that `part` lacks; absent unless `part` is all the rest in the same order.
template <class Keys>
std::optional<std::vector<RowRange>> lackingRanges(const Keys& whole, const Keys& part) {
    std::vector<RowRange> ranges;
    std::size_t found = 0;
    for (int i = 0; i < static_cast<int>(whole.size()); ++i) {
        if (found < part.size() && part[found] == whole[static_cast<std::size_t>(i)])
            ++found;
        else if (!ranges.empty() && ranges.back().last == i - 1)
            ranges.back().last = i;
        else
            ranges.push_back({i, i});
    }
    return found == part.size() ? std::optional(ranges) : std::nullopt;
}

std::vector<std::size_t> without(std::vector<std::size_t> rows,
                                 const std::vector<RowRange>& ranges) {
    for (const auto& [first, last] : std::views::reverse(ranges))
        rows.erase(rows.begin() + first, rows.begin() + last + 1);
    return rows;
}

} // namespace

QString ByteCount::text() const { return sizeText(bytes); }

QString shownText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString sizeText(Int64 bytes) { return shownText(formattedBytes(bytes)); }

QDateTime shownDate(std::optional<Date> date) {
    if (!date)
        return {};
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(*date);
    return QDateTime::fromMSecsSinceEpoch(milliseconds.time_since_epoch().count());
}

RowModel::RowModel(const QMetaEnum& roles, QStringList columns, QObject* parent)
    : QAbstractTableModel(parent),
      m_roles(roles),
      m_columns(std::move(columns)) {}

int RowModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

int RowModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : std::max(1, static_cast<int>(m_columns.size()));
}

QVariant RowModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return m_columns.value(section);
}

QVariant RowModel::data(const QModelIndex& index, int role) const {
    if (!hasRow(index.row()) || role < Qt::UserRole)
        return {};
    return value(m_rows[static_cast<std::size_t>(index.row())], role);
}

QHash<int, QByteArray> RowModel::roleNames() const {
    QHash<int, QByteArray> names;
    for (int i = 0; i < m_roles.keyCount(); ++i)
        names.insert(m_roles.value(i), m_roles.key(i));
    return names;
}

void RowModel::replace(const Replacement& replacement) {
    const int countBefore = count();
    if (const auto removed = lackingRanges(replacement.before, replacement.after)) {
        remove(*removed);
        takeOver(replacement, replacement.rows);
    } else if (const auto inserted = lackingRanges(replacement.after, replacement.before)) {
        takeOver(replacement, without(replacement.rows, *inserted));
        insert(*inserted, replacement.rows);
    } else {
        beginResetModel();
        replacement.apply();
        m_rows = replacement.rows;
        endResetModel();
    }
    tellCount(countBefore);
}

void RowModel::remove(const std::vector<RowRange>& ranges) {
    for (const auto& [first, last] : std::views::reverse(ranges)) {
        beginRemoveRows({}, first, last);
        m_rows.erase(m_rows.begin() + first, m_rows.begin() + last + 1);
        endRemoveRows();
    }
}

void RowModel::insert(const std::vector<RowRange>& ranges, const Rows& rows) {
    for (const auto& [first, last] : ranges) {
        beginInsertRows({}, first, last);
        m_rows.insert(m_rows.begin() + first, rows.begin() + first, rows.begin() + last + 1);
        endInsertRows();
    }
}

void RowModel::takeOver(const Replacement& replacement, Rows rows) {
    std::vector<bool> isChanged;
    for (std::size_t row = 0; row < rows.size(); ++row)
        isChanged.push_back(!replacement.isSame(m_rows[row], rows[row]));
    replacement.apply();
    m_rows = std::move(rows);
    tellChanged([&](int row) { return isChanged[static_cast<std::size_t>(row)]; });
}

void RowModel::reset(Rows rows) {
    if (rows == m_rows)
        return;
    const int countBefore = count();
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
    tellCount(countBefore);
}

void RowModel::reorder(Rows rows) {
    if (rows == m_rows)
        return;
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    std::unordered_map<std::size_t, int> rowOf;
    for (std::size_t row = 0; row < rows.size(); ++row)
        rowOf[rows[row]] = static_cast<int>(row);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex& each : before)
        after.append(index(rowOf.at(m_rows[static_cast<std::size_t>(each.row())]), each.column()));
    m_rows = std::move(rows);
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void RowModel::tellChanged(const std::function<bool(int)>& isChanged, const QList<int>& roles) {
    for (int row = 0; row < count(); ++row) {
        if (!isChanged(row))
            continue;
        const int first = row;
        while (row + 1 < count() && isChanged(row + 1))
            ++row;
        Q_EMIT dataChanged(index(first, 0), index(row, columnCount() - 1), roles);
    }
}

void RowModel::setEmpty(EmptyText empty) {
    if (m_empty == empty)
        return;
    m_empty = std::move(empty);
    Q_EMIT emptyChanged();
}

void RowModel::tellCount(int before) {
    if (before != count())
        Q_EMIT countChanged();
}

} // namespace tidewright
