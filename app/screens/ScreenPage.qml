// What the main window shows beside its sidebar: one screen, with what it adds to the toolbar.
import QtQuick

FocusScope {
    focus: true

    property string title
    property Component tools: null

    /// What Command or Ctrl with F does.
    function focusFilter() {
    }
}
