// What a clean came to, with confetti. A tap anywhere, Return, Space or Escape closes it.
import QtQuick
import Vesk

ModalLayer {
    id: view

    /// The fields of a celebration: `bytesText`, `preview`, `snapshots`, `failures`.
    required property var info
    property bool pop: false

    signal close

    readonly property string amount: info.bytesText + (info.preview ? " could be freed" : " freed")
    readonly property string reassurance: info.preview
        ? "Nothing was touched." : "It's all in the Trash. Undo anytime from History."

    function counted(count: real, noun: string): string {
        return `${count} ${noun}${count === 1 ? "" : "s"}`;
    }

    dim: Qt.rgba(0, 0, 0, 0.35)
    onAccepted: close()
    onRejected: close()
    onTapped: close()
    Keys.onSpacePressed: close()
    Component.onCompleted: pop = true
    Accessible.role: Accessible.AlertMessage
    Accessible.name: Words.joined([title.text, amount + ".", reassurance, snapshotsText.text, failuresText.text], " ")
    Accessible.focusable: true
    Accessible.onPressAction: close()

    SpringValue {
        id: popSpring

        target: view.pop ? 1 : 0
        response: 0.55
        dampingFraction: 0.5
    }
    DialogCard {
        objectName: "celebrationCard"
        width: Math.min(440, parent.width - 48)
        height: column.implicitHeight + 80
        shadowColor: Qt.rgba(0, 0, 0, 0.3)
        scale: 0.4 + 0.6 * popSpring.value
        opacity: Math.max(0, Math.min(1, popSpring.value))

        Column {
            id: column

            anchors.centerIn: parent
            width: parent.width - 64
            spacing: Theme.gap

            component Line: Label {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
            }

            Line {
                id: title

                objectName: "celebrationTitle"
                text: view.info.preview ? "Preview done" : "Vesk!"
                font.pixelSize: Theme.display
                weight: Font.Black
                Accessible.role: Accessible.Heading
            }
            Line {
                id: amountText

                objectName: "celebrationAmount"
                text: view.amount
                color: Theme.mark(Theme.accent)
                font.pixelSize: Theme.title
                weight: Font.Black
                bottomPadding: 8
            }
            Line {
                id: reassuranceText

                objectName: "celebrationReassurance"
                text: view.reassurance
            }
            Line {
                id: snapshotsText

                objectName: "celebrationSnapshots"
                visible: text !== ""
                text: view.info.snapshots >= 1
                    ? view.counted(view.info.snapshots, "Time Machine snapshot") + " removed." : ""
                color: Theme.softInk
                font.pixelSize: Theme.callout
            }
            Line {
                id: failuresText

                objectName: "celebrationFailures"
                visible: text !== ""
                text: view.info.failures >= 1
                    ? view.counted(view.info.failures, "item") + " couldn't be moved (maybe in use)." : ""
                color: Theme.softInk
                font.pixelSize: Theme.callout
            }
            Line {
                objectName: "celebrationHint"
                text: "Click anywhere to close"
                color: Theme.softInk
                font.pixelSize: Theme.caption
                topPadding: Theme.gap
                announcedByParent: true
            }
        }
    }
    Loader {
        objectName: "confettiPlace"
        anchors.fill: parent
        active: !Motion.reduced
        sourceComponent: ConfettiView {}
    }
}
