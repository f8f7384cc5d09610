// A card's pictogram in one colour.
import QtQuick
import Vesk

Image {
    id: image

    required property string symbol
    property color color: Theme.ink
    property real size: 20

    width: size
    height: size
    sourceSize.width: Math.ceil(size * Screen.devicePixelRatio)
    sourceSize.height: Math.ceil(size * Screen.devicePixelRatio)
    source: symbol === "" ? "" : "image://vesk/pictogram/" + symbol + "/" + color.toString().slice(1)
    Accessible.ignored: true
}
