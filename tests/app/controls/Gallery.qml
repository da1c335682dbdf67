// All controls on one page.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls

Rectangle {
    id: gallery

    component Line: RowLayout {
        spacing: Theme.cardSpacing
    }

    color: Theme.window
    width: 1180
    height: 900

    Column {
        x: Theme.windowPaddingAside
        y: Theme.windowPaddingAbove
        width: parent.width - 2 * x
        spacing: Theme.blockSpacing

        Line {
            DiskOrbView {
                objectName: "orb"
                usedFraction: 0.74
                health: "good"
                label: "Disk 74 percent full, Healthy"
            }
            DiskOrbView { usedFraction: 0.9; health: "low"; label: "Low" }
            DiskOrbView { usedFraction: 0.97; health: "critical"; label: "Critical" }
            DiskOrbView { usedFraction: 0.3; health: "good"; label: "Small"; implicitWidth: 64; implicitHeight: 64 }
            Column {
                spacing: Theme.cardSpacing

                Words { text: "128.4 GB"; font: Theme.bigFigure }
                CapacityBar {
                    width: 300
                    usedFraction: 0.74
                    freeableFraction: 0.08
                    tintTop: Theme.liquidTop["good"]
                    tintBottom: Theme.liquidBottom["good"]
                    label: "366 GB used of 494 GB"
                }
                CapacityBar {
                    width: 300
                    usedFraction: 0.02
                    tintTop: Theme.liquidTop["low"]
                    tintBottom: Theme.liquidBottom["low"]
                    label: "Little"
                }
                CapacityBar {
                    width: 300
                    usedFraction: 1
                    freeableFraction: 0.5
                    tintTop: Theme.liquidTop["critical"]
                    tintBottom: Theme.liquidBottom["critical"]
                    label: "Full"
                }
                Line {
                    Figure { label: "Selected to free"; size: "37.7 GB"; color: Theme.green }
                    Figure { label: "More if you opt in"; size: "24.6 GB"; color: Theme.orange }
                    Figure { label: "to free"; size: "212 GB"; color: Theme.accent; labelBelow: true }
                }
            }
        }
        Line {
            PushButton { objectName: "plain"; text: "Scan"; symbolName: "arrow.clockwise"; help: "Scan the disk" }
            PushButton { objectName: "prominent"; text: "Review & Clean 37.7 GB"; symbolName: "sparkles"; kind: "prominent" }
            PushButton { text: "Clean"; kind: "prominent"; enabled: false }
            PushButton { text: "Scan"; enabled: false }
            PushButton { text: "Review & Clean 37.7 GB"; symbolName: "sparkles"; kind: "prominent"; extent: "large" }
            PushButton { text: "Scan Again"; symbolName: "arrow.clockwise"; extent: "large" }
            PushButton { text: "Empty Trash…"; extent: "small" }
            PushButton { text: "Delete"; symbolName: "trash"; kind: "destructive" }
            PushButton { objectName: "link"; text: "See All"; kind: "link" }
        }
        Line {
            SegmentedPicker { label: "Show"; options: ["All", "Can Clean", "Kept"]; currentIndex: 0 }
            SegmentedPicker { label: "Show"; options: ["All", "Can Clean", "Kept"]; currentIndex: 1 }
            SearchField { objectName: "search"; placeholder: "Filter items" }
            SearchField { placeholder: "Filter items"; text: "gradle" }
            IconButton { symbolName: "sidebar.trailing"; text: "Inspector" }
            IconButton { symbolName: "sidebar.trailing"; text: "Inspector"; checkable: true; checked: true }
            TickBox { text: "Ticked"; checked: true }
            TickBox { text: "Not ticked" }
            TickBox { text: "Ticked"; checked: true; enabled: false }
            TickBox { text: "Not ticked"; enabled: false }
            Toggle { text: "On"; checked: true }
            Toggle { text: "Off" }
            Spinner { running: true }
            ProgressLine { value: 0.4; label: "Scanning" }
        }
        Line {
            Badge { text: "Recommended"; symbolName: "checkmark.circle.fill"; color: Theme.green }
            Badge { text: "Optional"; symbolName: "questionmark.circle.fill"; color: Theme.orange }
            Badge { text: "Kept"; symbolName: "lock.fill" }
            Badge { text: "For review"; symbolName: "info.circle.fill"; color: Theme.blue }
            Badge { text: "React Native"; color: Theme.teal }
            CountBadge { text: "3" }
            CountBadge { text: "128" }
            SizeText { size: "37.7 GB" }
            Symbol { name: "trash" }
            Symbol { name: "folder"; size: Theme.cardSymbolSize; color: Theme.accent }
            Stepper { text: "Steps"; number: 3; lowest: 0; highest: 5 }
            Stepper { text: "At the bound"; number: 5; lowest: 0; highest: 5 }
        }
        Line {
            Repeater {
                model: [Theme.orange, Theme.accent, Theme.teal, "transparent"]
                delegate: GlassCard {
                    id: card

                    required property color modelData

                    tint: modelData
                    hoverable: true
                    Layout.preferredWidth: 268

                    Column {
                        spacing: 6

                        SectionTitle { width: 236; title: "Your Trash is holding 6.2 GB"; subtitle: "Deleted files keep using space." }
                        PushButton { text: "Empty Trash…"; extent: "small" }
                    }
                }
            }
        }
        Line {
            EmptyStateView {
                title: "No selection"
                symbolName: "cursorarrow.click"
                message: "Select an item to see what it is and why Tidewright made its decision."
                actionTitle: "Scan"
            }
            Separator { Layout.fillHeight: true }
            ListArea {
                width: 300
                implicitWidth: 300
                implicitHeight: 150
                model: 30
                delegate: Words {
                    required property int index

                    height: Theme.sidebarRowHeight
                    text: "Row " + index
                }
            }
            Item {
                implicitWidth: 300
                implicitHeight: 150

                ContextMenu {
                    objectName: "menu"
                    visible: true
                    y: 10
                    closePolicy: ContextMenu.NoAutoClose

                    MenuEntry { text: "Reveal in Finder"; symbolName: "folder" }
                    MenuEntry { objectName: "entry"; text: "Select for Cleaning"; symbolName: "checkmark.circle" }
                    MenuEntry { text: "Not now"; enabled: false }
                }
            }
        }
    }
}
