// One line of the wheel's legend.
import QtQuick
import Vesk

Item {
    id: row

    required property color color
    required property string title
    required property string detail
    /// Bytes.
    required property real size

    implicitHeight: words.height
    Accessible.role: Accessible.ListItem
    Accessible.ignored: !enabled
    Accessible.name: `${title}, ${ByteCount.text(size)}. ${detail}`

    Rectangle {
        id: mark

        anchors.verticalCenter: parent.verticalCenter
        width: 16
        height: 16
        radius: 8
        color: row.color
        border.width: 1.5
        border.color: Theme.mark(row.color)
    }
    TitleAndNote {
        id: words

        anchors.left: mark.right
        anchors.leftMargin: 12
        anchors.right: amount.left
        anchors.rightMargin: 12
        title: row.title
        note: row.detail
    }
    Label {
        id: amount

        announcedByParent: true
        objectName: "sizeText"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: ByteCount.text(row.size)
        weight: Font.DemiBold
    }
}
