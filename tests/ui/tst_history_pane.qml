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
                amount: "Freed 1.2 GB", outcome: "Restored", color: Theme.green
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

    // Newer Qt places what a list's delegates are made of itself.
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
}
