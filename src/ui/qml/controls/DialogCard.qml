// The framed card in the middle of a layer: dialogs, the detail sheet, the celebration.
import QtQuick
import Vesk

Rectangle {
    property color shadowColor: Theme.faded(Theme.ink, 0.28)

    anchors.centerIn: parent
    radius: 28
    color: Theme.card

    SoftShadow {
        cornerRadius: 28
        blurRadius: 32
        offset: 12
        color: parent.shadowColor
    }
}
