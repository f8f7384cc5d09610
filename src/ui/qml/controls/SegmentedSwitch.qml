// A segmented control: a choice between a few words side by side.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Vesk

FocusScope {
    id: control

    required property list<string> choices
    property int current: 0

    readonly property real widest: Array.from(row.children).reduce((most, child) => Math.max(most, child.implicitWidth), 0)

    // Wider only where large words need it.
    implicitWidth: Math.max(220, choices.length * Math.ceil(widest) + 6)
    implicitHeight: Math.max(36, Math.ceil(Theme.callout * 1.4) + 12)
    Accessible.role: Accessible.PageTabList
    Accessible.ignored: !enabled
    Accessible.name: "View"

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: Theme.track
    }
    Rectangle {
        x: 3 + place.value * (control.width - 6) / control.choices.length
        y: 3
        width: (control.width - 6) / control.choices.length
        height: control.height - 6
        radius: height / 2
        color: Theme.card
    }
    SpringValue {
        id: place
        target: control.current
        response: 0.4
        dampingFraction: 0.8
    }
    Row {
        id: row

        anchors.fill: parent
        anchors.margins: 3

        Repeater {
            model: control.choices

            T.TabButton {
                id: choice

                required property int index
                required property string modelData

                function choose() {
                    if (enabled) {
                        control.current = index;
                    }
                }

                implicitWidth: contentItem.implicitWidth + 24
                width: (control.width - 6) / control.choices.length
                height: control.height - 6
                text: modelData
                checkable: false
                focusPolicy: Qt.StrongFocus
                onClicked: choose()
                Keys.onReturnPressed: choose()
                Keys.onEnterPressed: choose()
                Keys.onLeftPressed: control.current = Math.max(0, control.current - 1)
                Keys.onRightPressed: control.current = Math.min(control.choices.length - 1, control.current + 1)
                Accessible.role: Accessible.PageTab
                Accessible.ignored: !enabled
                Accessible.name: text
                Accessible.focusable: true
                Accessible.selectable: true
                Accessible.selected: control.current === index
                Accessible.checkable: true
                Accessible.checked: control.current === index
                Accessible.onPressAction: choose()
                Accessible.onToggleAction: choose()

                contentItem: Text {
                    text: choice.text
                    color: Theme.ink
                    font.pixelSize: Theme.callout
                    font.weight: Font.Bold
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    Accessible.ignored: true
                }
                background: Item {
                    FocusRing {
                        control: choice
                    }
                }
            }
        }
    }
}
