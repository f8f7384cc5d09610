// The content of the window: the panel on the left, cards or history on the right, and what is laid over them.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
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
    /// What had the focus when the first layer came, and whether the keyboard had put it there.
    property Item focusBefore: null
    property bool focusBeforeShown: false

    onTopLayerChanged: {
        if (topLayer !== "" && screen.enabled) {
            focusBefore = Window.activeFocusItem;
            focusBeforeShown = (focusBefore as PressableButton)?.visualFocus ?? false;
            screen.enabled = false;
        } else if (topLayer === "") {
            screen.enabled = true;
            // A button may have become unavailable meanwhile.
            if (!focusBefore?.enabled) {
                tabs.forceActiveFocus();
            } else {
                focusBefore.forceActiveFocus(focusBeforeShown ? Qt.TabFocusReason : Qt.OtherFocusReason);
            }
            focusBefore = null;
        }
    }

    Component.onCompleted: store.scan()

    DiagonalGradient {
        anchors.fill: parent
        from: Theme.cream
        to: Theme.peach
    }

    RowLayout {
        id: screen

        objectName: "screen"
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

            objectName: "leftPanel"
            Layout.preferredWidth: 360
            Layout.fillHeight: true
            store: content.store
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
                Layout.fillWidth: true
                Layout.fillHeight: true
                visible: content.tab === 0
                store: content.store
            }
            Repeater {
                model: content.tab === 1 ? 1 : 0

                HistoryPane {
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    store: content.store
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
