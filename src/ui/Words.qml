// A piece of text, shown as it stands (never as markup) and read out as it stands.
import QtQuick
import Vesk

Text {
    color: Theme.ink
    font.pixelSize: Theme.body
    font.weight: Font.Medium
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === ""
}
