// Past cleanups, newest first, each with an Undo button.
pragma ComponentBehavior: Bound

import QtQuick
import Vesk

Item {
    id: pane

    objectName: "historyPane"

    required property Store store
    /// The run whose details are shown; empty if none are.
    property string openedRun: ""
    readonly property alias list: list

    Column {
        objectName: "emptyHistory"
        anchors.centerIn: parent
        width: parent.width
        visible: pane.store.history.count === 0 && !pane.store.history.loading
        spacing: Theme.gap

        EmptyDrawing {
            anchors.horizontalCenter: parent.horizontalCenter
            clock: true
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: "No cleanups yet"
            font.pixelSize: Theme.title2
            weight: Font.Bold
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: "Past cleanups show up here with an Undo."
            color: Theme.softInk
            wrapMode: Text.Wrap
        }
    }
    RowList {
        id: list

        objectName: "historyList"
        model: pane.store.history
        cacheBuffer: 400
        Accessible.name: "History"

        delegate: HistoryRow {
            store: pane.store
            width: ListView.view.width
            sideRoom: list.sideRoom
            open: pane.openedRun === entryId
            onToggleDetails: pane.openedRun = opened ? "" : entryId
            onFocused: list.positionViewAtIndex(index, ListView.Contain)
        }
    }
    ListFade {
        list: list
    }
}
