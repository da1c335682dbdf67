// What to expect of a first scan.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens

ColumnLayout {
    id: view

    component Step: GlassCard {
        id: step

        required property int number
        required property string symbolName
        required property string title
        required property string text

        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.preferredWidth: 1
        Accessible.role: Accessible.Grouping
        Accessible.name: qsTr("Step %1 %2").arg(number).arg(title)
        Accessible.description: text

        ColumnLayout {
            width: parent.width
            spacing: 6

            Symbol {
                Layout.bottomMargin: 4
                name: step.symbolName
                size: Theme.cardSymbolSize
                color: Theme.accent
            }
            Words {
                Layout.fillWidth: true
                text: step.title
                font: Theme.headline
                wrapMode: Text.Wrap
            }
            Words {
                Layout.fillWidth: true
                text: step.text
                font: Theme.callout
                color: Theme.text2
                wrapMode: Text.Wrap
                lineHeight: 1.15
            }
        }
    }

    spacing: 12

    SectionTitle {
        Layout.fillWidth: true
        title: qsTr("How Tidewright decides")
        subtitle: qsTr("Nothing is deleted until you review it.")
    }
    CardGrid {
        Layout.fillWidth: true
        count: 4

        Step {
            number: 1
            symbolName: "magnifyingglass"
            title: qsTr("Learns your projects")
            text: qsTr("Reads Gradle, CocoaPods and package.json files to see which SDK, NDK, Gradle and simulator versions they need.")
        }
        Step {
            number: 2
            symbolName: "lock.shield"
            title: qsTr("Protects what's in use")
            text: qsTr("Running emulators, simulators, IDEs and npx tools are never touched. Signing keys, git data and .env files are off limits.")
        }
        Step {
            number: 3
            symbolName: "checklist"
            title: qsTr("Explains every item")
            text: qsTr("Each item says what it is, why it can or can't go, and what happens afterwards.")
        }
        Step {
            number: 4
            symbolName: "arrow.uturn.backward"
            title: qsTr("Cleans the safe way")
            text: qsTr("Uses each tool's own clean command where one exists. Personal files go to the Trash.")
        }
    }
}
