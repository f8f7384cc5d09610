// The content of the window: the panel on the left, cards or history on the right, and the layers over them.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Vesk

FocusScope {
    id: content

    required property Store store
    /// Height of the title bar, if the content extends beneath it.
    property real titleBarInset: 0
    /// 0 shows the cards, 1 the history.
    property alias tab: tabs.current

    /// The layer over the screen that has the keyboard focus; empty if there is none.
    readonly property string topLayer: store.notice !== "" ? "notice"
        : store.showConfirm ? "confirm"
        : store.detailID !== "" ? "detail"
        : store.celebration !== null ? "celebration" : ""
    /// The control on the screen that last had the focus, and whether it came there by keyboard. It counts even if it
    /// has lost the focus by becoming unavailable.
    property Item lastFocused: null
    property bool lastFocusedShown: false
    readonly property Item focused: Window.activeFocusItem
    readonly property bool focusShown: (focused as T.Control)?.visualFocus ?? false

    onFocusedChanged: {
        // A button that becomes available again regains the focus without the user's doing.
        if (screen.enabled && focused?.activeFocusOnTab && focused !== lastFocused) {
            lastFocused = focused;
            lastFocusedShown = (focused as T.Control)?.visualFocus ?? false;
        }
    }
    // `visualFocus` changes to true after the focus has moved, and to false before the focus is lost. Only the first is
    // the user's doing.
    onFocusShownChanged: {
        if (focusShown && focused === lastFocused) {
            lastFocusedShown = true;
        }
    }
    onTopLayerChanged: {
        screen.enabled = topLayer === "";
        // A layer that is about to go must not get the focus.
        layers.enabled = !screen.enabled;
        if (screen.enabled) {
            giveFocusBack();
        }
    }

    // Moves the focus back to where the user was, or to the next available control.
    function giveFocusBack() {
        const wanted = lastFocused === null ? tabs : lastFocused;
        const isThere = wanted.visible && wanted.enabled && wanted.activeFocusOnTab;
        const item = isThere ? wanted : wanted.nextItemInFocusChain();
        item.forceActiveFocus(lastFocusedShown ? Qt.TabFocusReason : Qt.OtherFocusReason);
    }

    Component.onCompleted: store.scan()
    Keys.onPressed: event => {
        if (topLayer === "") {
            event.accepted = tab === 0
                ? cardsPane.list.turnWithFocus(event.key) : (historyPlace.itemAt(0) as HistoryPane)?.list.turn(event.key) ?? false;
        }
    }

    InputGuard {
        objectName: "inputGuard"
        front: content.topLayer
        // A celebration takes this long to appear; nobody has read it before that.
        settling: content.topLayer === "celebration" ? 500 : 0
    }
    DiagonalGradient {
        anchors.fill: parent
        from: Theme.cream
        to: Theme.peach
    }

    ScrollArea {
        id: viewport

        objectName: "viewport"
        anchors.fill: parent
        contentWidth: Math.max(width, 980)
        contentHeight: Math.max(height, 660)
        T.ScrollBar.horizontal: SlimScrollBar {}

        RowLayout {
            id: screen

            objectName: "screen"
            x: (viewport.contentWidth - width) / 2
            y: Theme.margin + content.titleBarInset
            // Limits the length of lines and the distance from a title to its switch, for the eye.
            width: Math.min(viewport.contentWidth - 2 * Theme.margin, 1432)
            height: viewport.contentHeight - y - Theme.margin
            spacing: 32

            LeftPanel {
                id: leftPanel

                objectName: "leftPanel"
                Layout.preferredWidth: 360
                Layout.fillHeight: true
                store: content.store
                onShowPicked: {
                    content.tab = 0;
                    cardsPane.showPicked();
                }
            }
            ColumnLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                // Lists reach the window's lower edge.
                Layout.bottomMargin: -Theme.margin
                spacing: Theme.wideGap

                SegmentedSwitch {
                    id: tabs

                    objectName: "tabs"
                    Layout.alignment: Qt.AlignHCenter
                    choices: ["Found", "History"]
                }
                CardsPane {
                    id: cardsPane

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    visible: content.tab === 0
                    store: content.store
                }
                Repeater {
                    id: historyPlace

                    model: content.tab === 1 ? 1 : 0

                    HistoryPane {
                        Layout.fillWidth: true
                        Layout.fillHeight: true
                        store: content.store
                    }
                }
            }
        }
    }

    // Loaded after the first frame, which it would delay.
    Loader {
        id: layers

        objectName: "layers"
        anchors.fill: parent
        asynchronous: true

        Connections {
            target: layers.Window.window
            enabled: layers.status === Loader.Null

            function onFrameSwapped() {
                layers.setSource("ModalLayers.qml", {
                    store: Qt.binding(() => content.store),
                    topLayer: Qt.binding(() => content.topLayer),
                    sizeText: Qt.binding(() => leftPanel.sizeText)
                });
            }
        }
    }
}
