// A piece of text, shown as it stands (never as markup) and read out as it stands.
import QtQuick
import Vesk

Text {
    property int weight: Font.Normal

    color: Theme.ink
    font.pixelSize: Theme.body
    font.family: weight > Font.Normal ? Application.font.family : Theme.mediumFamily
    font.weight: weight
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === ""
}
