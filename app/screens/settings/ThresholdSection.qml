// Numbers of the settings, each with its stepper.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

FormSection {
    id: section

    required property ThresholdListModel thresholds

    Repeater {
        model: section.thresholds
        delegate: FormRow {
            id: row

            required property int index
            required property string label
            required property real value
            required property real lowest
            required property real highest
            required property real step
            required property bool canDecrease
            required property bool canIncrease

            text: label
            isFirst: index === 0
            decorative: true

            Stepper {
                text: row.label
                number: row.value
                lowest: row.lowest
                highest: row.highest
                step: row.step
                canDecrease: row.canDecrease
                canIncrease: row.canIncrease
                onDecreased: section.thresholds.decrease(row.index)
                onIncreased: section.thresholds.increase(row.index)
                onAsked: number => section.thresholds.setValue(row.index, number)
            }
        }
    }
}
