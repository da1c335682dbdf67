#include "tests/support/app/ModelWatch.h"

#include <QDateTime>
#include <fmt/format.h>

#include <algorithm>

namespace tidewright::test {

namespace {

std::string textOf(const QVariant& value) {
    if (value.typeId() == QMetaType::QByteArray)
        return value.toByteArray().toStdString();
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(QLatin1Char('|')).toStdString();
    if (value.typeId() == QMetaType::QDateTime)
        return value.toDateTime().isValid() ? std::to_string(value.toDateTime().toSecsSinceEpoch())
                                            : "";
    return value.toString().toStdString();
}

} // namespace

ModelWatch::ModelWatch(QAbstractItemModel& model, QList<int> roles)
    : m_model(model),
      m_tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal),
      m_properties(model),
      m_roles(std::move(roles)) {
    if (m_roles.isEmpty())
        m_roles = model.roleNames().keys();
    std::ranges::sort(m_roles);
    showAll();
    const auto at = [this](int row) { return m_rows.begin() + row; };
    connect(&model, &QAbstractItemModel::rowsRemoved, this,
            [this, at](const QModelIndex&, int first, int last) {
                m_rows.erase(at(first), at(last) + 1);
                tell("removed", first, last);
            });
    connect(&model, &QAbstractItemModel::rowsInserted, this,
            [this, at](const QModelIndex&, int first, int last) {
                for (int row = first; row <= last; ++row)
                    m_rows.insert(at(row), shown(row));
                tell("inserted", first, last);
            });
    connect(&model, &QAbstractItemModel::modelReset, this, [this] {
        showAll();
        m_told.emplace_back("reset");
    });
    connect(&model, &QAbstractItemModel::layoutChanged, this, [this] {
        showAll();
        m_told.emplace_back("reordered");
    });
    connect(&model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex& from, const QModelIndex& to, const QList<int>& changed) {
                for (int row = from.row(); row <= to.row(); ++row)
                    show(row, changed);
                tell("changed", from.row(), to.row(), roleNames(changed));
            });
}

std::vector<std::string> ModelWatch::told() { return std::exchange(m_told, {}); }

std::string ModelWatch::complaint() {
    std::string complaint = m_properties.complaint();
    if (static_cast<int>(m_rows.size()) != m_model.rowCount())
        complaint += "the number of rows changed without a signal; ";
    for (int row = 0; complaint.empty() && row < m_model.rowCount(); ++row)
        if (m_rows[static_cast<std::size_t>(row)] != shown(row))
            complaint += fmt::format("row {} changed without a signal; ", row);
    return complaint;
}

ModelWatch::Row ModelWatch::shown(int row) const {
    Row values;
    for (const int role : m_roles)
        values.push_back(m_model.index(row, 0).data(role));
    return values;
}

void ModelWatch::show(int row, const QList<int>& changed) {
    const Row now = shown(row);
    for (std::size_t i = 0; i < now.size(); ++i)
        if (changed.isEmpty() || changed.contains(m_roles[static_cast<int>(i)]))
            m_rows[static_cast<std::size_t>(row)][i] = now[i];
}

void ModelWatch::showAll() {
    m_rows.clear();
    for (int row = 0; row < m_model.rowCount(); ++row)
        m_rows.push_back(shown(row));
}

void ModelWatch::tell(const std::string& what, int first, int last, const std::string& roles) {
    m_told.push_back(fmt::format("{} {}-{}{}", what, first, last, roles));
}

std::string ModelWatch::roleNames(const QList<int>& roles) const {
    std::string names;
    for (const int role : roles)
        names += " " + m_model.roleNames().value(role).toStdString();
    return names;
}

QVariant shownBy(const QAbstractItemModel& model, int row, const char* role) {
    return model.index(row, 0).data(model.roleNames().key(role, -1));
}

std::vector<std::string> columnOf(const QAbstractItemModel& model, const char* role) {
    std::vector<std::string> texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts.push_back(textOf(shownBy(model, row, role)));
    return texts;
}

} // namespace tidewright::test
