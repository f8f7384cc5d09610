// The head of the detail sheet: what the card is and how much it holds.
import QtQuick
import QtQuick.Layouts
import Vesk

RowLayout {
    id: header

    required property CardDetail detail
    required property color tint

    spacing: 14

    Pictogram {
        symbol: header.detail.symbol
        color: Theme.mark(header.tint)
        size: Math.min(32 * Theme.textScale, 48)
    }
    ColumnLayout {
        spacing: 0

        Label {
            objectName: "sheetTitle"
            Layout.fillWidth: true
            text: header.detail.title
            font.pixelSize: Theme.title2
            weight: Font.Black
            elide: Text.ElideRight
            maximumLineCount: 2
            clip: true
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
        }
        Label {
            objectName: "sheetAmount"
            text: header.detail.snapshotCount > 0 ? `${header.detail.snapshotCount} snapshots` : header.detail.sizeText
            color: Theme.softInk
            font.pixelSize: Theme.callout
        }
    }
    Chip {
        objectName: "sheetChip"
        text: Theme.bucketLabel(header.detail.bucket)
        tint: header.tint
    }
}
