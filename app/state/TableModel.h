// Rows under columns: sorted as asked for, found by the beginning of a name, and one of them
// focused.
#pragma once

#include "app/state/RowModel.h"

namespace tidewright {

/// Main thread only.
class TableModel : public RowModel {
    Q_OBJECT
    Q_PROPERTY(int sortColumn READ sortColumn NOTIFY sortChanged)
    Q_PROPERTY(Qt::SortOrder sortOrder READ sortOrder NOTIFY sortChanged)
    Q_PROPERTY(int focusedRow READ focusedRow WRITE setFocusedRow NOTIFY focusedRowChanged)

public:
    /// -1: the order of the report.
    int sortColumn() const { return m_sortColumn; }
    Qt::SortOrder sortOrder() const { return m_sortOrder; }
    /// By a column that has a title, equals in the order of the report; by any other column in that
    /// order altogether.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    /// What a click on a column's title does: ascending, descending, the order of the report.
    Q_INVOKABLE void cycleSort(int column);

    /// It follows its record. -1: none, or one that is not shown.
    int focusedRow() const { return m_focusedRow; }
    void setFocusedRow(int row);

    /// The next row after `after`, from the top again after the last, whose name begins with the
    /// text without regard to case by the user's language; -1 where there is none, or no text.
    Q_INVOKABLE int rowStartingWith(const QString& text, int after);

Q_SIGNALS:
    void sortChanged();
    void focusedRowChanged();

protected:
    using RowModel::RowModel;

    /// The rows in the order that was asked for.
    virtual Rows sortedRows() = 0;
    /// Whether the name of the record begins with the text, which is folded.
    virtual bool startsWith(std::size_t position, const std::string& beginning) = 0;

    /// Brings positions from the order of the report into that of the column.
    using IsBelow = std::function<bool(std::size_t, std::size_t)>;
    void arrange(Rows& positions, const IsBelow& isBelow) const;

    /// The position of the focused record, be it shown or not.
    std::optional<std::size_t> focusedPosition() const { return m_focused; }
    /// When other records take the place of the earlier ones, in the moment that they do.
    void moveFocused(std::optional<std::size_t> position) { m_focused = position; }
    /// To be called when the rows have changed.
    virtual void updateFocus();

private:
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    std::optional<std::size_t> m_focused;
    int m_focusedRow = -1;
};

} // namespace tidewright
