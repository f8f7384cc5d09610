// One card of the list: what it is, what it frees, and whether it is ticked. Pressing it opens its detail sheet.
//
// The button lies in a plain item, because a list places its delegates itself: newer Qt moves them to its left edge, and
// keeps those out of sight from assistive technology.
import QtQuick
import QtQuick.Layouts
import Vesk

Item {
    id: row

    required property Store store
    required property int index
    required property string cardId
    required property string title
    required property string symbol
    required property string bucket
    required property string summary
    required property string sizeText
    required property int snapshotCount
    required property bool selected

    readonly property color tint: Theme.bucketColor(bucket)
    readonly property string amount: snapshotCount > 0 ? "Size varies" : sizeText
    readonly property alias button: button
    /// Room on both sides, for the shadow and the focus ring.
    property real sideRoom: 0

    implicitHeight: button.implicitHeight

    PressableButton {
        id: button

        objectName: "cardButton"
        anchors.fill: parent
        anchors.leftMargin: row.sideRoom
        anchors.rightMargin: row.sideRoom
        leftPadding: 16
        rightPadding: 12
        verticalPadding: 14
        text: row.title
        onClicked: row.store.detailID = row.cardId

        Accessible.name: row.title
        hint: `${Theme.bucketLabel(row.bucket)}. ${row.amount}. ${row.summary}`

        background: Rectangle {
            radius: 20
            color: button.hovered && !button.down ? Qt.lighter(Theme.card, 1.02) : Theme.card
            opacity: row.selected ? 1 : 0.7

            SoftShadow {
                visible: row.selected
                cornerRadius: 20
                blurRadius: 12
                offset: 3
                color: Theme.faded(Theme.ink, 0.1)
            }
            FocusRing {
                control: button
                anchors.margins: -2
                radius: 22
            }
        }
        contentItem: RowLayout {
            spacing: 14

            Rectangle {
                implicitWidth: 46
                implicitHeight: 46
                radius: 23
                color: Theme.faded(row.tint, 0.25)

                Pictogram {
                    anchors.centerIn: parent
                    symbol: row.symbol
                    color: row.tint
                    size: 24
                }
            }
            CardText {
                Layout.fillWidth: true
                title: row.title
                summary: row.summary
                chip: Theme.bucketLabel(row.bucket)
                tint: row.tint
            }
            Label {
                objectName: "sizeText"
                announcedByParent: true
                text: row.amount
                weight: Font.Bold
            }
            ToggleSwitch {
                objectName: "cardSwitch"
                name: row.title
                tint: row.tint
                checked: row.selected
                onToggled: row.store.setSelected(row.cardId, checked)
            }
        }
    }
}
