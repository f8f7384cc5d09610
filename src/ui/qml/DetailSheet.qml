// One card in full: what it holds, what removing it means, and whether it is ticked.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Vesk

ModalLayer {
    id: sheet

    required property Store store
    required property string cardID

    signal dismiss

    readonly property color tint: Theme.bucketColor(detail.bucket)

    onAccepted: dismiss()
    onRejected: dismiss()

    CardDetail {
        id: detail

        store: sheet.store
        cardID: sheet.cardID
    }

    Rectangle {
        objectName: "sheetFrame"
        anchors.centerIn: parent
        width: 480
        height: 520
        radius: 28
        color: Theme.card
        Accessible.role: Accessible.Dialog
        Accessible.name: detail.found ? detail.title : "This card is gone."

        SoftShadow {
            cornerRadius: 28
            blurRadius: 32
            offset: 12
            color: Theme.faded(Theme.ink, 0.28)
        }
        ColumnLayout {
            anchors.fill: parent
            anchors.margins: 26
            visible: detail.found
            spacing: 16

            RowLayout {
                spacing: 14

                Pictogram {
                    symbol: detail.symbol
                    color: sheet.tint
                    size: Math.min(32 * Theme.textScale, 48)
                }
                ColumnLayout {
                    spacing: 0

                    Words {
                        objectName: "sheetTitle"
                        Layout.fillWidth: true
                        text: detail.title
                        font.pixelSize: Theme.title2
                        weight: Font.Black
                        elide: Text.ElideRight
                        maximumLineCount: 2
                        wrapMode: Text.Wrap
                        Accessible.role: Accessible.Heading
                    }
                    Words {
                        objectName: "sheetAmount"
                        text: detail.snapshotCount > 0 ? `${detail.snapshotCount} snapshots` : detail.sizeText
                        color: Theme.softInk
                        font.pixelSize: Theme.callout
                    }
                }
                Chip {
                    objectName: "sheetChip"
                    text: detail.bucket === "safe" ? "Safe" : "Review"
                    tint: sheet.tint
                }
            }
            Flickable {
                id: body

                objectName: "sheetBody"
                Layout.fillWidth: true
                Layout.fillHeight: true
                clip: true
                contentHeight: bodyColumn.implicitHeight
                boundsBehavior: Flickable.StopAtBounds
                activeFocusOnTab: contentHeight > height
                T.ScrollBar.vertical: SlimScrollBar {}
                Keys.onUpPressed: flick(0, 500)
                Keys.onDownPressed: flick(0, -500)
                Accessible.role: Accessible.Pane
                Accessible.name: "Details"
                Accessible.focusable: true

                ColumnLayout {
                    id: bodyColumn

                    width: body.width - (body.contentHeight > body.height ? 12 : 0)
                    spacing: 16

                    Words {
                        objectName: "contentsHeading"
                        Layout.fillWidth: true
                        text: detail.snapshotCount === 0
                            ? "What's inside"
                            : "Your Mac keeps a few short-term backup copies. "
                              + `Vesk would remove ${detail.snapshotCount} of them.`
                        weight: Font.Bold
                        wrapMode: Text.Wrap
                        Accessible.role: Accessible.Heading
                    }
                    Rectangle {
                        objectName: "entryBox"
                        Layout.fillWidth: true
                        implicitHeight: entryColumn.implicitHeight + 24
                        visible: detail.snapshotCount === 0
                        radius: 12
                        color: Theme.faded(Theme.track, 0.4)

                        ColumnLayout {
                            id: entryColumn

                            anchors.fill: parent
                            anchors.margins: 12
                            spacing: 6

                            Repeater {
                                objectName: "entryRows"
                                model: detail.entries

                                RowLayout {
                                    id: entryRow

                                    required property string name
                                    required property string sizeText

                                    spacing: Theme.wideGap

                                    Words {
                                        objectName: "entryName"
                                        Layout.fillWidth: true
                                        text: entryRow.name
                                        font.pixelSize: Theme.callout
                                        elide: Text.ElideMiddle
                                        maximumLineCount: 1
                                    }
                                    Words {
                                        objectName: "entrySize"
                                        text: entryRow.sizeText
                                        color: Theme.softInk
                                        font.pixelSize: Theme.callout
                                    }
                                }
                            }
                            Words {
                                objectName: "moreText"
                                visible: detail.moreCount > 0
                                text: `and ${detail.moreCount} more`
                                color: Theme.softInk
                                font.pixelSize: Theme.callout
                            }
                        }
                    }
                    ColumnLayout {
                        Layout.fillWidth: true
                        spacing: 4

                        Words {
                            objectName: "whyHeading"
                            Layout.fillWidth: true
                            text: detail.bucket === "safe" ? "Why it's safe" : "Think about it first"
                            weight: Font.Bold
                            wrapMode: Text.Wrap
                            Accessible.role: Accessible.Heading
                        }
                        Words {
                            objectName: "whyText"
                            Layout.fillWidth: true
                            text: detail.why
                            font.pixelSize: Theme.callout
                            wrapMode: Text.Wrap
                        }
                    }
                    Words {
                        objectName: "dormancyText"
                        Layout.fillWidth: true
                        text: `Last used about ${detail.dormancyDays} day${detail.dormancyDays === 1 ? "" : "s"} ago. `
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
                Layout.topMargin: -16 - height
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
            RowLayout {
                spacing: 8

                ToggleSwitch {
                    objectName: "includeSwitch"
                    name: "Include in clean"
                    tint: sheet.tint
                    checked: detail.selected
                    returnPresses: false
                    onToggled: sheet.store.setSelected(sheet.cardID, checked)
                }
                Words {
                    Layout.fillWidth: true
                    text: "Include in clean"
                    said: true
                    weight: Font.Bold
                    elide: Text.ElideRight
                }
                FilledButton {
                    objectName: "doneButton"
                    Layout.minimumWidth: 96
                    focus: detail.found
                    verticalPadding: 8
                    text: "Done"
                    returnPresses: false
                    onClicked: sheet.dismiss()
                }
            }
        }
        ColumnLayout {
            anchors.fill: parent
            anchors.margins: 26
            visible: !detail.found
            spacing: Theme.wideGap

            Words {
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
                focus: !detail.found
                verticalPadding: 8
                text: "Close"
                returnPresses: false
                onClicked: sheet.dismiss()
            }
        }
    }
}
