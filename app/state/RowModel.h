// What all models of rows that views show have in common: how rows change, and the form in which
// texts, sizes and dates are handed to views.
//
// Rows stand for records (items, projects, …) that never change in place. A model shows some of
// them in an order of its own; what a view shows is given by named roles, the same in each column.
#pragma once

#include "core/model/ScanReport.h"

#include <QAbstractTableModel>
#include <QDateTime>
#include <QMetaEnum>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <numeric>

namespace tidewright {

/// A number of bytes and its text, which is the same wherever the number is shown.
struct ByteCount {
    Q_GADGET
    Q_PROPERTY(qint64 bytes MEMBER bytes)
    Q_PROPERTY(QString text READ text)

public:
    Int64 bytes = 0;

    QString text() const;
    bool operator==(const ByteCount&) const = default;
};

/// What stands in place of the rows where there are none; all empty where there are.
struct EmptyText {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString symbolName MEMBER symbolName)
    Q_PROPERTY(QString message MEMBER message)

public:
    QString title;
    QString symbolName;
    QString message;

    bool operator==(const EmptyText&) const = default;
};

struct RowRange {
    int first;
    int last;
};

/// The text as a view shows it: what is not UTF-8 is replaced.
QString shownText(std::string_view text);
/// The text of a byte count.
QString sizeText(Int64 bytes);
/// Invalid where there is no date; else local time, rounded down to milliseconds.
QDateTime shownDate(std::optional<Date> date);

/// Main thread only.
class RowModel : public QAbstractTableModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(tidewright::EmptyText empty READ empty NOTIFY emptyChanged)

public:
    int count() const { return static_cast<int>(m_rows.size()); }
    const EmptyText& empty() const { return m_empty; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();
    void emptyChanged();

protected:
    /// Positions among the records, one for each row.
    using Rows = std::vector<std::size_t>;
    using Keys = std::vector<std::string_view>;

    /// `roles` lists the roles, named as views call them; `columns` are the titles of the columns,
    /// none for a list.
    RowModel(const QMetaEnum& roles, QStringList columns, QObject* parent);

    const Rows& rows() const { return m_rows; }
    bool hasRow(int row) const { return row >= 0 && row < count(); }

    /// What a view shows of one record.
    virtual QVariant value(std::size_t position, int role) const = 0;

    /// Other records and the rows that show them.
    struct Replacement {
        Rows rows;
        Keys before; ///< what each row is known by now
        Keys after;  ///< what each of the new rows is known by
        /// Whether the records at two positions, earlier and new, show the same.
        std::function<bool(std::size_t, std::size_t)> isSame;
        /// Puts the new records in place of the earlier ones.
        std::function<void()> apply;
    };
    /// Tells of rows that have only gone, or have only come, as such; of any other change as a
    /// reset. Rows that stay and now show something else are told of too.
    void replace(const Replacement& replacement);
    /// Shows other rows of the same records, as a reset; nothing is told where they are the same.
    void reset(Rows rows);
    /// The same rows in another order.
    void reorder(Rows rows);

    /// Tells that one role, or every role where none is given, shows something else in the rows
    /// for which `isChanged` holds.
    void tellChanged(const std::function<bool(int)>& isChanged, const QList<int>& roles = {});

    void setEmpty(EmptyText empty);

private:
    void remove(const std::vector<RowRange>& ranges);
    void insert(const std::vector<RowRange>& ranges, const Rows& rows);
    /// `rows` are as many as there are now, and known by the same keys.
    void takeOver(const Replacement& replacement, Rows rows);
    void tellCount(int before);

    QMetaEnum m_roles;
    QStringList m_columns;
    Rows m_rows;
    EmptyText m_empty;
};

/// A model of records of one kind, with what `Base` can do.
template <class Record, class Base = RowModel>
class RecordModel : public Base {
protected:
    using Records = std::shared_ptr<const std::vector<Record>>;
    using Rows = RowModel::Rows;
    using Keys = RowModel::Keys;

    using Base::Base;

    /// What tells a record from all others.
    virtual std::string_view key(const Record& record) const = 0;

    const Records& records() const { return m_records; }
    const Record& record(int row) const {
        return (*m_records)[this->rows()[static_cast<std::size_t>(row)]];
    }

    /// Shows these rows of these records. `alsoApply` is called at the moment when they take the
    /// place of the earlier ones.
    void show(const Records& records, Rows rows, const std::function<void()>& alsoApply = {}) {
        const Records earlier = m_records;
        RowModel::Replacement replacement;
        replacement.before = keys(*earlier, this->rows());
        replacement.after = keys(*records, rows);
        replacement.rows = std::move(rows);
        replacement.isSame = [&](std::size_t before, std::size_t after) {
            return earlier == records || (*earlier)[before] == (*records)[after];
        };
        replacement.apply = [&] {
            m_records = records;
            if (alsoApply)
                alsoApply();
        };
        this->replace(replacement);
    }

    /// Where among the new records the one is that stands at a position among those of now.
    std::optional<std::size_t> positionIn(const Records& records,
                                          std::optional<std::size_t> position) const {
        const auto found = std::ranges::find_if(*records, [&](const Record& each) {
            return position && key(each) == key((*m_records)[*position]);
        });
        if (found == records->end())
            return std::nullopt;
        return static_cast<std::size_t>(found - records->begin());
    }

    /// One kind of a report's records, which hold the report; none where there is no report.
    static Records recordsOf(const std::shared_ptr<const ScanReport>& report,
                             std::vector<Record> ScanReport::*member) {
        if (!report)
            return std::make_shared<const std::vector<Record>>();
        return Records(report, &((*report).*member));
    }

    /// The positions of all of these records.
    static Rows allOf(const Records& records) {
        Rows rows(records->size());
        std::iota(rows.begin(), rows.end(), std::size_t{0});
        return rows;
    }

private:
    Keys keys(const std::vector<Record>& records, const Rows& rows) const {
        Keys keys;
        keys.reserve(rows.size());
        for (const std::size_t position : rows)
            keys.push_back(key(records[position]));
        return keys;
    }

    Records m_records = std::make_shared<const std::vector<Record>>();
};

} // namespace tidewright
