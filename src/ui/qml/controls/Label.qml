// A plain text: never shown as markup, and read out by assistive technology as it is shown.
import QtQuick
import Vesk

Text {
    property int weight: Font.Normal
    property bool announcedByParent: false

    color: Theme.ink
    font.pixelSize: Theme.body
    font.family: weight > Font.Normal ? Application.font.family : Theme.mediumFamily
    font.weight: weight
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    // Ignored if its parent's accessible name already says the same.
    Accessible.ignored: text === "" || !visible || !enabled || announcedByParent
}
