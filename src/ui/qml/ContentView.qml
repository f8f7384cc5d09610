// The content of the window: the panel on the left, cards or history on the right, and what is laid over them.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Vesk

FocusScope {
    id: content

    required property Store store
    /// Height of the title bar where the content runs beneath it.
    property real titleBarInset: 0
    /// 0 shows the cards, 1 the history.
    property alias tab: tabs.current

    /// Which of the layers over the screen has the keyboard; empty when none is there.
    readonly property string topLayer: store.notice !== "" ? "notice"
        : store.showConfirm ? "confirm"
        : store.detailID !== "" ? "detail"
        : store.celebration !== null ? "celebration" : ""
    /// The screen's control that had the focus last, and whether the keyboard had put it there. A button that has become
    /// unavailable has lost the focus, but it is where the user was.
    property Item lastFocused: null
    property bool lastFocusedShown: false
    readonly property Item focused: Window.activeFocusItem
    readonly property bool focusShown: (focused as T.Control)?.visualFocus ?? false

    onFocusedChanged: {
        // A button that is available again has the focus again, which is not the user's doing.
        if (screen.enabled && focused?.activeFocusOnTab && focused !== lastFocused) {
            lastFocused = focused;
            lastFocusedShown = (focused as T.Control)?.visualFocus ?? false;
        }
    }
    // It is said after the focus itself has moved; and it ends before, which is not the user's doing.
    onFocusShownChanged: {
        if (focusShown && focused === lastFocused) {
            lastFocusedShown = true;
        }
    }
    onTopLayerChanged: {
        screen.enabled = topLayer === "";
        if (screen.enabled) {
            giveFocusBack();
        }
    }

    // To where the user was, or to the next control that is available.
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
        // So long does a celebration spring up. Nobody has read it before.
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
            // Lines of text and the way from a title to its switch get no longer than the eye can follow.
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
                // Lists scroll out beneath the window's edge rather than end short of it.
                Layout.bottomMargin: -Theme.margin
                spacing: Theme.wideGap

                SegmentedSwitch {
                    id: tabs

                    objectName: "tabs"
                    Layout.preferredWidth: 220
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

    // What follows is there only while it is shown. (A Loader cannot make bound components in Qt 6.4, a Repeater can.)
    // A new celebration makes a new view, with confetti of its own.
    Repeater {
        model: content.store.celebration === null ? [] : [content.store.celebration]

        CelebrationView {
            required property var modelData

            info: modelData
            topmost: content.topLayer === "celebration"
            onClose: content.store.dismissCelebration()
        }
    }
    Repeater {
        model: content.store.detailID !== "" ? 1 : 0

        DetailSheet {
            store: content.store
            cardID: content.store.detailID
            topmost: content.topLayer === "detail"
            onDismiss: content.store.detailID = ""
        }
    }
    Repeater {
        model: content.store.showConfirm ? 1 : 0

        ConfirmDialog {
            objectName: "confirmDialog"
            store: content.store
            sizeText: leftPanel.sizeText
            topmost: content.topLayer === "confirm"
            onAccepted: {
                content.store.showConfirm = false;
                content.store.performClean();
            }
            onRejected: content.store.showConfirm = false
        }
    }
    Repeater {
        model: content.store.notice !== "" ? 1 : 0

        MessageDialog {
            objectName: "noticeAlert"
            title: "Heads up"
            message: content.store.notice
            acceptText: "OK"
            topmost: content.topLayer === "notice"
            onAccepted: content.store.notice = ""
            onRejected: content.store.notice = ""
        }
    }
}
