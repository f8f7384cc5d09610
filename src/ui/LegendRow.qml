// One line of the wheel's legend.
import QtQuick
import QtQuick.Layouts
import Vesk

RowLayout {
    id: row

    required property color color
    required property string title
    required property string detail
    /// Bytes.
    required property real size

    spacing: 12
    Accessible.role: Accessible.ListItem
    Accessible.name: `${title}, ${ByteCount.text(size)}. ${detail}`

    Rectangle {
        implicitWidth: 16
        implicitHeight: 16
        radius: 8
        color: row.color
        Accessible.ignored: true
    }
    ColumnLayout {
        spacing: 0

        Words {
            Layout.fillWidth: true
            text: row.title
            weight: Font.Bold
            wrapMode: Text.Wrap
        }
        Words {
            Layout.fillWidth: true
            text: row.detail
            color: Theme.softInk
            font.pixelSize: Theme.caption
            wrapMode: Text.Wrap
        }
    }
    Words {
        objectName: "sizeText"
        text: ByteCount.text(row.size)
        weight: Font.DemiBold
    }
}
