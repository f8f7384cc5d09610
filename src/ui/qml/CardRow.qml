// One card in the list: what it is, what it frees, and whether it is ticked. Pressing it opens its detail sheet.
//
// The button is inside a plain item, since a list positions its delegates itself: newer Qt moves them to the list's left
// edge, and hides those out of view from assistive technology.
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
    /// Space on both sides for the shadow and the focus ring.
    property real sideRoom: 0
    /// How far it has appeared, from 0 to 1; a little more while the spring overshoots.
    property real presence: 1
    /// Whether it is disappearing.
    property bool going: false

    /// It has disappeared.
    signal gone

    /// Starts to appear.
    function come() {
        if (!Motion.reduced) {
            motion.from = 0;
            motion.to = 1;
            motion.restart();
        }
    }

    /// Starts to disappear.
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

    // Not a transition of the list: it would misplace rows whose height changes meanwhile, as it does when lines wrap.
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
            // Not inside the plate, whose opacity would dim it while the card is not ticked.
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
