// A question, or a piece of news: a title, a sentence, and one or two buttons.
import QtQuick
import QtQuick.Layouts
import Vesk

ModalLayer {
    id: dialog

    required property string title
    required property string message
    required property string acceptText
    /// Empty where there is nothing to choose.
    property string rejectText: ""

    DialogCard {
        width: Math.min(440, parent.width - 48)
        height: column.implicitHeight + 56
        Accessible.role: Accessible.Dialog
        Accessible.name: dialog.title
        Accessible.description: dialog.message

        ColumnLayout {
            id: column

            anchors.fill: parent
            anchors.margins: 28
            spacing: 0

            Label {
                objectName: "dialogTitle"
                Layout.fillWidth: true
                text: dialog.title
                font.pixelSize: Theme.title2
                weight: Font.Black
                wrapMode: Text.Wrap
                Accessible.role: Accessible.Heading
            }
            Label {
                objectName: "dialogMessage"
                Layout.fillWidth: true
                Layout.topMargin: Theme.gap
                text: dialog.message
                color: Theme.softInk
                lineHeight: 1.15
                wrapMode: Text.Wrap
            }
            RowLayout {
                Layout.fillWidth: true
                Layout.topMargin: Theme.margin
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
                    color: Theme.softInk
                    returnPresses: false
                    onClicked: dialog.rejected()
                }
                FilledButton {
                    objectName: "acceptButton"
                    Layout.minimumWidth: 96
                    focus: true
                    text: dialog.acceptText
                    returnPresses: false
                    onClicked: dialog.accepted()
                }
            }
        }
    }
}
