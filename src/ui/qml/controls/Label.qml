// A piece of text, shown as it stands (never as markup) and read out as it stands.
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
    // Where something around it says the same in one sentence, it is not read out once more.
    Accessible.ignored: text === "" || !visible || !enabled || announcedByParent
}
