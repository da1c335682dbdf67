// What was decided of an item, in its colour.
import QtQuick
import Tidewright.Controls

Badge {
    required property string decision // clean, ask, keep or info

    color: {
        if (decision === "clean")
            return Theme.green
        if (decision === "ask")
            return Theme.orange
        return decision === "info" ? Theme.blue : Theme.text2
    }
}
