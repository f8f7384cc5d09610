// One card in full: what it holds, what removing it means, and whether it is ticked.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Vesk

ModalLayer {
    id: sheet

    required property Store store
    required property string cardID

    signal dismiss

    readonly property color tint: Theme.bucketColor(card.bucket)

    onAccepted: dismiss()
    onRejected: dismiss()
    Keys.onPressed: event => event.accepted = Scrolling.turn(body, event.key)

    CardDetail {
        id: card

        store: sheet.store
        cardID: sheet.cardID
    }

    DialogCard {
        objectName: "sheetFrame"
        width: Math.min(480, parent.width - 2 * Theme.gap)
        height: Math.min(520, parent.height - 2 * Theme.gap)
        Accessible.role: Accessible.Dialog
        Accessible.name: card.found ? card.title : "This card is gone."

        ColumnLayout {
            anchors.fill: parent
            anchors.margins: 26
            visible: card.found
            spacing: 12

            SheetHeader {
                detail: card
                tint: sheet.tint
            }
            ScrollArea {
                id: body

                objectName: "sheetBody"
                Layout.fillWidth: true
                Layout.fillHeight: true
                clip: true
                contentHeight: bodyColumn.height
                activeFocusOnTab: overflows
                Keys.onUpPressed: flick(0, 500)
                Keys.onDownPressed: flick(0, -500)
                Accessible.role: Accessible.Pane
                Accessible.name: "Details"
                Accessible.focusable: true

                // Gaps are such that eight entries, a reason of three lines and the sentence on undo fit.
                Column {
                    id: bodyColumn

                    width: body.width - (body.overflows ? 12 : 0)
                    spacing: 6

                    Label {
                        objectName: "contentsHeading"
                        width: parent.width
                        text: card.snapshotCount === 0
                            ? "What's inside"
                            : "Your Mac keeps a few short-term backup copies. "
                              + `Vesk would remove ${card.snapshotCount} of them.`
                        weight: Font.Bold
                        wrapMode: Text.Wrap
                        Accessible.role: Accessible.Heading
                    }
                    SheetEntries {
                        objectName: "entryBox"
                        width: parent.width
                        visible: card.snapshotCount === 0
                        detail: card
                    }
                    Label {
                        objectName: "whyHeading"
                        width: parent.width
                        topPadding: 4
                        text: card.bucket === "safe" ? "Why it's safe" : "Think about it first"
                        weight: Font.Bold
                        wrapMode: Text.Wrap
                        Accessible.role: Accessible.Heading
                    }
                    Label {
                        objectName: "whyText"
                        width: parent.width
                        text: card.why
                        font.pixelSize: Theme.callout
                        wrapMode: Text.Wrap
                    }
                    Label {
                        objectName: "dormancyText"
                        width: parent.width
                        topPadding: 2
                        text: `Last used about ${card.dormancyDays} day${card.dormancyDays === 1 ? "" : "s"} ago. `
                            + "Everything moves to the Trash, so you can undo it."
                        color: Theme.softInk
                        font.pixelSize: Theme.callout
                        wrapMode: Text.Wrap
                    }
                }
            }
            // More is to come below: the last visible line fades.
            Rectangle {
                Layout.fillWidth: true
                Layout.topMargin: -12 - height
                Layout.rightMargin: 12
                implicitHeight: 28
                opacity: body.atYEnd ? 0 : 1
                gradient: Gradient {
                    GradientStop {
                        position: 0
                        color: Theme.faded(Theme.card, 0)
                    }
                    GradientStop {
                        position: 1
                        color: Theme.card
                    }
                }
            }
            SheetFooter {
                selected: card.selected
                tint: sheet.tint
                onToggled: checked => sheet.store.setSelected(sheet.cardID, checked)
                onDone: sheet.dismiss()
            }
        }
        ColumnLayout {
            anchors.fill: parent
            anchors.margins: 26
            visible: !card.found
            spacing: Theme.wideGap

            Label {
                objectName: "goneText"
                Layout.fillWidth: true
                Layout.fillHeight: true
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                text: "This card is gone."
                font.pixelSize: Theme.title2
                weight: Font.Bold
                wrapMode: Text.Wrap
            }
            FilledButton {
                objectName: "closeButton"
                Layout.alignment: Qt.AlignRight
                Layout.minimumWidth: 96
                focus: !card.found
                verticalPadding: 8
                text: "Close"
                onClicked: sheet.dismiss()
            }
        }
    }
}
