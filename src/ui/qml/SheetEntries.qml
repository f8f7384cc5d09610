// The box in the detail sheet that lists a card's entries, largest first.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Vesk

Rectangle {
    id: box

    required property CardDetail detail

    implicitHeight: rows.implicitHeight + 20
    radius: 12
    color: Theme.faded(Theme.track, 0.4)

    ColumnLayout {
        id: rows

        anchors.fill: parent
        anchors.margins: 12
        anchors.topMargin: 10
        anchors.bottomMargin: 10
        spacing: 3

        Repeater {
            objectName: "entryRows"
            model: box.detail.entries

            RowLayout {
                id: entryRow

                required property string name
                required property string sizeText

                spacing: Theme.wideGap

                Label {
                    objectName: "entryName"
                    Layout.fillWidth: true
                    Layout.preferredHeight: Math.ceil(1.2 * Theme.callout)
                    text: entryRow.name
                    font.pixelSize: Theme.callout
                    elide: Text.ElideMiddle
                    maximumLineCount: 1
                    // A name's combining marks may stand one above the other, far beyond its row.
                    clip: true
                }
                Label {
                    objectName: "entrySize"
                    Layout.preferredHeight: Math.ceil(1.2 * Theme.callout)
                    text: entryRow.sizeText
                    color: Theme.softInk
                    font.pixelSize: Theme.callout
                }
            }
        }
        Label {
            objectName: "moreText"
            visible: box.detail.moreCount > 0
            text: `and ${box.detail.moreCount} more`
            color: Theme.softInk
            font.pixelSize: Theme.callout
        }
    }
}
