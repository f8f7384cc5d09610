// A card's pictogram in one colour. (The image's own implicit size counts its pixels, which are more than points on a
// dense screen.)
import QtQuick
import Vesk

Item {
    id: pictogram

    required property string symbol
    property color color: Theme.ink
    property real size: 20

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Image {
        anchors.fill: parent
        sourceSize.width: Math.ceil(pictogram.size * Screen.devicePixelRatio)
        sourceSize.height: Math.ceil(pictogram.size * Screen.devicePixelRatio)
        source: pictogram.symbol === ""
            ? "" : "image://vesk/pictogram/" + pictogram.symbol + "/" + pictogram.color.toString().slice(1)
        Accessible.ignored: true
    }
}
