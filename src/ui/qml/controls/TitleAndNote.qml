// A bold line with a note beneath it, of something that says both itself to those who do not see it. (Not a layout: nested ones lose count of wrapped lines in Qt 6.4.)
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
