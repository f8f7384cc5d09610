// A bold line with a note beneath it. Its parent's accessible name says both. (Not a layout: in Qt 6.4 nested layouts
// get the height of wrapped lines wrong.)
import QtQuick
import Vesk

Column {
    id: lines

    required property string title
    required property string note

    Label {
        announcedByParent: true
        width: lines.width
        text: lines.title
        weight: Font.Bold
        wrapMode: Text.Wrap
    }
    Label {
        announcedByParent: true
        width: lines.width
        text: lines.note
        color: Theme.softInk
        font.pixelSize: Theme.caption
        wrapMode: Text.Wrap
    }
}
