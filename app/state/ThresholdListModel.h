// Numbers of the settings that a user sets step by step.
#pragma once

#include "app/state/AppModel.h"
#include "app/state/RowModel.h"

namespace tidewright {

/// A setting, its name in words and the limits within which a step may set it.
struct Threshold {
    const char* label = nullptr; ///< with "%1" for the value
    qint64 (SettingsStore::*value)() const = nullptr;
    void (SettingsStore::*set)(qint64) = nullptr;
    void (SettingsStore::*changed)() = nullptr; ///< its signal
    qint64 lowest = 0;
    qint64 highest = 0;
    qint64 step = 1;

    bool operator==(const Threshold&) const = default;
};

/// Main thread only. A value beyond the limits, which others may have set, is shown as it stands,
/// and the first step leads within them.
class ThresholdListModel : public RecordModel<Threshold> {
    Q_OBJECT

public:
    enum class Role {
        label = Qt::UserRole, ///< with the value
        value,
        lowest,
        highest,
        step,
        canDecrease,
        canIncrease,
    };
    Q_ENUM(Role)

    ThresholdListModel(AppModel& model,
                       std::vector<Threshold> thresholds,
                       QObject* parent = nullptr);

    /// One step down or up, which ends at the limit.
    Q_INVOKABLE void decrease(int row);
    Q_INVOKABLE void increase(int row);
    /// The value itself, brought within the limits.
    Q_INVOKABLE void setValue(int row, qint64 value);

protected:
    QVariant value(std::size_t position, int role) const override;
    std::string_view key(const Threshold& threshold) const override { return threshold.label; }

private:
    void takeValue(int row);
    bool canDecrease(std::size_t position) const;
    bool canIncrease(std::size_t position) const;

    QPointer<AppModel> m_model;
    std::vector<qint64> m_values; ///< by position
};

} // namespace tidewright
