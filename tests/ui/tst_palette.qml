// What the palette comes to where its colours lie on one another: small words 4.5 to 1 at least, pictograms, edges,
// large words and focus rings 3 to 1.
import QtQuick
import QtTest
import Vesk

TestCase {
    name: "Palette"

    function linear(share: real): real {
        return share <= 0.04045 ? share / 12.92 : Math.pow((share + 0.055) / 1.055, 2.4);
    }

    function luminance(color: color): real {
        return 0.2126 * linear(color.r) + 0.7152 * linear(color.g) + 0.0722 * linear(color.b);
    }

    function contrast(one: color, other: color): real {
        const lights = [luminance(one), luminance(other)].sort((a, b) => b - a);
        return (lights[0] + 0.05) / (lights[1] + 0.05);
    }

    function over(top: color, share: real, below: color): color {
        return Qt.tint(below, Theme.faded(top, share));
    }

    // The darkest and the lightest of what a window's words lie on.
    readonly property var surfaces: ({cream: Theme.cream, peach: Theme.peach, card: Theme.card})

    function test_small_words_data() {
        const rows = [];
        const add = (tag, words, surface, figure) => rows.push({tag: tag, words: words, surface: surface, figure: figure});
        const plate = over(Theme.card, 0.7, Theme.peach);
        add("ink on cream", Theme.ink, Theme.cream, 10.9);
        add("ink on peach", Theme.ink, Theme.peach, 9.4);
        add("ink on card", Theme.ink, Theme.card, 11.3);
        add("ink on track", Theme.ink, Theme.track, 8.9);
        add("soft ink on cream", Theme.softInk, Theme.cream, 5.3);
        add("soft ink on peach", Theme.softInk, Theme.peach, 4.5);
        add("soft ink on card", Theme.softInk, Theme.card, 5.5);
        add("soft ink on a card that is not ticked", Theme.softInk, plate, 5.2);
        add("soft ink in the sheet's box", Theme.softInk, over(Theme.track, 0.4, Theme.card), 5);
        for (const bucket of ["safe", "smart", "personal"]) {
            const tint = Theme.bucketColor(bucket);
            add("ink on the chip of " + bucket, Theme.ink, over(tint, 0.28, Theme.card), 8.4);
            add("soft ink on a card under the pointer, " + bucket, Theme.softInk, Theme.hovered(Theme.card, tint), 4.5);
        }
        add("words of accent on peach", Theme.words(Theme.accent), Theme.peach, 5.3);
        add("words of accent on card", Theme.words(Theme.accent), Theme.card, 6.4);
        add("accent's button on peach", Theme.words(Theme.accent), over(Theme.accent, 0.1, Theme.peach), 5);
        add("the same under the pointer", Theme.words(Theme.accent), over(Theme.accent, 0.16, Theme.peach), 4.7);
        add("the same pressed", Theme.words(Theme.accent), over(Theme.accent, 0.22, Theme.peach), 4.5);
        add("words of green on peach", Theme.words(Theme.green), Theme.peach, 5.2);
        add("words of green on card", Theme.words(Theme.green), Theme.card, 6.3);
        add("ink's button pressed on peach", Theme.ink, over(Theme.ink, 0.22, Theme.peach), 6.3);
        add("words on accent", Theme.inkOnFill, Theme.accent, 5.2);
        add("the same pressed", Theme.inkOnFill, over(Theme.ink, 0.1, Theme.accent), 4.6);
        add("words on accent2", Theme.inkOnFill, Theme.accent2, 7.2);
        return rows;
    }
    function test_small_words(data) {
        const figure = contrast(data.words, data.surface);
        verify(figure >= 4.5, figure.toFixed(2));
        verify(figure >= data.figure, `${figure.toFixed(2)}, not ${data.figure}`);
    }

    function test_marks_and_edges_data() {
        const rows = [];
        const add = (tag, mark, surface) => rows.push({tag: tag, mark: mark, surface: surface});
        for (const bucket of ["safe", "smart", "personal"]) {
            const tint = Theme.bucketColor(bucket);
            const mark = Theme.mark(tint);
            add("pictogram on its circle, " + bucket, mark, over(tint, 0.25, Theme.card));
            add("pictogram on the circle of a card that is not ticked, " + bucket, mark,
                over(tint, 0.25, over(Theme.card, 0.7, Theme.peach)));
            add("pictogram in the sheet, " + bucket, mark, Theme.card);
            add("arc's edge on the track, " + bucket, mark, Theme.track);
            add("legend's edge on peach, " + bucket, mark, Theme.peach);
            add("switch's edge on a card, " + bucket, mark, Theme.card);
        }
        add("switch that is off", over(Theme.softInk, 0.75, Theme.card), Theme.card);
        add("large words of accent on a card", Theme.mark(Theme.accent), Theme.card);
        for (const name in surfaces) {
            add("focus ring on " + name, Theme.ink, surfaces[name]);
        }
        add("focus ring on track", Theme.ink, Theme.track);
        add("focus ring against accent", Theme.ink, Theme.accent);
        add("chevron on a card", Theme.softInk, Theme.card);
        return rows;
    }
    function test_marks_and_edges(data) {
        const figure = contrast(data.mark, data.surface);
        verify(figure >= 3, figure.toFixed(2));
    }

    // The palette itself stays as it was composed, and its colours on fills.
    function test_fills_keep_the_palette() {
        compare(String(Theme.bucketColor("safe")), "#61ba78");
        compare(String(Theme.bucketColor("smart")), "#fac43d");
        compare(String(Theme.bucketColor("personal")), "#5c8fe6");
        verify(contrast(Theme.accent, Theme.cream) < 3, "what the test is for");
    }
}
