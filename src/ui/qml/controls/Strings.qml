// Functions for texts.
pragma Singleton
import QtQuick

QtObject {
    /// Joins the texts that are not empty.
    function joined(texts: var, between: string): string {
        return texts.filter(text => text !== "").join(between);
    }
}
