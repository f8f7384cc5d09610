// The cards of the last scan, best first.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Vesk

ColumnLayout {
    id: pane

    required property Store store
    readonly property alias list: list

    /// Focuses the first ticked card.
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

            // Only after a scan: it is many items, which the first frame would wait for.
            Repeater {
                model: pane.store.phase === "done" && pane.store.cards.count === 0 ? 1 : 0

                EmptyDrawing {
                    anchors.horizontalCenter: parent.horizontalCenter
                }
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
            // Large enough that all of a scan's cards exist even out of view, for assistive technology.
            cacheBuffer: 2400
            Accessible.name: "Cards"

            /// The same as `turn`, but moves the focus along if a row has it.
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
                // At the end of a scan, cards appear and disappear with a spring.
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
