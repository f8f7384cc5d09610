// The left side of the main screen: the disk at a glance, and the button that starts a clean.
import QtQuick
import QtQuick.Layouts
import Vesk

ScrollArea {
    id: panel

    required property Store store

    /// The ticked cards are to be shown.
    signal showPicked

    readonly property string sizeText: {
        const parts = [];
        if (store.selectedBytes > 0) {
            parts.push(ByteCount.text(store.selectedBytes));
        }
        if (store.selectedSnapshots >= 1) {
            parts.push(`${store.selectedSnapshots} snapshot${store.selectedSnapshots === 1 ? "" : "s"}`);
        }
        return parts.join(" + ");
    }
    readonly property string buttonTitle: {
        if (store.cleaning) {
            return "Working…";
        }
        if (store.selectedCount === 0) {
            return "Pick something to clean";
        }
        return (store.previewOnly ? "Preview " : "Clean ") + sizeText;
    }
    /// What the panel needs besides the wheel, which takes the rest within its limits.
    readonly property real needed: title.implicitHeight + legend.implicitHeight + actions.implicitHeight + 3 * Theme.wideGap
    readonly property real wheelSize: Math.max(leastWheel, Math.min(320, height - needed))
    readonly property real leastWheel: Math.min(248 * Theme.textScale, width)
    /// Room that is left in a tall window. A part of it sets the groups apart, the rest lies above the actions.
    readonly property real air: Math.max(0, height - needed - wheelSize)

    contentHeight: Math.max(height, needed + wheelSize)
    barOffset: 14

    Label {
        id: title

        objectName: "productTitle"
        text: "Vesk"
        font.pixelSize: Theme.title
        weight: Font.Black
        Accessible.role: Accessible.Heading
    }
    WheelView {
        id: wheel

        x: (panel.width - width) / 2
        y: title.implicitHeight + Theme.wideGap + Math.min(panel.air / 4, 40)
        width: panel.wheelSize
        height: panel.wheelSize
        store: panel.store
    }
    Column {
        id: legend

        y: wheel.y + wheel.height + Theme.wideGap + Math.min(panel.air / 4, 40)
        width: panel.width
        spacing: Theme.gap

        LegendRow {
            objectName: "safeLegend"
            width: legend.width
            color: Theme.green
            title: "Safe junk"
            detail: "Clears in one click"
            size: Number(panel.store.safeBytes)
        }
        LegendRow {
            objectName: "smartLegend"
            width: legend.width
            color: Theme.yellow
            title: "Smart review"
            detail: "You decide, card by card"
            size: Number(panel.store.smartBytes)
        }
        LegendRow {
            objectName: "personalLegend"
            width: legend.width
            color: Theme.blue
            title: "Personal files"
            detail: "Never touched or scanned"
            size: Number(panel.store.personalBytes)
        }
    }
    ColumnLayout {
        id: actions

        y: panel.contentHeight - implicitHeight
        width: panel.width
        spacing: 0

        Item {
            Layout.fillWidth: true
            implicitHeight: Math.max(previewWords.height, previewSwitch.height)

            TitleAndNote {
                id: previewWords

                anchors.left: parent.left
                anchors.right: previewSwitch.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                title: "Preview only"
                note: "Do everything except delete"
            }
            SwitchLabelArea {
                anchors.fill: previewWords
                control: previewSwitch
            }
            ToggleSwitch {
                id: previewSwitch

                objectName: "previewSwitch"
                anchors.right: parent.right
                anchors.rightMargin: -padding
                anchors.verticalCenter: parent.verticalCenter
                name: "Preview only"
                checked: panel.store.previewOnly
                onToggled: panel.store.previewOnly = checked
                Accessible.description: "Do everything except delete"
            }
        }
        FilledButton {
            id: mainButton

            objectName: "mainButton"
            Layout.fillWidth: true
            Layout.topMargin: 12
            text: panel.buttonTitle
            textSize: Theme.headline
            verticalPadding: 13
            from: Theme.accent
            to: Theme.accent2
            available: panel.store.selectedCount > 0 && !panel.store.busy
            glow: Theme.faded(Theme.accent, 0.45)
            onClicked: panel.store.showConfirm = true
        }
        RowLayout {
            Layout.fillWidth: true
            Layout.topMargin: Theme.gap
            spacing: Theme.gap

            PickedButton {
                objectName: "panelPicked"
                Layout.maximumWidth: actions.width / 2
                store: panel.store
                onClicked: panel.showPicked()
            }
            Item {
                Layout.fillWidth: true
            }
            ActionButton {
                objectName: "scanButton"
                text: "Scan again"
                color: Theme.ink
                available: !panel.store.busy
                onClicked: panel.store.scan()
            }
            // Alone it stands in the middle.
            Item {
                Layout.fillWidth: true
                visible: panel.store.cards.count === 0
            }
        }
    }
}
