// Past cleanups, newest first, each with its Undo.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Vesk

Item {
    id: pane

    objectName: "historyPane"

    required property Store store
    /// The run whose details are shown; empty when none is.
    property string openedRun: ""

    Column {
        objectName: "emptyHistory"
        anchors.centerIn: parent
        width: parent.width
        visible: pane.store.history.count === 0
        spacing: Theme.gap

        Words {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: "No cleanups yet"
            font.pixelSize: Theme.title2
            weight: Font.Bold
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
        }
        Words {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: "Past cleanups show up here with an Undo."
            color: Theme.softInk
            wrapMode: Text.Wrap
        }
    }
    ListView {
        id: list

        objectName: "historyList"
        anchors.fill: parent
        // Room for the rows' shadows and focus rings, which reach beyond them.
        anchors.leftMargin: -12
        anchors.rightMargin: -12
        visible: pane.store.history.count > 0
        clip: true
        model: pane.store.history
        spacing: 10
        topMargin: 4
        bottomMargin: Theme.margin
        cacheBuffer: 400
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        T.ScrollBar.vertical: SlimScrollBar {}
        Accessible.role: Accessible.List
        Accessible.ignored: !enabled
        Accessible.name: "History"

        delegate: Rectangle {
            id: row

            required property int index
            required property string entryId
            required property string bytesText
            required property bool preview
            required property string titles
            required property string dateText
            required property real snapshotsRemoved
            required property bool undone
            required property real moveCount

            readonly property string amount: (preview ? "Preview: would free " : "Freed ") + bytesText

            readonly property string snapshots: snapshotsRemoved >= 1 ? `${snapshotsRemoved} snapshots can't be restored` : ""
            readonly property string outcome: preview ? "Nothing changed" : undone ? "Restored" : ""
            readonly property bool hasDetails: outcome === "" && moveCount > 0
            readonly property bool opened: hasDetails && pane.openedRun === entryId

            x: 12
            width: ListView.view.width - 24
            height: columns.implicitHeight + 32
            radius: 20
            color: Theme.card
            Accessible.role: Accessible.ListItem
            Accessible.ignored: !enabled
            Accessible.name: `${amount}. ${titles}. ${dateText}. ${snapshots} ${outcome}`.trim()

            RunDetail {
                id: detail

                store: pane.store
                entryId: row.entryId
                wanted: row.opened
            }
            // The Trash may have been emptied while another window was in front.
            Connections {
                target: Application

                function onStateChanged() {
                    if (Application.state === Qt.ApplicationActive) {
                        detail.refresh();
                    }
                }
            }
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

                    Words {
                        said: true
                        objectName: "amountText"
                        Layout.fillWidth: true
                        text: row.amount
                        weight: Font.Bold
                        wrapMode: Text.Wrap
                    }
                    Words {
                        said: true
                        objectName: "titlesText"
                        Layout.fillWidth: true
                        text: row.titles
                        font.pixelSize: Theme.callout
                        wrapMode: Text.Wrap
                        elide: Text.ElideRight
                        maximumLineCount: 3
                    }
                    Words {
                        said: true
                        objectName: "dateText"
                        Layout.fillWidth: true
                        text: row.dateText
                        color: Theme.softInk
                        font.pixelSize: Theme.caption
                        elide: Text.ElideRight
                    }
                    Words {
                        said: true
                        objectName: "snapshotsText"
                        Layout.fillWidth: true
                        visible: row.snapshots !== ""
                        text: row.snapshots
                        color: Theme.accent
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
                        color: Theme.softInk
                        quiet: true
                        verticalPadding: 4
                        onClicked: pane.openedRun = row.opened ? "" : row.entryId
                        onActiveFocusChanged: {
                            if (activeFocus) {
                                list.positionViewAtIndex(row.index, ListView.Contain);
                            }
                        }
                        hint: row.Accessible.name
                    }
                    ColumnLayout {
                        objectName: "details"
                        Layout.fillWidth: true
                        visible: row.opened
                        spacing: 2

                        Words {
                            objectName: "detailSummary"
                            Layout.fillWidth: true
                            text: detail.summary === "" ? "Looking in the Trash…" : detail.summary
                            font.pixelSize: Theme.callout
                            wrapMode: Text.Wrap
                        }
                        Repeater {
                            model: detail.lines

                            Words {
                                required property string modelData
                                required property int index

                                objectName: "detailLine" + index
                                Layout.fillWidth: true
                                text: modelData
                                color: Theme.softInk
                                font.pixelSize: Theme.callout
                                wrapMode: Text.Wrap
                                elide: Text.ElideMiddle
                                maximumLineCount: 2
                            }
                        }
                        Words {
                            objectName: "detailMore"
                            Layout.fillWidth: true
                            visible: detail.moreCount > 0
                            text: `and ${detail.moreCount} more`
                            color: Theme.softInk
                            font.pixelSize: Theme.callout
                        }
                    }
                }
                Words {
                    said: true
                    objectName: "outcomeText"
                    visible: row.outcome !== ""
                    text: row.outcome
                    color: row.preview ? Theme.softInk : Theme.green
                    font.pixelSize: Theme.callout
                    weight: Font.Bold
                }
                ActionButton {
                    objectName: "undoButton"
                    visible: row.outcome === ""
                    text: "Undo"
                    available: !pane.store.busy
                    onClicked: pane.store.undo(row.entryId)
                    onActiveFocusChanged: {
                        if (activeFocus) {
                            list.positionViewAtIndex(row.index, ListView.Contain);
                        }
                    }
                    hint: row.Accessible.name
                }
            }
        }
    }
}
