import QtQuick
import QtTest
import Vesk
import VeskStage

ViewTest {
    id: test
    name: "DetailSheet"

    Component {
        id: sheet
        DetailSheet {}
    }
    SignalSpy {
        id: dismissed
        signalName: "dismiss"
    }

    function open(cards, id) {
        const view = show(sheet, {store: scanned(cards), cardID: id});
        dismissed.target = view;
        dismissed.clear();
        return view;
    }

    // grabImage takes an item's place for one in the window, so the whole view is grabbed.
    function pixelsOf(picture, view, item) {
        const corner = view.mapFromItem(item, 0, 0);
        let pixels = "";
        for (let y = Math.floor(corner.y); y < corner.y + item.height; ++y) {
            for (let x = Math.floor(corner.x); x < corner.x + item.width; ++x) {
                pixels += picture.pixel(x, y).toString();
            }
        }
        return pixels;
    }

    function sizes(count) {
        return Array.from({length: count}, (_, place) => (count - place) * mb);
    }

    function test_entries_data() {
        return [
            {tag: "1", entries: 1, rows: 1, more: ""},
            {tag: "8", entries: 8, rows: 8, more: ""},
            {tag: "9", entries: 9, rows: 8, more: "and 1 more"},
            {tag: "20", entries: 20, rows: 8, more: "and 12 more"}
        ];
    }
    function test_entries(data) {
        const view = open([card("a", "safe", sizes(data.entries))], "a");
        compare(textOf(view, "contentsHeading"), "What's inside");
        const rows = named(view, "entryRows");
        compare(rows.count, data.rows);
        compare(textOf(rows.itemAt(0), "entryName"), "Item 1");
        compare(textOf(rows.itemAt(0), "entrySize"), data.entries + " MB");
        compare(shown(view, "moreText"), data.more !== "");
        if (data.more !== "") {
            compare(textOf(view, "moreText"), data.more);
        }
    }

    function test_marks_that_would_dress_up_a_name() {
        const marks = [0x0a, 0x9b, 0x61c, 0x200b, 0x200e, 0x200f, 0x2028, 0x202e, 0x2066, 0x2069, 0xfeff];
        const name = "a" + String.fromCodePoint(...marks) + "b\u0301\u200d\ufe0f";
        const view = open([card("a", "safe", [mb], {names: [name]})], "a");
        compare(textOf(named(view, "entryRows").itemAt(0), "entryName"),
                "a" + "\ufffd".repeat(marks.length) + "b\u0301\u200d\ufe0f");
    }

    // Combining marks stack, as high as the name has them.
    function test_marks_stay_in_their_row() {
        const tower = "y" + "\u0301\u0323".repeat(40);
        const rows = ["y", tower].map(name => {
            const view = open([card("a", "safe", sizes(3), {names: ["first", name, "third"]})], "a");
            waitForRendering(view, 100);
            const picture = grabImage(view);
            const list = named(view, "entryRows");
            const pixels = [0, 1, 2].map(place => pixelsOf(picture, view, list.itemAt(place)));
            view.destroy();
            wait(0);
            return pixels;
        });
        verify(rows[0][1] !== rows[1][1], "the row itself");
        verify(rows[0][0] === rows[1][0], "the row above");
        verify(rows[0][2] === rows[1][2], "the row below");
    }

    function test_snapshots() {
        const view = open([card("s", "safe", [], {snapshots: 3})], "s");
        compare(textOf(view, "sheetAmount"), "3 snapshots");
        compare(textOf(view, "contentsHeading"),
                "Your Mac keeps a few short-term backup copies. Vesk would remove 3 of them.");
        compare(shown(view, "entryBox"), false);
    }

    function test_headings_data() {
        return [
            {tag: "safe", heading: "Why it's safe", chip: "Safe", color: Theme.green},
            {tag: "smart", heading: "Think about it first", chip: "Review", color: Theme.yellow},
            {tag: "personal", heading: "Think about it first", chip: "Review", color: Theme.blue}
        ];
    }
    function test_headings(data) {
        const view = open([card("a", data.tag, [3 * mb], {why: "Because of this."})], "a");
        compare(textOf(view, "sheetTitle"), "Title of a");
        compare(textOf(view, "sheetAmount"), "3 MB");
        compare(textOf(view, "whyHeading"), data.heading);
        compare(textOf(view, "whyText"), "Because of this.");
        compare(named(view, "whyText").truncated, false);
        compare(named(view, "includeSwitch").tint, data.color);
        compare(named(view, "sheetChip").text, data.chip);
    }

    function test_days_data() {
        return [
            {tag: "1.9", days: "1 day"}, {tag: "2.0", days: "2 days"},
            {tag: "30.7", days: "30 days"}, {tag: "1.0", days: "1 day"}
        ];
    }
    function test_days(data) {
        const view = open([card("a", "safe", [mb], {dormancyDays: Number(data.tag)})], "a");
        compare(textOf(view, "dormancyText"),
                `Last used about ${data.days} ago. Everything moves to the Trash, so you can undo it.`);
    }

    function test_switch() {
        const view = open([card("a", "safe", [mb])], "a");
        const toggle = named(view, "includeSwitch");
        compare(toggle.checked, true);
        mouseClick(toggle);
        compare(view.store.selectedCount, 0);
        view.store.setSelected("a", true);
        compare(toggle.checked, true);
    }

    function test_gone() {
        const view = open([card("a", "safe", [mb])], "a");
        compare(shown(view, "goneText"), false);
        Stage.find([]);
        view.store.scan();
        tryCompare(view.store, "phase", "done");
        compare(textOf(view, "goneText"), "This card is gone.");
        compare(shown(view, "goneText"), true);
        compare(shown(view, "doneButton"), false);
        mouseClick(named(view, "closeButton"));
        compare(dismissed.count, 1);
    }

    function test_ways_to_close_data() {
        return [{tag: "Return", key: Qt.Key_Return}, {tag: "Enter", key: Qt.Key_Enter},
                {tag: "Escape", key: Qt.Key_Escape}, {tag: "Space on Done", key: Qt.Key_Space}];
    }
    function test_ways_to_close(data) {
        const view = open([card("a", "safe", [mb])], "a");
        compare(named(view, "doneButton").activeFocus, true);
        keyClick(data.key);
        compare(dismissed.count, 1);
    }

    function test_return_closes_wherever_the_focus_is() {
        const view = open([card("a", "safe", [mb])], "a");
        const toggle = named(view, "includeSwitch");
        toggle.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        compare(dismissed.count, 1);
        compare(toggle.checked, true);
    }


    function test_frame_and_names() {
        const view = open([card("a", "safe", sizes(9))], "a");
        const frame = named(view, "sheetFrame");
        compare([frame.width, frame.height], [480, 520]);
        compare(Stage.nameless(view), []);
    }
}
