import QtQuick
import QtTest
import Vesk
import VeskStage

ViewTest {
    id: test
    name: "ContentView"

    Component {
        id: content
        ContentView {
            focus: true
        }
    }

    function open(cards, options) {
        const view = show(content, {store: Stage.open(cards ?? [card("a", "safe", [5 * mb])], options ?? {})});
        tryCompare(view.store, "phase", "done");
        return view;
    }

    /// Waits until the layer in front has fully appeared.
    function settled(view) {
        wait(named(view, "inputGuard").settling);
    }

    // The items that Tab reaches, from the current focus until it comes round.
    function reachable(view) {
        const found = [];
        for (let step = 0; step < 40; ++step) {
            keyClick(Qt.Key_Tab);
            const item = view.Window.activeFocusItem;
            if (found.includes(item)) {
                break;
            }
            found.push(item);
        }
        return found.map(item => item.objectName || item.text);
    }

    function test_first_shown_starts_a_scan() {
        const store = Stage.open([], {hold: 1});
        const view = show(content, {store: store});
        compare(store.phase, "scanning");
        Stage.release();
        tryCompare(store, "phase", "done");
    }

    function test_tabs() {
        const view = open();
        compare(view.tab, 0);
        const tabs = named(view, "tabs");
        compare(tabs.width, 220);
        mouseClick(tabs, 165, tabs.height / 2);
        compare(view.tab, 1);
        compare(shown(view, "emptyHistory"), true);
        compare(shown(view, "cardList"), false);
        mouseClick(tabs, 55, tabs.height / 2);
        compare(shown(view, "cardList"), true);
        compare(findChild(view, "historyList"), null);
    }

    function test_confirm_moves_to_the_trash() {
        const view = open();
        mouseClick(named(view, "mainButton"));
        const dialog = named(view, "confirmDialog");
        compare(textOf(dialog, "dialogTitle"), "Move 5 MB to the Trash?");
        compare(textOf(dialog, "acceptButton"), "Move to Trash");
        compare(textOf(dialog, "rejectButton"), "Cancel");
        mouseClick(named(dialog, "acceptButton"));
        compare(view.store.showConfirm, false);
        tryVerify(() => view.store.celebration !== null);
        compare(textOf(view, "celebrationAmount"), "5 MB freed");
        tryCompare(view.store, "busy", false);
        settled(view);
        mouseClick(view, 5, 5);
        compare(view.store.celebration, null);
        compare(findChild(view, "celebrationAmount"), null);
    }

    function test_confirm_in_preview() {
        const view = open();
        view.store.previewOnly = true;
        view.store.showConfirm = true;
        const dialog = named(view, "confirmDialog");
        compare(textOf(dialog, "dialogTitle"), "Preview 5 MB?");
        compare(textOf(dialog, "acceptButton"), "Run preview");
        keyClick(Qt.Key_Return);
        compare(view.store.showConfirm, false);
        compare(view.store.cleaning, true);
        tryVerify(() => view.store.celebration !== null);
        compare(textOf(view, "celebrationTitle"), "Preview done");
        compare(view.store.cards.count, 1);
    }

    function test_cancel_data() {
        return [{tag: "click", act: dialog => mouseClick(named(dialog, "rejectButton"))},
                {tag: "Escape", act: () => keyClick(Qt.Key_Escape)},
                {tag: "Space on Cancel", act: dialog => {
                    named(dialog, "rejectButton").forceActiveFocus(Qt.TabFocusReason);
                    keyClick(Qt.Key_Space);
                }},
                {tag: "assistive technology", act: dialog => named(dialog, "rejectButton").Accessible.pressAction()}];
    }
    function test_cancel(data) {
        const view = open();
        view.store.showConfirm = true;
        data.act(named(view, "confirmDialog"));
        compare(view.store.showConfirm, false);
        compare(findChild(view, "confirmDialog"), null);
        compare(view.store.cleaning, false);
    }

    function test_return_presses_the_focused_button() {
        const view = open();
        view.store.showConfirm = true;
        named(view, "rejectButton").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        compare(view.store.showConfirm, false);
        compare(view.store.cleaning, false);
        compare(view.store.celebration, null);
    }

    function test_a_celebration_takes_nothing_before_it_is_wholly_shown_data() {
        return [{tag: "click", act: view => mouseClick(view, 5, 5)},
                {tag: "Return", act: () => keyClick(Qt.Key_Return)},
                {tag: "Space", act: () => keyClick(Qt.Key_Space)}];
    }
    function test_a_celebration_takes_nothing_before_it_is_wholly_shown(data) {
        const view = open();
        view.store.previewOnly = true;
        view.store.performClean();
        tryVerify(() => view.store.celebration !== null);
        data.act(view);
        verify(view.store.celebration !== null);
        settled(view);
        data.act(view);
        compare(view.store.celebration, null);
    }

    function test_focus_goes_on_where_its_button_has_gone() {
        const view = show(content, {store: Stage.open([card("a", "safe", [5 * mb])], {})});
        tryCompare(view.store, "phase", "done");
        view.store.performClean();
        tryCompare(view.store, "busy", false);
        view.store.dismissCelebration();
        view.tab = 1;
        const button = findChild(view, "undoButton");
        button.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        tryVerify(() => view.store.notice !== "");
        tryCompare(view.store, "busy", false);
        keyClick(Qt.Key_Return);
        compare(view.store.notice, "");
        compare(button.visible, false);
        const item = view.Window.activeFocusItem;
        verify(item && item.activeFocusOnTab && item.visible && item.enabled, "something has the focus");
        compare(item.visualFocus, true);
    }

    function test_focus_returns_to_a_button_that_was_unavailable_meanwhile() {
        const view = open([card("a", "safe", [5 * mb, 3 * mb])]);
        view.store.performClean();
        tryCompare(view.store, "busy", false);
        view.store.dismissCelebration();
        Stage.occupy("a", 1);
        view.tab = 1;
        const button = findChild(view, "undoButton");
        button.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        tryVerify(() => view.store.notice !== "");
        tryCompare(view.store, "busy", false);
        keyClick(Qt.Key_Return);
        compare(button.activeFocus, true);
        compare(button.visualFocus, true);
    }

    function test_alert() {
        const view = open();
        view.store.notice = "All 3 items are back where they were.";
        const alert = named(view, "noticeAlert");
        compare(textOf(alert, "dialogTitle"), "Heads up");
        compare(textOf(alert, "dialogMessage"), "All 3 items are back where they were.");
        compare(textOf(alert, "acceptButton"), "OK");
        compare(shown(alert, "rejectButton"), false);
        keyClick(Qt.Key_Escape);
        compare(view.store.notice, "");
        compare(findChild(view, "noticeAlert"), null);
    }

    function test_what_is_told_before_the_layers_are_loaded_is_shown_once_they_are() {
        const store = Stage.open([], {});
        store.notice = "News";
        const view = createTemporaryObject(content, test, {store: store, width: 980, height: 660});
        compare(findChild(view, "noticeAlert"), null);
        tryVerify(() => findChild(view, "noticeAlert") !== null);
        tryCompare(named(view, "acceptButton"), "activeFocus", true);
        keyClick(Qt.Key_Return);
        compare(store.notice, "");
        compare(named(view, "tabs").enabled, true);
    }

    function test_sheet_follows_detail_id() {
        const view = open();
        view.store.detailID = "a";
        compare(textOf(view, "sheetTitle"), "Title of a");
        keyClick(Qt.Key_Return);
        compare(view.store.detailID, "");
        compare(findChild(view, "sheetTitle"), null);
    }

    function test_nothing_behind_a_layer_is_reachable_data() {
        return [
            {tag: "confirm", open: store => store.showConfirm = true, inside: ["acceptButton", "rejectButton"]},
            {tag: "notice", open: store => store.notice = "x", inside: ["acceptButton"]},
            {tag: "sheet", open: store => store.detailID = "a", inside: ["doneButton", "includeSwitch"]}
        ];
    }
    function test_nothing_behind_a_layer_is_reachable(data) {
        const view = open();
        verify(reachable(view).includes("mainButton"));
        data.open(view.store);
        compare(reachable(view).sort(), data.inside);
        compare(named(view, "mainButton").enabled, false);
        named(view, "mainButton").Accessible.pressAction();
        named(view, "previewSwitch").Accessible.toggleAction();
        mouseClick(named(view, "tabs"), 165, 10);
        compare(view.store.previewOnly, false);
        compare(view.tab, 0);
    }

    function test_focus_comes_back() {
        const view = open();
        const button = named(view, "mainButton");
        button.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Space);
        compare(view.store.showConfirm, true);
        compare(named(view, "acceptButton").activeFocus, true);
        keyClick(Qt.Key_Escape);
        compare(button.activeFocus, true);
        compare(button.visualFocus, true);
    }

    function test_the_layer_on_top_has_the_keyboard() {
        const view = open();
        view.store.detailID = "a";
        view.store.notice = "News";
        keyClick(Qt.Key_Return);
        compare(view.store.notice, "");
        compare(view.store.detailID, "a");
        keyClick(Qt.Key_Return);
        compare(view.store.detailID, "");
    }

    function test_keyboard_alone() {
        const view = open();
        view.store.previewOnly = true;
        for (let step = 0; step < 20 && view.Window.activeFocusItem.objectName !== "mainButton"; ++step) {
            keyClick(Qt.Key_Tab);
        }
        compare(named(view, "mainButton").visualFocus, true);
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Return);
        tryVerify(() => view.store.celebration !== null);
        keyClick(Qt.Key_Escape);
        compare(view.store.celebration, null);
    }

    function test_actions_of_assistive_technology() {
        const view = open();
        named(view, "previewSwitch").Accessible.toggleAction();
        compare(view.store.previewOnly, true);
        named(view, "mainButton").Accessible.pressAction();
        compare(view.store.showConfirm, true);
        named(view, "acceptButton").Accessible.pressAction();
        compare(view.store.cleaning, true);
        tryCompare(view.store, "cleaning", false);
    }

    function test_everything_has_a_name() {
        const view = open();
        compare(Stage.nameless(view), []);
        view.store.showConfirm = true;
        compare(Stage.nameless(view), []);
    }

    function test_fixed_measures() {
        const view = open();
        compare(named(view, "leftPanel").width, 360);
        compare(named(view, "leftPanel").contentHeight <= named(view, "leftPanel").height, true);
    }

    // Without this, the tests above might pass for any view.
    function test_a_control_without_a_name_is_found() {
        const button = "Rectangle { width: 9; height: 9; Accessible.role: Accessible.Button }";
        const view = createTemporaryQmlObject(`import QtQuick; Item { ${button} }`, test);
        compare(Stage.nameless(view).length, 1);
    }
}
