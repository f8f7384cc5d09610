// Scrolls where there is more in it than fits, and shows whatever in it gets the focus.
import QtQuick
import QtQuick.Templates as T
import Vesk

Flickable {
    id: area

    readonly property bool overflows: contentWidth > width + 0.5 || contentHeight > height + 0.5
    /// How far beyond its right edge the scroll bar stands, where there is room, and then it covers nothing.
    property real barOffset: 0
    readonly property Item focused: Window.activeFocusItem

    contentWidth: width
    interactive: overflows && !PointerState.mouseDown
    boundsBehavior: Flickable.StopAtBounds
    T.ScrollBar.vertical: SlimScrollBar {
        transform: Translate {
            x: area.barOffset
        }
    }
    onFocusedChanged: reveal(focused)

    function reveal(item: Item) {
        if (!overflows || !holds(item)) {
            return;
        }
        const room = Theme.gap;
        const place = item.mapToItem(contentItem, -room, -room, item.width + 2 * room, item.height + 2 * room);
        contentX = nearest(contentX, width, contentWidth, place.left, place.right);
        contentY = nearest(contentY, height, contentHeight, place.top, place.bottom);
    }

    function holds(item: Item): bool {
        let around = item?.parent ?? null;
        while (around && around !== contentItem) {
            around = around.parent;
        }
        return around !== null;
    }

    // The offset nearest to `offset` that shows all from `start` to `end`, or its beginning where that is too long.
    function nearest(offset: real, room: real, all: real, start: real, end: real): real {
        const shown = Math.min(Math.max(offset, end - room), start);
        return Math.max(0, Math.min(shown, all - room));
    }
}
