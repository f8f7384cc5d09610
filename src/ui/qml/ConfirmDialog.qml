// Asks before a clean or a preview starts.
import QtQuick
import Vesk

MessageDialog {
    required property Store store
    /// What is about to go, as the main button says it.
    required property string sizeText

    title: store.previewOnly ? `Preview ${sizeText}?` : `Move ${sizeText} to the Trash?`
    message: {
        if (store.previewOnly) {
            return "Preview only is on, so nothing will be moved or removed.";
        }
        return "Everything goes to the Trash, so you can put it back from History or the Trash."
            + (store.selectedSnapshots >= 1
               ? " Time Machine snapshots can't go in the Trash, so those are removed for good." : "");
    }
    items: store.selectedTitles
    acceptText: store.previewOnly ? "Run preview" : "Move to Trash"
    rejectText: "Cancel"
}
