// Watching a model as a view does: by its signals alone.
#pragma once

#include "tests/support/app/PropertyWatch.h"

#include <QAbstractItemModelTester>

#include <string>
#include <vector>

namespace tidewright::test {

/// Holds the model to the rules of its interface (a break ends the program), writes down what it
/// tells, and keeps what a view would show and a binding would hold, going by signals.
class ModelWatch : public QObject {
    Q_OBJECT

public:
    /// `roles`: what the view shows of a row; all roles where none are given.
    explicit ModelWatch(QAbstractItemModel& model, QList<int> roles = {});

    /// What the model has told since the last call: "removed 3-5", "inserted 0-0", "reset",
    /// "reordered", "changed 2-2 selected".
    std::vector<std::string> told();

    /// What is wrong since the last call, empty where nothing is: rows or properties that changed
    /// without a signal, and signals of properties of which none has changed.
    std::string complaint();

private:
    using Row = std::vector<QVariant>;

    Row shown(int row) const;
    void show(int row, const QList<int>& changed);
    void showAll();
    void tell(const std::string& what, int first, int last, const std::string& roles = {});
    std::string roleNames(const QList<int>& roles) const;

    QAbstractItemModel& m_model;
    QAbstractItemModelTester m_tester;
    PropertyWatch m_properties;
    QList<int> m_roles;
    std::vector<Row> m_rows;
    std::vector<std::string> m_told;
};

/// What the model shows of a row under a role's name.
QVariant shownBy(const QAbstractItemModel& model, int row, const char* role);

/// The same of all rows, as texts: a list with "|" between, a date as seconds since 1970, nothing
/// for an invalid one.
std::vector<std::string> columnOf(const QAbstractItemModel& model, const char* role);

} // namespace tidewright::test
