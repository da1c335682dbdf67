// A text to read and to copy from.
import QtQuick
import Tidewright.Controls

TextEdit {
    id: edit

    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    readOnly: true
    selectByMouse: true
    activeFocusOnTab: true
    font: Theme.callout
    color: Theme.text2
    selectionColor: Theme.accent
    selectedTextColor: Theme.onAccent

    Accessible.role: Accessible.StaticText
    Accessible.name: edit.text
    Accessible.readOnly: true
    Accessible.selectableText: true

    FocusRing { shown: edit.activeFocus }
}
