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

    component EndSpring: SpringValue {
        response: 0.9
        dampingFraction: 0.6
    }
    component RingArc: Arc {
        anchors.fill: parent
        lineWidth: wheel.ringWidth
    }
    component ProgressArc: Arc {
        anchors.fill: parent
        inset: wheel.ringWidth + 8
        lineWidth: 8
    }
    // A line in the middle of the ring: as large as its room allows.
    component InnerText: Label {
        /// The size it has where there is room, and its part of the room where there is not.
        required property real fullSize
        required property real share

        announcedByParent: true
        anchors.horizontalCenter: parent.horizontalCenter
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        font.pixelSize: Math.min(fullSize, wheel.roomInside * share)
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 8
    }

    EndSpring {
        id: personalSpring
        target: wheel.personalEnd
    }
    EndSpring {
        id: smartSpring
        target: wheel.smartEnd
    }
    EndSpring {
        id: safeSpring
        target: wheel.safeEnd
    }

    RingArc {
        color: Theme.track
    }
    RingArc {
        objectName: "personalArc"
        to: personalSpring.value
        color: Theme.blue
    }
    RingArc {
        objectName: "smartArc"
        from: personalSpring.value
        to: smartSpring.value
        color: Theme.yellow
    }
    RingArc {
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
            ProgressArc {
                color: Theme.faded(Theme.accent, 0.15)
            }
            ProgressArc {
                objectName: "progressArc"
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

        InnerText {
            objectName: "percentText"
            text: wheel.percent + "%"
            fullSize: Theme.display
            share: 0.3
            weight: Font.Black
            minimumPixelSize: 20
        }
        InnerText {
            width: parent.width - 16
            text: "Sniffing around…"
            fullSize: Theme.body
            share: 0.1
            weight: Font.DemiBold
        }
        InnerText {
            objectName: "checkedText"
            width: parent.width - 24
            text: ByteCount.text(wheel.store.foundBytes) + " checked"
            fullSize: Theme.caption
            share: 0.08
            color: Theme.softInk
        }
    }
    Column {
        anchors.centerIn: parent
        width: wheel.roomInside
        visible: !wheel.scanning
        spacing: 2

        InnerText {
            objectName: "freeText"
            text: ByteCount.text(wheel.store.free)
            fullSize: Theme.title
            share: 0.22
            weight: Font.Black
            minimumPixelSize: 16
        }
        InnerText {
            objectName: "capacityText"
            text: "free of " + ByteCount.text(wheel.store.capacity)
            fullSize: Theme.body
            share: 0.1
            weight: Font.DemiBold
        }
        InnerText {
            objectName: "readyText"
            width: parent.width * 0.9
            visible: wheel.store.safeBytes >= 1
            text: ByteCount.text(wheel.store.safeBytes) + " ready to vesk away"
            fullSize: Theme.caption
            share: 0.08
            color: Theme.green
            weight: Font.Bold
        }
    }
}
