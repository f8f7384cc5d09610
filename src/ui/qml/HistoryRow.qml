// One past cleanup of the history: what it freed, when, and its Undo. Where items of it are still away from their
// places, its details say why. The plate lies in a plain item for the same reason as that of a card (CardRow).
import QtQuick
import QtQuick.Layouts
import Vesk

Item {
    id: row

    required property Store store
    required property int index
    required property string entryId
    required property string bytesText
    required property bool preview
    required property string titles
    required property string dateText
    required property real snapshotsRemoved
    required property bool undone
    required property real moveCount
    /// Room on both sides, for the shadow and the focus ring.
    property real sideRoom: 0
    /// Whether its details are wanted.
    property bool open: false

    readonly property string amount: (preview ? "Preview: would free " : "Freed ") + bytesText
    readonly property string snapshots: snapshotsRemoved >= 1 ? `${snapshotsRemoved} snapshots can't be restored` : ""
    readonly property string outcome: preview ? "Nothing changed" : undone ? "Restored" : ""
    readonly property bool hasDetails: outcome === "" && moveCount > 0
    readonly property bool opened: hasDetails && open

    /// The details are to be shown, or hidden again.
    signal toggleDetails
    /// A control of the row has got the focus.
    signal focused

    height: columns.implicitHeight + 32

    Rectangle {
        id: plate

        objectName: "historyPlate"
        anchors.fill: parent
        anchors.leftMargin: row.sideRoom
        anchors.rightMargin: row.sideRoom
        radius: 20
        color: Theme.card
        Accessible.role: Accessible.ListItem
        Accessible.ignored: !enabled
        Accessible.name: Words.joined([row.amount, row.titles, row.dateText, row.snapshots, row.outcome], ". ")

        SoftShadow {
            cornerRadius: 20
            blurRadius: 12
            offset: 3
        }
        RowLayout {
            id: columns

            anchors.fill: parent
            anchors.margins: 16
            anchors.leftMargin: 20
            anchors.rightMargin: 20
            spacing: Theme.wideGap

            ColumnLayout {
                spacing: 2

                Label {
                    announcedByParent: true
                    objectName: "amountText"
                    Layout.fillWidth: true
                    text: row.amount
                    weight: Font.Bold
                    wrapMode: Text.Wrap
                }
                Label {
                    announcedByParent: true
                    objectName: "titlesText"
                    Layout.fillWidth: true
                    text: row.titles
                    font.pixelSize: Theme.callout
                    wrapMode: Text.Wrap
                    clip: true  // as in SheetEntries
                }
                Label {
                    announcedByParent: true
                    objectName: "dateText"
                    Layout.fillWidth: true
                    text: row.dateText
                    color: Theme.softInk
                    font.pixelSize: Theme.caption
                    wrapMode: Text.Wrap
                }
                Label {
                    announcedByParent: true
                    objectName: "snapshotsText"
                    Layout.fillWidth: true
                    visible: row.snapshots !== ""
                    text: row.snapshots
                    color: Theme.words(Theme.accent)
                    font.pixelSize: Theme.caption
                    weight: Font.Bold
                    wrapMode: Text.Wrap
                }
                ActionButton {
                    objectName: "detailsButton"
                    Layout.leftMargin: -horizontalPadding
                    Layout.topMargin: 2
                    visible: row.hasDetails
                    text: row.opened ? "Hide details" : "Details"
                    textSize: Theme.caption
                    color: Theme.ink
                    quiet: true
                    verticalPadding: 4
                    onClicked: row.toggleDetails()
                    onActiveFocusChanged: {
                        if (activeFocus) {
                            row.focused();
                        }
                    }
                    hint: plate.Accessible.name
                }
                HistoryDetails {
                    objectName: "details"
                    Layout.fillWidth: true
                    visible: row.opened
                    store: row.store
                    entryId: row.entryId
                    wanted: row.opened
                }
            }
            Label {
                announcedByParent: true
                objectName: "outcomeText"
                visible: row.outcome !== ""
                text: row.outcome
                color: row.preview ? Theme.softInk : Theme.words(Theme.green)
                font.pixelSize: Theme.callout
                weight: Font.Bold
            }
            ActionButton {
                objectName: "undoButton"
                visible: row.outcome === ""
                text: "Undo"
                available: !row.store.busy
                onClicked: row.store.undo(row.entryId)
                onActiveFocusChanged: {
                    if (activeFocus) {
                        row.focused();
                    }
                }
                hint: plate.Accessible.name
            }
        }
    }
}
