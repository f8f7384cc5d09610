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
    readonly property real side: Math.min(width, height)
    /// It gives way to the words inside: they are no smaller than captions.
    readonly property real ringWidth: Math.max(14, Math.min(34, side / 2 - Math.max(radiusAtRest, radiusWhileScanning)))
    /// How far the words in the middle may reach.
    readonly property real roomInside: (side - 2 * ringWidth) * 0.86
    /// The ring's inner edge, as far from its centre as words may come.
    readonly property real reach: side / 2 - ringWidth - 4
    // What the lines in the middle need, from the centre: the last one is the longest, and no figure is longer than this.
    readonly property real halfAtRest: (Theme.title + Theme.body + Theme.caption) * 0.64
    readonly property real halfWhileScanning: (Theme.display + Theme.body + Theme.caption) * 0.64
    readonly property real radiusAtRest: Math.hypot(longestReady.width / 2, halfAtRest) + 4
    readonly property real radiusWhileScanning: Math.hypot(longestChecked.width / 2, halfWhileScanning) + 20

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
    // A bucket's arc with a dark edge, which sets its colour apart from the track and from its neighbours.
    component BucketArc: Item {
        id: bucket

        property real from: 0
        required property real to
        required property color color
        readonly property real edge: 1.5

        anchors.fill: parent

        RingArc {
            from: bucket.from
            to: bucket.to
            color: Theme.mark(bucket.color)
        }
        RingArc {
            from: bucket.from
            to: bucket.to
            inset: bucket.edge
            lineWidth: wheel.ringWidth - 2 * bucket.edge
            color: bucket.color
        }
    }
    component ProgressArc: Arc {
        anchors.fill: parent
        inset: wheel.ringWidth + 8
        lineWidth: 8
    }
    TextMetrics {
        id: longestReady
        text: "999.99 GB ready to vesk away"
        font.pixelSize: Theme.caption
        font.weight: Font.Bold
    }
    TextMetrics {
        id: longestChecked
        text: "999.99 GB checked"
        font.pixelSize: Theme.caption
        font.family: Theme.mediumFamily
    }

    // How wide a line may be whose outer edge is that far above or below the centre.
    function chord(distance: real): real {
        return 2 * Math.sqrt(Math.max(0, reach * reach - distance * distance));
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
        font.pixelSize: Math.max(Theme.caption, Math.min(fullSize, wheel.roomInside * share))
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.caption
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
    BucketArc {
        objectName: "personalArc"
        to: personalSpring.value
        color: Theme.blue
    }
    BucketArc {
        objectName: "smartArc"
        from: personalSpring.value
        to: smartSpring.value
        color: Theme.yellow
    }
    BucketArc {
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
            text: ByteCount.text(wheel.store.foundBytes) + " checked"
            fullSize: Theme.caption
            share: 0
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
        }
        InnerText {
            objectName: "capacityText"
            text: "free of " + ByteCount.text(wheel.store.capacity)
            fullSize: Theme.body
            share: 0.1
            weight: Font.DemiBold
        }
        InnerText {
            id: readyText

            readonly property bool onOneLine: implicitWidth <= wheel.chord(wheel.halfAtRest)

            objectName: "readyText"
            width: wheel.chord(wheel.halfAtRest + (onOneLine ? 0 : Theme.caption * 0.64))
            visible: wheel.store.safeBytes >= 1
            text: ByteCount.text(wheel.store.safeBytes) + " ready to vesk away"
            fullSize: Theme.caption
            share: 0
            fontSizeMode: Text.FixedSize
            wrapMode: Text.WordWrap
            color: Theme.words(Theme.green)
            weight: Font.Bold
        }
    }
}
