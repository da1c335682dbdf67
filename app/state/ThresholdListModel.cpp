#include "app/state/ThresholdListModel.h"

#include <algorithm>

namespace tidewright {

namespace {

/// Each row shows the record of the same position.
std::size_t at(int row) { return static_cast<std::size_t>(row); }

} // namespace

ThresholdListModel::ThresholdListModel(AppModel& model,
                                       std::vector<Threshold> thresholds,
                                       QObject* parent)
    : RecordModel(QMetaEnum::fromType<Role>(), {}, parent),
      m_model(&model) {
    const auto records = std::make_shared<const std::vector<Threshold>>(std::move(thresholds));
    show(records, allOf(records));
    for (int row = 0; row < count(); ++row) {
        m_values.push_back((model.settings().*record(row).value)());
        connect(&model.settings(), record(row).changed, this, [this, row] { takeValue(row); });
    }
}

void ThresholdListModel::takeValue(int row) {
    m_values[at(row)] = (m_model->settings().*record(row).value)();
    tellChanged([row](int each) { return each == row; });
}

void ThresholdListModel::decrease(int row) {
    if (hasRow(row) && canDecrease(at(row)))
        setValue(row, m_values[at(row)] - record(row).step);
}

void ThresholdListModel::increase(int row) {
    if (hasRow(row) && canIncrease(at(row)))
        setValue(row, m_values[at(row)] + record(row).step);
}

void ThresholdListModel::setValue(int row, qint64 value) {
    if (!m_model || !hasRow(row))
        return;
    const Threshold& threshold = record(row);
    (m_model->settings().*threshold.set)(std::clamp(value, threshold.lowest, threshold.highest));
}

bool ThresholdListModel::canDecrease(std::size_t position) const {
    return m_values[position] > (*records())[position].lowest;
}

bool ThresholdListModel::canIncrease(std::size_t position) const {
    return m_values[position] < (*records())[position].highest;
}

QVariant ThresholdListModel::value(std::size_t position, int role) const {
    const Threshold& threshold = (*records())[position];
    switch (static_cast<Role>(role)) {
    case Role::label:
        return tr(threshold.label).arg(m_values[position]);
    case Role::value:
        return m_values[position];
    case Role::lowest:
        return threshold.lowest;
    case Role::highest:
        return threshold.highest;
    case Role::step:
        return threshold.step;
    case Role::canDecrease:
        return canDecrease(position);
    case Role::canIncrease:
        return canIncrease(position);
    }
    return {};
}

} // namespace tidewright
