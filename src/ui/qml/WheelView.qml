// The disk as a ring: personal, smart and safe bytes one after another, the rest free. During a scan its progress runs
// inside the ring.
pragma ComponentBehavior: Bound

import QtQuick
import Vesk

Item {
    id: wheel

    required property Store store

    readonly property real total: Math.max(store.capacity, 1)
    readonly property real personalEnd: store.personalBytes / total
    readonly property real smartEnd: personalEnd + store.smartBytes / total
    readonly property real safeEnd: smartEnd + store.safeBytes / total
    readonly property bool scanning: store.phase === "scanning"
    readonly property int percent: Math.floor(store.progress * 100)
    readonly property real ringWidth: 34
    /// How far the words in the middle may reach.
    readonly property real roomInside: (Math.min(width, height) - 2 * ringWidth) * 0.86

    Accessible.role: Accessible.Chart
    Accessible.ignored: !enabled
    Accessible.name: `Disk: ${ByteCount.text(store.free)} free of ${ByteCount.text(store.capacity)}. `
        + `Personal files ${ByteCount.text(store.personalBytes)}, `
        + `smart review ${ByteCount.text(store.smartBytes)}, safe junk ${ByteCount.text(store.safeBytes)}`

    SpringValue {
        id: personalSpring
        target: wheel.personalEnd
        response: 0.9
        dampingFraction: 0.6
    }
    SpringValue {
        id: smartSpring
        target: wheel.smartEnd
        response: 0.9
        dampingFraction: 0.6
    }
    SpringValue {
        id: safeSpring
        target: wheel.safeEnd
        response: 0.9
        dampingFraction: 0.6
    }

    Arc {
        anchors.fill: parent
        lineWidth: wheel.ringWidth
        color: Theme.track
    }
    Arc {
        anchors.fill: parent
        lineWidth: wheel.ringWidth
        objectName: "personalArc"
        to: personalSpring.value
        color: Theme.blue
    }
    Arc {
        anchors.fill: parent
        lineWidth: wheel.ringWidth
        objectName: "smartArc"
        from: personalSpring.value
        to: smartSpring.value
        color: Theme.yellow
    }
    Arc {
        anchors.fill: parent
        lineWidth: wheel.ringWidth
        objectName: "safeArc"
        from: smartSpring.value
        to: safeSpring.value
        color: Theme.green
    }

    // There only while a scan runs. (A Loader cannot make bound components in Qt 6.4.)
    Repeater {
        model: wheel.scanning ? 1 : 0

        ProgressFigure {
            objectName: "progressRing"

            value: wheel.percent
            said: `Sniffing around… ${wheel.percent}%, ${ByteCount.text(wheel.store.foundBytes)} checked`
            anchors.fill: parent
            Accessible.role: Accessible.ProgressBar
            Accessible.ignored: !enabled
            Accessible.name: said

            SpringValue {
                id: progressSpring
                target: Math.max(wheel.store.progress, 0.02)
                response: 0.5
                dampingFraction: 0.8
            }
            Arc {
                anchors.fill: parent
                inset: wheel.ringWidth + 8
                lineWidth: 8
                color: Theme.faded(Theme.accent, 0.15)
            }
            Arc {
                objectName: "progressArc"
                anchors.fill: parent
                inset: wheel.ringWidth + 8
                lineWidth: 8
                roundCaps: true
                to: progressSpring.value
                color: Theme.accent
                endColor: Theme.accent2
            }
            Spinner {
                anchors.fill: parent
                inset: wheel.ringWidth / 2 - 4
            }
        }
    }

    Column {
        anchors.centerIn: parent
        width: wheel.roomInside
        visible: wheel.scanning
        spacing: 2

        Words {
            said: true
            objectName: "percentText"
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: wheel.percent + "%"
            font.pixelSize: Math.min(Theme.display, wheel.roomInside * 0.3)
            weight: Font.Black
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 20
        }
        Words {
            said: true
            width: parent.width - 16
            anchors.horizontalCenter: parent.horizontalCenter
            horizontalAlignment: Text.AlignHCenter
            text: "Sniffing around…"
            font.pixelSize: Math.min(Theme.body, wheel.roomInside * 0.1)
            weight: Font.DemiBold
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 8
        }
        Words {
            said: true
            objectName: "checkedText"
            width: parent.width - 24
            anchors.horizontalCenter: parent.horizontalCenter
            horizontalAlignment: Text.AlignHCenter
            text: ByteCount.text(wheel.store.foundBytes) + " checked"
            color: Theme.softInk
            font.pixelSize: Math.min(Theme.caption, wheel.roomInside * 0.08)
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 8
        }
    }
    Column {
        anchors.centerIn: parent
        width: wheel.roomInside
        visible: !wheel.scanning
        spacing: 2

        Words {
            said: true
            objectName: "freeText"
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: ByteCount.text(wheel.store.free)
            font.pixelSize: Math.min(Theme.title, wheel.roomInside * 0.22)
            weight: Font.Black
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 16
        }
        Words {
            said: true
            objectName: "capacityText"
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: "free of " + ByteCount.text(wheel.store.capacity)
            font.pixelSize: Math.min(Theme.body, wheel.roomInside * 0.1)
            weight: Font.DemiBold
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 8
        }
        Words {
            said: true
            objectName: "readyText"
            width: parent.width * 0.9
            anchors.horizontalCenter: parent.horizontalCenter
            horizontalAlignment: Text.AlignHCenter
            visible: wheel.store.safeBytes >= 1
            text: ByteCount.text(wheel.store.safeBytes) + " ready to vesk away"
            color: Theme.green
            font.pixelSize: Math.min(Theme.caption, wheel.roomInside * 0.08)
            weight: Font.Bold
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 8
        }
    }
}
