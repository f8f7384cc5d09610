import QtQuick
import QtTest
import Vesk
import VeskStage

ViewTest {
    id: test
    name: "LeftPanel"

    Component {
        id: panel
        LeftPanel {}
    }
    Component {
        id: confirmDialog
        ConfirmDialog {}
    }
    Component {
        id: wheelView
        WheelView {}
    }

    function test_nothing_selected() {
        const view = show(panel, {store: scanned([])});
        compare(view.sizeText, "");
        compare(view.buttonTitle, "Pick something to clean");
        const button = named(view, "mainButton");
        compare(button.text, "Pick something to clean");
        compare(button.enabled, false);
        compare(button.opacity, 0.5);
        mouseClick(button);
        compare(view.store.showConfirm, false);
    }

    function test_texts_data() {
        const file = card("a", "safe", [1200000000]);
        return [
            {tag: "bytes", cards: [file], size: "1.2 GB"},
            {tag: "one snapshot", cards: [card("s", "safe", [], {snapshots: 1})], size: "1 snapshot", snapshots: true},
            {tag: "two snapshots", cards: [card("s", "safe", [], {snapshots: 2})], size: "2 snapshots", snapshots: true},
            {
                tag: "both", cards: [file, card("s", "safe", [], {snapshots: 2})],
                size: "1.2 GB + 2 snapshots", snapshots: true
            }
        ];
    }
    function test_texts(data) {
        const view = show(panel, {store: scanned(data.cards)});
        compare(view.sizeText, data.size);
        compare(view.buttonTitle, "Clean " + data.size);
        const dialog = show(confirmDialog, {store: view.store, sizeText: view.sizeText});
        compare(dialog.title, "Move " + data.size + " to the Trash?");
        compare(dialog.message,
                "Everything goes to the Trash, so you can put it back from History or the Trash."
                + (data.snapshots ? " Time Machine snapshots can't go in the Trash, so those are removed for good." : ""));
        view.store.previewOnly = true;
        compare(view.buttonTitle, "Preview " + data.size);
        compare(dialog.title, "Preview " + data.size + "?");
        compare(dialog.message, "Preview only is on, so nothing will be moved or removed.");
    }

    function test_main_button_only_asks() {
        const view = show(panel, {store: scanned([card("a", "safe", [mb])])});
        const button = named(view, "mainButton");
        compare(button.enabled, true);
        compare(button.opacity, 1);
        mouseClick(button);
        compare(view.store.showConfirm, true);
        compare(view.store.cleaning, false);
    }

    function test_working_while_cleaning() {
        const view = show(panel, {store: scanned([card("a", "safe", [mb])])});
        view.store.previewOnly = true;
        view.store.performClean();
        compare(view.store.cleaning, true);
        compare(view.buttonTitle, "Working…");
        compare(named(view, "mainButton").enabled, false);
        compare(named(view, "scanButton").enabled, false);
        tryCompare(view.store, "cleaning", false);
        compare(named(view, "scanButton").enabled, true);
    }

    function test_scan_button() {
        const store = scanned([]);
        const view = show(panel, {store: store});
        Stage.find([card("new", "safe", [mb])]);
        mouseClick(named(view, "scanButton"));
        compare(store.phase, "scanning");
        compare(named(view, "scanButton").enabled, false);
        tryCompare(store, "phase", "done");
        compare(store.cards.count, 1);
    }

    function test_legend() {
        const view = show(panel, {
            store: scanned([card("a", "safe", [2 * mb]), card("b", "smart", [30 * mb])],
                           {capacity: 500 * mb, free: 100 * mb})
        });
        const expected = {
            safeLegend: ["Safe junk", "Clears in one click", "2 MB", Theme.green],
            smartLegend: ["Smart review", "You decide, card by card", "30 MB", Theme.yellow],
            personalLegend: ["Personal files", "Never touched or scanned", "368 MB", Theme.blue]
        };
        for (const name in expected) {
            const row = named(view, name);
            compare([row.title, row.detail, textOf(row, "sizeText")], expected[name].slice(0, 3));
            compare(row.color, expected[name][3]);
        }
    }

    function test_preview_switch() {
        const view = show(panel, {store: scanned([])});
        const toggle = named(view, "previewSwitch");
        compare(toggle.checked, false);
        mouseClick(toggle);
        compare(view.store.previewOnly, true);
        keyClick(Qt.Key_Space);
        compare(view.store.previewOnly, false);
        keyClick(Qt.Key_Return);
        compare(view.store.previewOnly, true);
    }

    function test_wheel_at_rest() {
        const view = show(wheelView, {
            store: scanned([card("a", "safe", [50 * mb]), card("b", "smart", [100 * mb])],
                           {capacity: 1000 * mb, free: 250 * mb})
        });
        compare(textOf(view, "freeText"), "250 MB");
        compare(textOf(view, "capacityText"), "free of 1 GB");
        compare(textOf(view, "readyText"), "50 MB ready to vesk away");
        compare(shown(view, "readyText"), true);
        fuzzyCompare(named(view, "personalArc").to, 0.6, 1e-9);
        fuzzyCompare(named(view, "smartArc").from, 0.6, 1e-9);
        fuzzyCompare(named(view, "smartArc").to, 0.7, 1e-9);
        fuzzyCompare(named(view, "safeArc").from, 0.7, 1e-9);
        fuzzyCompare(named(view, "safeArc").to, 0.75, 1e-9);
        compare(findChild(view, "progressRing"), null);
        verify(view.Accessible.name.includes("250 MB free of 1 GB"));
        for (const share of ["600 MB", "100 MB", "50 MB"]) {
            verify(view.Accessible.name.includes(share), share);
        }
    }

    function test_wheel_without_safe_junk() {
        const view = show(wheelView, {store: scanned([card("b", "smart", [mb])])});
        compare(shown(view, "readyText"), false);
    }

    function test_wheel_of_unknown_capacity() {
        const view = show(wheelView, {store: scanned([], {capacity: 0, free: 0})});
        compare(named(view, "personalArc").to, 0);
        compare(named(view, "safeArc").to, 0);
        compare(textOf(view, "capacityText"), "free of Zero KB");
    }

    function test_wheel_while_scanning() {
        const store = Stage.open([], {hold: 2, holdBytes: 5 * mb});
        const view = show(wheelView, {store: store});
        store.scan();
        tryCompare(store, "foundBytes", 10 * mb);
        tryVerify(() => store.progress > 0.3);
        compare(textOf(view, "percentText"), "33%");
        compare(textOf(view, "checkedText"), "10 MB checked");
        fuzzyCompare(named(view, "progressArc").to, 1 / 3, 1e-9);
        compare(named(view, "freeText").visible, false);
        const progress = named(view, "progressRing");
        compare(progress.value, 33);
        compare(progress.accessibleName, "Sniffing around… 33%, 10 MB checked");
        Stage.release();
        tryCompare(store, "phase", "done");
        compare(findChild(view, "progressRing"), null);
        compare(named(view, "freeText").visible, true);
    }

    function test_progress_never_looks_empty() {
        const store = Stage.open([], {hold: 99});
        store.scan();
        const view = show(wheelView, {store: store});
        tryVerify(() => store.progress > 0);
        compare(textOf(view, "percentText"), "1%");
        compare(named(view, "progressArc").to, 0.02);
    }

    function test_every_control_has_a_name() {
        compare(Stage.nameless(show(panel, {store: scanned([card("a", "safe", [mb])])})), []);
    }
}
