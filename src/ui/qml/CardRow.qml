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
    /// How much of it is there: 0 nothing, 1 all; a little more where it swings beyond its place.
    property real presence: 1
    /// Whether it is being seen off.
    property bool going: false

    /// It has been seen off.
    signal gone

    /// Springs up.
    function come() {
        if (!Motion.reduced) {
            motion.from = 0;
            motion.to = 1;
            motion.restart();
        }
    }

    /// Springs away, and is gone as soon as there is nothing of it.
    function go() {
        going = true;
        enabled = false;
        if (Motion.reduced) {
            gone();
            return;
        }
        motion.from = presence;
        motion.to = 0;
        motion.restart();
    }

    implicitHeight: button.implicitHeight
    opacity: Math.max(0, Math.min(presence, 1))
    onPresenceChanged: {
        if (going && presence <= 0) {
            motion.stop();
            gone();
        }
    }

    // The list itself would keep rows from where they belong when they get higher meanwhile, as wrapped lines do.
    NumberAnimation {
        id: motion

        target: row
        property: "presence"
        duration: ListSpring.duration
        easing: ListSpring.easing
    }

    PressableButton {
        id: button

        objectName: "cardButton"
        anchors.fill: parent
        anchors.leftMargin: row.sideRoom
        anchors.rightMargin: row.sideRoom
        leftPadding: 16
        rightPadding: 12
        verticalPadding: 14
        scale: 0.8 + 0.2 * row.presence
        text: row.title
        onClicked: row.store.detailID = row.cardId

        Accessible.name: row.title
        hint: `${Theme.bucketLabel(row.bucket)}. ${row.amount}. ${row.summary}`

        background: Item {
            scale: button.pressable.scale

            Rectangle {
                objectName: "cardPlate"
                anchors.fill: parent
                radius: 20
                color: button.hovered ? Theme.hovered(Theme.card, row.tint) : Theme.card
                opacity: row.selected || button.hovered ? 1 : 0.7

                SoftShadow {
                    visible: row.selected
                    cornerRadius: 20
                    blurRadius: 12
                    offset: 3
                    color: Theme.faded(Theme.ink, 0.1)
                }
            }
            // Beside the plate rather than on it, so that a card that is not ticked does not dim it.
            FocusRing {
                control: button
                cornerRadius: 20
                gap: 0
            }
        }
        contentItem: RowLayout {
            spacing: 14
            scale: button.pressable.scale

            Rectangle {
                implicitWidth: 46
                implicitHeight: 46
                radius: 23
                color: Theme.faded(row.tint, 0.25)

                Pictogram {
                    anchors.centerIn: parent
                    symbol: row.symbol
                    color: Theme.mark(row.tint)
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
            Pictogram {
                Layout.leftMargin: -8
                symbol: "chevron.right"
                color: button.hovered ? Theme.ink : Theme.softInk
                size: 14
            }
        }
    }
}
