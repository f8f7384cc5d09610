// The list that cards and past cleanups are shown in.
import QtQuick
import QtQuick.Templates as T
import Vesk

ListView {
    id: list

    /// For the rows' shadows and focus rings, which reach beyond them.
    readonly property real sideRoom: 12

    anchors.fill: parent
    anchors.leftMargin: -sideRoom
    anchors.rightMargin: -sideRoom
    clip: true
    visible: count > 0
    spacing: 10
    topMargin: 4
    bottomMargin: Theme.margin
    boundsBehavior: Flickable.StopAtBounds
    interactive: !PointerState.mouseDown
    keyNavigationEnabled: false
    T.ScrollBar.vertical: SlimScrollBar {}
    Accessible.role: Accessible.List
    Accessible.ignored: !visible || !enabled

    /// Moves the list as Page Up, Page Down, Home and End ask. Returns false for any other key.
    function turn(key: int): bool {
        if (!visible) {
            return false;
        }
        // Only these know where a list ends whose rows have not all been made.
        if (key === Qt.Key_Home) {
            positionViewAtBeginning();
        } else if (key === Qt.Key_End) {
            positionViewAtEnd();
        }
        return Scrolling.turn(list, key);
    }

    /// The number of the row at the upper edge, or at the lower one.
    function rowAtEdge(lower: bool): int {
        const y = lower ? contentY + height - bottomMargin : contentY + topMargin;
        const row = indexAt(width / 2, Math.max(originY, Math.min(y, originY + contentHeight - 1)));
        return row >= 0 ? row : indexAt(width / 2, y - spacing - 1);
    }
}
