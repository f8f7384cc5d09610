// Which items of a past cleanup are not back, and why.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Vesk

ColumnLayout {
    id: details

    required property Store store
    required property string entryId
    /// Whether they are shown. The Trash is checked only then.
    required property bool wanted

    spacing: 2

    RunDetail {
        id: detail

        store: details.store
        entryId: details.entryId
        wanted: details.wanted
    }
    // The Trash may have been emptied while another application was in front.
    Connections {
        target: Application

        function onStateChanged() {
            if (Application.state === Qt.ApplicationActive) {
                detail.refresh();
            }
        }
    }
    Label {
        objectName: "detailSummary"
        Layout.fillWidth: true
        text: detail.summary === "" ? "Looking in the Trash…" : detail.summary
        font.pixelSize: Theme.callout
        wrapMode: Text.Wrap
    }
    Repeater {
        model: detail.lines

        Label {
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
            clip: true  // as in SheetEntries
        }
    }
    Label {
        objectName: "detailMore"
        Layout.fillWidth: true
        visible: detail.moreCount > 0
        text: `and ${detail.moreCount} more`
        color: Theme.softInk
        font.pixelSize: Theme.callout
    }
}
