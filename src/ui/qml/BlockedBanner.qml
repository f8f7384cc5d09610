// Says which places could not be read, with a button for the settings that allow it.
import QtQuick
import QtQuick.Layouts
import Vesk

Rectangle {
    id: banner

    required property Store store
    readonly property var areas: store.blockedAreas

    implicitHeight: column.implicitHeight + 32
    radius: 20
    color: Theme.card
    border.color: Theme.faded(Theme.accent, 0.35)
    border.width: 1

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: 16
        spacing: 4

        Label {
            Layout.fillWidth: true
            text: "A few spots are private to macOS"
            weight: Font.Bold
            wrapMode: Text.Wrap
        }
        Label {
            objectName: "areasText"
            Layout.fillWidth: true
            text: `Vesk couldn't peek into: ${banner.areas.join(", ")}. Allow Full Disk Access and scan again to include them.`
            color: Theme.softInk
            font.pixelSize: Theme.callout
            wrapMode: Text.Wrap
        }
        ActionButton {
            Layout.topMargin: 6
            text: "Open Full Disk Access settings"
            onClicked: banner.store.openFullDiskAccess()
        }
    }
}
