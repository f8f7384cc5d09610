// Rows that scroll out at a list's upper edge fade into the window's background.
import QtQuick
import Vesk

DiagonalGradient {
    id: fade

    required property Flickable list

    anchors.left: list.left
    anchors.right: list.right
    anchors.top: list.top
    height: 20
    opacity: list.atYBeginning ? 0 : 1
    visible: list.visible && opacity > 0
    from: Theme.cream
    to: Theme.peach
    fades: true
    // The same piece of the window's gradient as lies behind the list now.
    whole: {
        const place = visible ? fade.mapToItem(null, 0, 0) : Qt.point(0, 0);
        return Qt.rect(-place.x, -place.y, Window.width, Window.height);
    }
}
