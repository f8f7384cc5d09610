// Puts texts together.
pragma Singleton
import QtQuick

QtObject {
    /// The texts that are not empty, with `between` between them.
    function joined(texts: var, between: string): string {
        return texts.filter(text => text !== "").join(between);
    }
}
