import QtQuick
import QtTest
import Vesk
import VeskStage

ViewTest {
    id: test
    name: "HistoryPane"

    Component {
        id: pane
        HistoryPane {}
    }

    function open(history, cards) {
        return show(pane, {store: scanned(cards ?? [], {history: history})});
    }

    function row(view, index) {
        const list = named(view, "historyList");
        tryVerify(() => list.itemAtIndex(index) !== null);
        return list.itemAtIndex(index);
    }

    function test_empty() {
        const view = open([]);
        compare(shown(view, "emptyHistory"), true);
        compare(shown(view, "historyList"), false);
    }

    function test_marks_that_would_dress_up_a_title() {
        const view = open([{bytes: 1, titles: ["a\u202eb", "c\nd"]}]);
        compare(textOf(row(view, 0), "titlesText"), "a\ufffdb, c\ufffdd");
    }

    function test_rows_data() {
        const run = {bytes: 1200000000, titles: ["App caches", "Old crash reports"]};
        return [
            {tag: "real", run: run, amount: "Freed 1.2 GB", undo: true},
            {
                tag: "preview", run: Object.assign({preview: true}, run),
                amount: "Preview: would free 1.2 GB", outcome: "Nothing changed", color: Theme.softInk
            },
            {
                tag: "restored", run: Object.assign({undone: true}, run),
                amount: "Freed 1.2 GB", outcome: "Restored", color: Theme.words(Theme.green)
            },
            {
                tag: "one snapshot", run: Object.assign({snapshotsRemoved: 1}, run),
                amount: "Freed 1.2 GB", undo: true, snapshots: "1 snapshots can't be restored"
            },
            {tag: "nothing", run: {bytes: 0, titles: ["App caches", "Old crash reports"]}, amount: "Freed Zero KB", undo: true}
        ];
    }
    function test_rows(data) {
        const view = open([data.run]);
        const entry = row(view, 0);
        compare(textOf(entry, "amountText"), data.amount);
        compare(textOf(entry, "titlesText"), "App caches, Old crash reports");
        verify(textOf(entry, "dateText").length > 0);
        compare(shown(entry, "undoButton"), data.undo === true);
        compare(shown(entry, "outcomeText"), data.outcome !== undefined);
        if (data.outcome) {
            compare(textOf(entry, "outcomeText"), data.outcome);
            compare(String(named(entry, "outcomeText").color), String(data.color));
        }
        compare(shown(entry, "snapshotsText"), data.snapshots !== undefined);
        if (data.snapshots) {
            compare(textOf(entry, "snapshotsText"), data.snapshots);
        }
        compare(Stage.nameless(view), []);
    }

    // Newer Qt changes the position of a list's delegates.
    function test_rows_are_as_wide_as_the_pane() {
        const view = open([{bytes: mb, titles: ["a"]}, {bytes: mb, titles: ["b"]}]);
        for (let index = 0; index < 2; ++index) {
            const plate = named(row(view, index), "historyPlate");
            const place = view.mapFromItem(plate, 0, 0, plate.width, 1);
            compare([place.x, place.width], [0, view.width]);
        }
    }

    function test_undo_is_off_while_busy() {
        const store = Stage.open([], {history: [{bytes: mb, titles: ["a"]}], hold: 1});
        const view = show(pane, {store: store});
        compare(named(row(view, 0), "undoButton").enabled, true);
        store.scan();
        compare(named(row(view, 0), "undoButton").enabled, false);
        mouseClick(named(row(view, 0), "undoButton"));
        compare(store.cleaning, false);
        Stage.release();
        tryCompare(store, "phase", "done");
        compare(named(row(view, 0), "undoButton").enabled, true);
    }

    function test_a_run_comes_to_the_top_and_can_be_undone() {
        const view = open([{bytes: mb, titles: ["Older"]}], [card("a", "safe", [5 * mb])]);
        view.store.performClean();
        tryCompare(view.store.history, "count", 2);
        tryCompare(view.store, "busy", false);
        compare(textOf(row(view, 0), "titlesText"), "Title of a");
        compare(textOf(row(view, 0), "amountText"), "Freed 5 MB");
        mouseClick(named(row(view, 0), "undoButton"));
        tryCompare(view.store, "notice", "All 1 items are back where they were.");
        compare(textOf(row(view, 0), "outcomeText"), "Restored");
        compare(shown(row(view, 0), "undoButton"), false);
    }

    /// The history after a clean of three items and an undo that restored two: the third one's place was taken.
    function partlyUndone() {
        const view = open([], [card("a", "safe", [5 * mb, 3 * mb, 2 * mb])]);
        view.store.performClean();
        tryCompare(view.store.history, "count", 1);
        tryCompare(view.store, "busy", false);
        Stage.occupy("a", 2);
        mouseClick(named(row(view, 0), "undoButton"));
        tryVerify(() => view.store.notice !== "");
        tryCompare(view.store, "busy", false);
        return view;
    }

    function detailLines(entry) {
        const lines = [];
        for (let i = 0; ; ++i) {
            const found = findChild(entry, "detailLine" + i);
            if (found === null) {
                return lines;
            }
            verify(found.clip, "marks stay in their line");
            lines.push(found.text);
        }
    }

    function test_an_undo_that_left_something_says_what_and_why() {
        const view = partlyUndone();
        compare(view.store.notice, "Put back 2 of 3 items. The rest are no longer in the Trash (maybe it was emptied).");
        const entry = row(view, 0);
        compare(named(entry, "undoButton").enabled, true, "the rest can be tried again");
        compare(shown(entry, "details"), false);
        mouseClick(named(entry, "detailsButton"));
        compare(shown(entry, "details"), true);
        tryCompare(named(entry, "detailSummary"), "text", "2 items are back. 1 item is in the Trash.");
        compare(detailLines(entry), ["Item 2: something else is in its place now"]);
        compare(shown(entry, "detailMore"), false);
        compare(Stage.nameless(view), []);
    }

    function test_details_open_and_close_by_keyboard() {
        const entry = row(partlyUndone(), 0);
        const button = named(entry, "detailsButton");
        compare(button.text, "Details");
        button.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Space);
        compare(shown(entry, "details"), true);
        compare(button.text, "Hide details");
        keyClick(Qt.Key_Return);
        compare(shown(entry, "details"), false);
    }

    function test_details_follow_what_happens() {
        const view = open([], [card("a", "safe", [mb, mb, mb, mb, mb, mb, mb])]);
        view.store.performClean();
        tryCompare(view.store.history, "count", 1);
        tryCompare(view.store, "busy", false);
        const entry = row(view, 0);
        mouseClick(named(entry, "detailsButton"));
        tryCompare(named(entry, "detailSummary"), "text", "7 items are in the Trash.");
        compare(detailLines(entry), []);
        Stage.emptyTrash();
        mouseClick(named(entry, "undoButton"));
        tryCompare(named(entry, "detailSummary"), "text", "7 items are no longer in the Trash.");
        compare(detailLines(entry).length, 5);
        compare(detailLines(entry)[0], "Item 1: no longer in the Trash");
        compare(textOf(entry, "detailMore"), "and 2 more");
    }

    function test_only_runs_that_can_be_undone_have_details() {
        const run = {bytes: mb, titles: ["a"]};
        const view = open([
            Object.assign({moves: 1}, run), run, Object.assign({moves: 1, undone: true}, run),
            Object.assign({preview: true}, run)
        ]);
        compare([0, 1, 2, 3].map(index => shown(row(view, index), "detailsButton")), [true, false, false, false]);
    }
}
