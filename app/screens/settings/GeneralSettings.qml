// The first tab: what the program does by itself, and what the system lets it do.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Column {
    id: form

    required property ScreenModels models
    readonly property SettingsModel settings: models.settings

    spacing: Theme.formSpacing

    FormSection {
        width: form.width
        problem: form.settings.loginError

        FormRow {
            text: qsTr("Open at login")
            isFirst: true
            decorative: true

            Toggle {
                text: qsTr("Open at login")
                checked: form.settings.launchAtLogin
                onAsked: on => form.settings.launchAtLogin = on
            }
        }
        FormRow {
            text: qsTr("Show free space next to the menu bar icon")
            decorative: true

            Toggle {
                text: qsTr("Show free space next to the menu bar icon")
                checked: form.settings.showFreeSpaceInMenuBar
                onAsked: on => form.settings.showFreeSpaceInMenuBar = on
            }
        }
    }
    FormSection {
        width: form.width
        footer: qsTr("Tidewright checks every 15 minutes and after waking, and notifies at most twice a day per issue.")

        FormRow {
            text: qsTr("Notify me when space is low or the Trash is large")
            isFirst: true
            decorative: true

            Toggle {
                text: qsTr("Notify me when space is low or the Trash is large")
                checked: form.settings.notificationsEnabled
                onAsked: on => form.settings.notificationsEnabled = on
            }
        }
    }
    FormSection {
        width: form.width
        problem: form.settings.logsError

        Loader {
            active: form.settings.showsPermissions
            visible: active
            width: parent.width
            sourceComponent: PermissionRows { models: form.models }
        }
        FormRow {
            text: qsTr("Audit logs")
            isFirst: !form.settings.showsPermissions

            PushButton {
                text: qsTr("Show in Finder")
                extent: "small"
                Accessible.description: qsTr("Audit logs")
                onClicked: form.settings.showAuditLogs()
            }
        }
    }
}
