// The palette, and the sizes that every view takes its type and its gaps from.
pragma Singleton
import QtQuick

QtObject {
    readonly property color ink: Qt.rgba(0.3, 0.2, 0.15, 1)
    readonly property color softInk: Qt.rgba(0.5, 0.38, 0.3, 1)
    readonly property color cream: Qt.rgba(1.0, 0.97, 0.92, 1)
    readonly property color peach: Qt.rgba(1.0, 0.89, 0.78, 1)
    readonly property color card: Qt.rgba(1.0, 0.99, 0.96, 1)
    readonly property color track: Qt.rgba(0.94, 0.88, 0.8, 1)
    readonly property color green: Qt.rgba(0.38, 0.73, 0.47, 1)
    readonly property color yellow: Qt.rgba(0.98, 0.77, 0.24, 1)
    readonly property color blue: Qt.rgba(0.36, 0.56, 0.9, 1)
    readonly property color accent: Qt.rgba(0.96, 0.5, 0.3, 1)
    readonly property color accent2: Qt.rgba(0.98, 0.68, 0.3, 1)

    // Words on a fill: what the ink lacks there.
    readonly property color inkOnFill: darkened(ink, 0.8)

    // Type is sized by steps; 1 is the size that the views are composed for.
    property real textScale: 1
    readonly property real display: 44 * textScale
    readonly property real title: 34 * textScale
    readonly property real title2: 22 * textScale
    readonly property real headline: 20 * textScale
    readonly property real body: 15 * textScale
    readonly property real callout: 13 * textScale
    readonly property real caption: 12 * textScale
    readonly property real chip: 11 * textScale

    // Where the medium weight of the window's typeface is installed it goes by a name of its own.
    readonly property string mediumFamily: Array.from(Qt.fontFamilies()).includes("Quicksand Medium")
        ? "Quicksand Medium" : Application.font.family

    // Gaps are multiples of 8, with one half step for things that belong together.
    readonly property real halfGap: 4
    readonly property real gap: 8
    readonly property real wideGap: 16
    readonly property real margin: 24

    function bucketColor(bucket: string): color {
        return bucket === "safe" ? green : bucket === "smart" ? yellow : blue;
    }

    function bucketLabel(bucket: string): string {
        return bucket === "safe" ? "Safe" : "Review";
    }

    function darkened(base: color, share: real): color {
        return Qt.rgba(base.r * share, base.g * share, base.b * share, base.a);
    }

    /// A colour of the palette as small words have it: dark enough to be read on any surface of the window.
    function words(base: color): color {
        return Qt.colorEqual(base, accent) ? darkened(base, 0.58) : Qt.colorEqual(base, green) ? darkened(base, 0.56) : base;
    }

    /// A colour of the palette as pictograms, large words and edges have it: dark enough to be told from what they lie on.
    function mark(base: color): color {
        return darkened(base, Qt.colorEqual(base, yellow) ? 0.62 : Qt.colorEqual(base, green) ? 0.75
            : Qt.colorEqual(base, accent) ? 0.78 : Qt.colorEqual(base, blue) ? 0.84 : 1);
    }

    /// A surface under the pointer.
    function hovered(surface: color, tint: color): color {
        return Qt.tint(surface, faded(tint, 0.14));
    }

    function faded(base: color, opacity: real): color {
        return Qt.rgba(base.r, base.g, base.b, opacity);
    }
}
