// A question, or a piece of news: a title, a sentence, perhaps a list, and one or two buttons.
import QtQuick
import QtQuick.Layouts
import Vesk

ModalLayer {
    id: dialog

    required property string title
    required property string message
    /// What the message is about, one below the other.
    property var items: []
    required property string acceptText
    /// Empty where there is nothing to choose.
    property string rejectText: ""

    DialogCard {
        objectName: "dialogCard"
        width: Math.min(440 * Math.min(Theme.textScale, 1.5), parent.width - 2 * Theme.margin)
        height: Math.min(inside.implicitHeight + 56, parent.height - 2 * Theme.margin)
        Accessible.role: Accessible.Dialog
        Accessible.name: dialog.title
        Accessible.description: Words.joined([dialog.message, dialog.items.join(", ")], " ")

        ColumnLayout {
            id: inside

            anchors.fill: parent
            anchors.margins: 28
            spacing: Theme.margin

            ScrollArea {
                id: body

                objectName: "dialogBody"
                Layout.fillWidth: true
                Layout.fillHeight: true
                implicitHeight: words.height
                contentHeight: words.height
                clip: overflows
                activeFocusOnTab: overflows
                Keys.onUpPressed: flick(0, 500)
                Keys.onDownPressed: flick(0, -500)
                Accessible.role: Accessible.Pane
                Accessible.name: "Details"
                Accessible.focusable: overflows
                Accessible.ignored: !overflows

                Column {
                    id: words

                    width: body.width - (body.overflows ? 12 : 0)
                    spacing: Theme.gap

                    Label {
                        objectName: "dialogTitle"
                        width: parent.width
                        text: dialog.title
                        font.pixelSize: Theme.title2
                        weight: Font.Black
                        wrapMode: Text.Wrap
                        Accessible.role: Accessible.Heading
                    }
                    Label {
                        objectName: "dialogMessage"
                        width: parent.width
                        text: dialog.message
                        color: Theme.softInk
                        lineHeight: 1.15
                        wrapMode: Text.Wrap
                    }
                    Label {
                        objectName: "dialogItems"
                        width: parent.width
                        visible: text !== ""
                        text: dialog.items.join("\n")
                        font.pixelSize: Theme.callout
                        lineHeight: 1.15
                        wrapMode: Text.Wrap
                        clip: true
                    }
                }
            }
            RowLayout {
                Layout.fillWidth: true
                spacing: 12

                Item {
                    Layout.fillWidth: true
                }
                ActionButton {
                    objectName: "rejectButton"
                    Layout.minimumWidth: 96
                    Layout.fillHeight: true
                    visible: dialog.rejectText !== ""
                    text: dialog.rejectText
                    textSize: Theme.body
                    color: Theme.ink
                    onClicked: dialog.rejected()
                }
                FilledButton {
                    objectName: "acceptButton"
                    Layout.minimumWidth: 96
                    focus: true
                    text: dialog.acceptText
                    onClicked: dialog.accepted()
                }
            }
        }
    }
}
