// The cards of the last scan, best first.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Vesk

ColumnLayout {
    id: pane

    required property Store store
    readonly property alias list: list

    /// Leads to the first ticked card.
    function showPicked() {
        list.focusRow(store.cards.firstSelected());
    }

    spacing: 12

    BlockedBanner {
        objectName: "blockedBanner"
        Layout.fillWidth: true
        visible: pane.store.blockedAreas.length > 0
        store: pane.store
    }
    RowLayout {
        Layout.fillWidth: true
        visible: pane.store.cards.count > 0
        spacing: Theme.wideGap

        Column {
            Layout.fillWidth: true

            Label {
                objectName: "listHeading"
                width: parent.width
                text: "Best first"
                font.pixelSize: Theme.headline
                weight: Font.Bold
                elide: Text.ElideRight
                Accessible.role: Accessible.Heading
            }
            PickedButton {
                objectName: "headPicked"
                quiet: true
                x: -leftPadding
                verticalPadding: 2
                store: pane.store
                onClicked: pane.showPicked()
            }
        }
        ActionButton {
            objectName: "safeOnlyButton"
            text: "Pick safe junk only"
            onClicked: pane.store.selectSafeOnly()
        }
    }
    Item {
        Layout.fillWidth: true
        Layout.fillHeight: true

        Label {
            objectName: "lookingText"
            anchors.centerIn: parent
            visible: pane.store.cards.count === 0 && pane.store.phase === "scanning"
            text: "Looking for things to vesk away…"
            color: Theme.softInk
        }
        Column {
            objectName: "emptyState"
            anchors.centerIn: parent
            width: parent.width
            visible: pane.store.cards.count === 0 && pane.store.phase !== "scanning"
            spacing: Theme.gap

            EmptyDrawing {
                anchors.horizontalCenter: parent.horizontalCenter
            }
            Label {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: "Squeaky clean!"
                font.pixelSize: Theme.display
                weight: Font.Bold
                fontSizeMode: Text.HorizontalFit
                minimumPixelSize: 24
            }
            Label {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: "Nothing worth cleaning right now."
                color: Theme.softInk
                wrapMode: Text.Wrap
            }
        }
        RowList {
            id: list

            objectName: "cardList"
            model: pane.store.cards
            // As many cards as a scan finds are there also while out of sight, for assistive technology to read.
            cacheBuffer: 2400
            Accessible.name: "Cards"

            /// The same as `turn`; the focus, where a row has it, goes along.
            function turnWithFocus(key: int): bool {
                const hadFocus = activeFocus;
                if (!turn(key)) {
                    return false;
                }
                if (hadFocus) {
                    focusRow(key === Qt.Key_Home || key === Qt.Key_PageUp ? rowAtEdge(false) : rowAtEdge(true));
                }
                return true;
            }

            function focusRow(row: int) {
                if (row < 0 || row >= count) {
                    return;
                }
                positionViewAtIndex(row, ListView.Contain);
                const item = itemAtIndex(row) as CardRow;
                if (item) {
                    item.button.forceActiveFocus(Qt.TabFocusReason);
                }
            }

            delegate: CardRow {
                id: row

                store: pane.store
                width: ListView.view.width
                sideRoom: list.sideRoom
                // As a scan ends, its cards come and go within a spring.
                ListView.onAdd: come()
                ListView.onRemove: {
                    ListView.delayRemove = !Motion.reduced;
                    go();
                }
                onGone: ListView.delayRemove = false
                Keys.onUpPressed: list.focusRow(index - 1)
                Keys.onDownPressed: list.focusRow(index + 1)
                button.onActiveFocusChanged: {
                    if (button.activeFocus) {
                        list.positionViewAtIndex(index, ListView.Contain);
                    }
                }
            }
        }
        ListFade {
            list: list
        }
    }
}
