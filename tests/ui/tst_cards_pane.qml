import QtQuick
import QtTest
import Vesk
import VeskStage

ViewTest {
    id: test
    name: "CardsPane"

    Component {
        id: pane
        CardsPane {}
    }

    function row(view, index) {
        const list = named(view, "cardList");
        tryVerify(() => list.itemAtIndex(index) !== null);
        return list.itemAtIndex(index);
    }

    function button(view, index) {
        return named(row(view, index), "cardButton");
    }

    function test_states() {
        const store = Stage.open([], {hold: 1});
        const view = show(pane, {store: store});
        compare(shown(view, "emptyState"), true);
        store.scan();
        compare(shown(view, "emptyState"), false);
        compare(textOf(view, "lookingText"), "Looking for things to vesk away…");
        compare(shown(view, "lookingText"), true);
        Stage.release();
        tryCompare(store, "phase", "done");
        compare(shown(view, "lookingText"), false);
        compare(shown(view, "emptyState"), true);
    }

    function test_cards_stay_during_a_rescan() {
        const store = scanned([card("a", "safe", [mb])]);
        const view = show(pane, {store: store});
        store.scan();
        compare(store.phase, "scanning");
        compare(shown(view, "cardList"), true);
        compare(shown(view, "lookingText"), false);
        tryCompare(store, "phase", "done");
    }

    function test_chips_and_colours_data() {
        return [
            {tag: "safe", chip: "Safe", color: Theme.green},
            {tag: "smart", chip: "Review", color: Theme.yellow},
            {tag: "personal", chip: "Review", color: Theme.blue}
        ];
    }
    function test_chips_and_colours(data) {
        const view = show(pane, {store: scanned([card("a", data.tag, [mb])])});
        const chip = named(row(view, 0), "chip");
        compare(chip.text, data.chip);
        compare(chip.tint, data.color);
        compare(named(row(view, 0), "cardSwitch").tint, data.color);
    }

    function test_amounts() {
        const view = show(pane, {
            store: scanned([card("a", "safe", [1500 * kb, 500 * kb]), card("s", "safe", [], {snapshots: 2}),
                            card("none", "smart", [])])
        });
        const list = named(view, "cardList");
        const amounts = {};
        for (let index = 0; index < list.count; ++index) {
            amounts[row(view, index).cardId] = textOf(row(view, index), "sizeText");
        }
        compare(amounts, {a: "2 MB", s: "Size varies", none: "Zero KB"});
    }

    function test_switch_ticks_and_does_not_open() {
        const store = scanned([card("a", "safe", [mb])]);
        const view = show(pane, {store: store});
        const toggle = named(row(view, 0), "cardSwitch");
        compare(toggle.checked, true);
        mouseClick(toggle);
        compare(toggle.checked, false);
        compare(store.selectedCount, 0);
        compare(store.detailID, "");
        store.setSelected("a", true);
        compare(toggle.checked, true);
    }

    function test_tap_on_the_row_opens() {
        const store = scanned([card("a", "safe", [mb])]);
        const view = show(pane, {store: store});
        mouseClick(button(view, 0), 150, button(view, 0).height / 2);
        compare(store.detailID, "a");
        compare(store.selectedCount, 1);
    }

    function test_pick_safe_junk_only() {
        const store = scanned([card("a", "safe", [mb], {selected: false}), card("b", "smart", [mb], {selected: true})]);
        const view = show(pane, {store: store});
        compare(store.selectedBytes, mb);
        mouseClick(named(view, "safeOnlyButton"));
        for (let index = 0; index < 2; ++index) {
            compare(row(view, index).selected, row(view, index).bucket === "safe");
        }
    }

    function test_blocked_banner() {
        const view = show(pane, {store: scanned([], {blocked: ["Old downloads", "App caches"]})});
        compare(shown(view, "blockedBanner"), true);
        compare(textOf(view, "areasText"), "Vesk couldn't peek into: App caches, Old downloads. "
                + "Allow Full Disk Access and scan again to include them.");
    }

    function test_no_banner_without_blocked_areas() {
        compare(shown(show(pane, {store: scanned([])}), "blockedBanner"), false);
    }

    function test_keyboard() {
        const store = scanned([card("a", "safe", [3 * mb]), card("b", "smart", [2 * mb]), card("c", "safe", [mb])]);
        const view = show(pane, {store: store});
        const first = button(view, 0);
        first.forceActiveFocus(Qt.TabFocusReason);
        compare(first.visualFocus, true);
        keyClick(Qt.Key_Down);
        compare(button(view, 1).activeFocus, true);
        keyClick(Qt.Key_Return);
        compare(store.detailID, row(view, 1).cardId);
        store.detailID = "";
        keyClick(Qt.Key_Tab);
        const toggle = named(row(view, 1), "cardSwitch");
        compare(toggle.activeFocus, true);
        const before = toggle.checked;
        keyClick(Qt.Key_Space);
        compare(toggle.checked, !before);
        keyClick(Qt.Key_Tab);
        compare(button(view, 2).activeFocus, true);
    }

    function test_switch_is_called_by_its_card() {
        const view = show(pane, {store: scanned([card("a", "safe", [mb])])});
        compare(named(row(view, 0), "cardSwitch").Accessible.name, "Title of a");
        compare(button(view, 0).Accessible.name, "Title of a");
        compare(Stage.nameless(view), []);
    }

    // Newer Qt changes the position of a list's delegates.
    function test_cards_end_where_the_buttons_above_do() {
        const view = show(pane, {store: scanned([card("a", "safe", [2 * mb]), card("b", "safe", [mb])])});
        for (let index = 0; index < 2; ++index) {
            const place = view.mapFromItem(button(view, index), 0, 0, button(view, index).width, 1);
            compare([place.x, place.width], [0, view.width]);
        }
    }

    function test_cards_out_of_sight_can_be_read() {
        const cards = [];
        for (let number = 0; number < 19; ++number) {
            cards.push(card("card" + number, "safe", [(100 - number) * mb]));
        }
        const view = show(pane, {store: scanned(cards)});
        const titles = cards.map(found => "Title of " + found.id);
        tryVerify(() => {
            const names = Stage.readable(view);
            return titles.every(title => names.includes(title));
        }, 5000, "every card");
    }

    function test_scroll_place_survives_a_rescan() {
        const cards = [];
        for (let number = 0; number < 60; ++number) {
            cards.push(card("card" + number, "safe", [(100 - number) * mb]));
        }
        const store = scanned(cards);
        const view = show(pane, {store: store});
        const list = named(view, "cardList");
        list.contentY = 1500;
        const top = list.itemAt(100, list.contentY + 50).cardId;
        Stage.find(cards.slice(0, 55));
        store.scan();
        tryCompare(store, "phase", "done");
        tryCompare(list, "count", 55);
        compare(list.itemAt(100, list.contentY + 50).cardId, top);
    }

    function test_ticking_one_of_500_changes_one_row() {
        const cards = [];
        for (let number = 0; number < 500; ++number) {
            cards.push(card("card" + number, "smart", [(1000 - number) * mb]));
        }
        const store = scanned(cards);
        const view = show(pane, {store: store});
        const spy = createTemporaryQmlObject("import QtTest; SignalSpy { signalName: 'dataChanged' }", test);
        spy.target = store.cards;
        mouseClick(named(row(view, 2), "cardSwitch"));
        compare(spy.count, 1);
        compare(spy.signalArguments[0][0].row, 2);
        compare(spy.signalArguments[0][1].row, 2);
    }
}
