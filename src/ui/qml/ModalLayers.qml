// The layers over the screen. Each exists only while it is shown. (In Qt 6.4 a Loader cannot create bound components, but
// a Repeater can.)
pragma ComponentBehavior: Bound

import QtQuick
import Vesk

Item {
    id: layers

    required property Store store
    /// The layer that has the keyboard focus, as in ContentView.
    required property string topLayer
    /// What a clean of the ticked cards frees.
    required property string sizeText

    // A new celebration gets a new view, and so new confetti.
    Repeater {
        model: layers.store.celebration === null ? [] : [layers.store.celebration]

        CelebrationView {
            required property var modelData

            info: modelData
            topmost: layers.topLayer === "celebration"
            onClose: layers.store.dismissCelebration()
        }
    }
    Repeater {
        model: layers.store.detailID !== "" ? 1 : 0

        DetailSheet {
            store: layers.store
            cardID: layers.store.detailID
            topmost: layers.topLayer === "detail"
            onDismiss: layers.store.detailID = ""
        }
    }
    Repeater {
        model: layers.store.showConfirm ? 1 : 0

        ConfirmDialog {
            objectName: "confirmDialog"
            store: layers.store
            sizeText: layers.sizeText
            topmost: layers.topLayer === "confirm"
            onAccepted: {
                layers.store.showConfirm = false;
                layers.store.performClean();
            }
            onRejected: layers.store.showConfirm = false
        }
    }
    Repeater {
        model: layers.store.notice !== "" ? 1 : 0

        MessageDialog {
            objectName: "noticeAlert"
            title: "Heads up"
            message: layers.store.notice
            acceptText: "OK"
            topmost: layers.topLayer === "notice"
            onAccepted: layers.store.notice = ""
            onRejected: layers.store.notice = ""
        }
    }
}
