// The third tab: where the program looks, and where it never touches anything.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Column {
    id: form

    required property SettingsModel settings

    spacing: Theme.formSpacing

    PathList {
        width: form.width
        title: qsTr("Where to look for projects")
        footer: qsTr("Tidewright reads projects here to learn which toolchain versions they need.")
        paths: form.settings.projectRoots
    }
    PathList {
        width: form.width
        title: qsTr("Never touch")
        footer: qsTr("Items in these folders are always kept, on top of Tidewright's built-in protections.")
        paths: form.settings.exclusions
    }
}
