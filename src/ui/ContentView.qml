// The content of the window: the panel on the left, cards or history on the right, and what is laid over them.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Vesk

Item {
    id: content

    required property Store store
    /// Height of the title bar where the content runs beneath it.
    property real titleBarInset: 0
    /// 0 shows the cards, 1 the history.
    property alias tab: tabs.current

    Component.onCompleted: store.scan()

    DiagonalGradient {
        anchors.fill: parent
        from: Theme.cream
        to: Theme.peach
    }

    RowLayout {
        id: screen

        anchors.top: parent.top
        anchors.topMargin: Theme.margin + content.titleBarInset
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.margin
        anchors.horizontalCenter: parent.horizontalCenter
        // Lines of text and the way from a title to its switch get no longer than the eye can follow.
        width: Math.min(parent.width - 2 * Theme.margin, 1432)
        spacing: 32

        LeftPanel {
            id: leftPanel

            Layout.preferredWidth: 360
            Layout.fillHeight: true
            store: content.store
        }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: Theme.wideGap

            SegmentedSwitch {
                id: tabs

                Layout.preferredWidth: 220
                Layout.alignment: Qt.AlignHCenter
                choices: ["Found", "History"]
            }
            CardsPane {
                Layout.fillWidth: true
                Layout.fillHeight: true
                visible: content.tab === 0
                store: content.store
            }
        }
    }
}
