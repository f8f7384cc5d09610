// The list that cards and past cleanups are shown in.
import QtQuick
import QtQuick.Templates as T
import Vesk

ListView {
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
    keyNavigationEnabled: false
    T.ScrollBar.vertical: SlimScrollBar {}
    Accessible.role: Accessible.List
    Accessible.ignored: !visible || !enabled
}
