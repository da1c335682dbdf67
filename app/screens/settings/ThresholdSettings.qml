// The second tab: from when on something is worth telling.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Column {
    id: form

    required property SettingsModel settings

    spacing: Theme.formSpacing

    ThresholdSection {
        width: form.width
        title: qsTr("Disk space")
        thresholds: form.settings.diskThresholds
    }
    ThresholdSection {
        width: form.width
        title: qsTr("Age")
        thresholds: form.settings.ageThresholds
    }
}
