// What stands where there is nothing to list: the wheel, content and clean, or as a clock.
pragma ComponentBehavior: Bound

import QtQuick
import Vesk

Item {
    id: drawing

    property bool clock: false

    implicitWidth: 136
    implicitHeight: 116
    Accessible.ignored: true

    component Stroke: Arc {
        anchors.fill: wheel
        lineWidth: 6
        roundCaps: true
        color: Theme.ink
    }
    component Spark: Item {
        id: spark

        required property real side
        property color color: Theme.accent2

        width: side
        height: side

        Repeater {
            model: 2

            Rectangle {
                required property int index

                anchors.centerIn: parent
                width: spark.side
                height: spark.side / 4
                radius: height / 2
                rotation: index * 90
                color: spark.color
            }
        }
    }
    // From the middle of the wheel outwards.
    component Hand: Rectangle {
        x: wheel.x + wheel.width / 2 - width / 2
        y: wheel.y + wheel.height / 2 - height + width / 2
        width: 6
        radius: 3
        color: Theme.ink
        antialiasing: true
        transformOrigin: Item.Bottom
    }

    Item {
        id: wheel

        anchors.horizontalCenter: parent.horizontalCenter
        y: 12
        width: 96
        height: 96
    }
    Stroke {
        lineWidth: 14
        color: Theme.track
    }
    Stroke {
        lineWidth: 14
        from: 0.03
        to: drawing.clock ? 0.4 : 0.7
        color: drawing.clock ? Theme.blue : Theme.green
    }
    Repeater {
        model: drawing.clock ? 0 : 2

        Rectangle {
            required property int index

            x: wheel.x + (index === 0 ? 34 : 55)
            y: wheel.y + 37
            width: 7
            height: 11
            radius: 3.5
            color: Theme.ink
        }
    }
    Stroke {
        visible: !drawing.clock
        inset: 26
        lineWidth: 5
        from: 0.34
        to: 0.66
    }
    Hand {
        visible: drawing.clock
        height: 26
    }
    Hand {
        visible: drawing.clock
        height: 19
        rotation: 120
    }
    Spark {
        x: 6
        y: 18
        side: 16
    }
    Spark {
        x: parent.width - 18
        y: 8
        side: 20
        color: drawing.clock ? Theme.accent2 : Theme.yellow
    }
    Spark {
        x: parent.width - 10
        y: 74
        side: 12
        color: Theme.accent
    }
}
