// Cards of equal width, as many beside each other as there is room for and as fill the rows evenly.
// Each card sets Layout.fillWidth and Layout.preferredWidth: 1.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls

GridLayout {
    id: grid

    required property int count ///< of the cards
    property real minimumWidth: 200
    property int maximumColumns: 99

    readonly property int fitting: Math.max(1, Math.min(maximumColumns, Math.floor((width + columnSpacing) / (minimumWidth + columnSpacing))))

    columnSpacing: Theme.cardSpacing
    rowSpacing: Theme.cardSpacing
    columns: Math.max(1, Math.ceil(count / Math.max(1, Math.ceil(count / fitting))))
}
