// A shower of coloured paper that falls once.
pragma ComponentBehavior: Bound

import QtQuick
import Vesk

Item {
    id: view

    readonly property var pieces: Array.from({
        length: 70
    }, makePiece)
    property bool fall: false

    Component.onCompleted: fall = true
    Accessible.ignored: true

    function between(least: real, end: real): real {
        return least + Math.random() * (end - least);
    }

    function makePiece(): var {
        const colors = [Theme.green, Theme.yellow, Theme.blue, Theme.accent, Theme.accent2];
        return {
            id: Identifier.make(),
            x: between(0, 1),
            delay: between(0, 0.6),
            duration: between(1.6, 3.0),
            size: between(8, 16),
            spin: between(180, 720),
            color: colors[Math.floor(Math.random() * colors.length)]
        };
    }

    Repeater {
        model: view.pieces

        Rectangle {
            id: piece

            required property var modelData

            objectName: "confettiPiece"
            /// 0 above the top edge, 1 below the bottom edge.
            property real progress: 0

            x: modelData.x * view.width
            y: -40 + progress * (view.height + 80)
            width: modelData.size
            height: 0.6 * modelData.size
            radius: 3
            color: modelData.color
            rotation: progress * modelData.spin
            antialiasing: true

            SequentialAnimation {
                running: view.fall

                PauseAnimation {
                    duration: piece.modelData.delay * 1000
                }
                NumberAnimation {
                    target: piece
                    property: "progress"
                    to: 1
                    duration: piece.modelData.duration * 1000
                    easing.type: Easing.BezierSpline
                    easing.bezierCurve: [0.42, 0, 1, 1, 1, 1]
                }
            }
        }
    }
}
