// A count of bytes, as the state words it: one line, with digits of one width.
import QtQuick
import Tidewright.Controls

Words {
    required property string size

    text: size
    maximumLineCount: 1
}
