#include "app/state/TableModel.h"

#include "app/state/Folding.h"

#include <algorithm>

namespace tidewright {

void TableModel::sort(int column, Qt::SortOrder order) {
    const bool isSorted = !headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().isEmpty();
    const int sortColumn = isSorted ? column : -1;
    const Qt::SortOrder sortOrder = isSorted ? order : Qt::AscendingOrder;
    if (m_sortColumn == sortColumn && m_sortOrder == sortOrder)
        return;
    m_sortColumn = sortColumn;
    m_sortOrder = sortOrder;
    reorder(sortedRows());
    updateFocus();
    Q_EMIT sortChanged();
}

void TableModel::cycleSort(int column) {
    if (column != m_sortColumn)
        sort(column, Qt::AscendingOrder);
    else if (m_sortOrder == Qt::AscendingOrder)
        sort(column, Qt::DescendingOrder);
    else
        sort(-1);
}

void TableModel::setFocusedRow(int row) {
    m_focused.reset();
    if (hasRow(row))
        m_focused = rows()[static_cast<std::size_t>(row)];
    updateFocus();
}

int TableModel::rowStartingWith(const QString& text, int after) {
    const std::string beginning = Folding()(text.toStdString());
    if (beginning.empty())
        return -1;
    const int start = std::max(after, -1) + 1;
    for (int i = 0; i < count(); ++i) {
        const int row = (start + i) % count();
        if (startsWith(rows()[static_cast<std::size_t>(row)], beginning))
            return row;
    }
    return -1;
}

void TableModel::arrange(Rows& positions, const IsBelow& isBelow) const {
    if (m_sortColumn < 0)
        return;
    if (m_sortOrder == Qt::AscendingOrder)
        std::ranges::stable_sort(positions, isBelow);
    else
        std::ranges::stable_sort(
            positions, [&](std::size_t left, std::size_t right) { return isBelow(right, left); });
}

void TableModel::updateFocus() {
    const auto found = m_focused ? std::ranges::find(rows(), *m_focused) : rows().end();
    const int row = found == rows().end() ? -1 : static_cast<int>(found - rows().begin());
    if (std::exchange(m_focusedRow, row) != row)
        Q_EMIT focusedRowChanged();
}

} // namespace tidewright
