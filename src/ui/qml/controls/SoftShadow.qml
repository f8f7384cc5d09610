// A blurred shadow for its parent, a rounded rectangle. A small nine-patch image.
import QtQuick
import Vesk

BorderImage {
    property int cornerRadius: 20
    property int blurRadius: 16
    property real offset: 4
    property color color: Theme.faded(Theme.ink, 0.1)

    readonly property int reach: cornerRadius + 2 * blurRadius

    function hex(share: real): string {
        return Math.round(share * 255).toString(16).padStart(2, "0");
    }

    anchors.fill: parent
    anchors.margins: -blurRadius
    anchors.topMargin: -blurRadius + offset
    anchors.bottomMargin: -blurRadius - offset
    z: -1
    border.left: reach
    border.right: reach
    border.top: reach
    border.bottom: reach
    source: `image://vesk/shadow/${cornerRadius}/${blurRadius}/${hex(color.a)}${hex(color.r)}${hex(color.g)}${hex(color.b)}`
}
