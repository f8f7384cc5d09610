// Lists, and content that is too large, scroll by keys, wheel and touch, but not by dragging with the mouse.
import QtQuick
import QtQuick.Templates as T
import QtTest
import Vesk
import VeskStage

ViewTest {
    id: test
    name: "Scrolling"

    Component {
        id: content
        ContentView {
            focus: true
        }
    }

    function open(count, options) {
        const cards = [];
        for (let number = 0; number < count; ++number) {
            cards.push(card("card" + number, "safe", [(1000 - number) * mb], {selected: number > 20}));
        }
        const view = show(content, {store: Stage.open(cards, options ?? {})});
        tryCompare(view.store, "phase", "done");
        laidOut(view, "cardList", count);
        return view;
    }

    // A list, with everything in its place: on a busy machine that may take some frames. A grab waits for none.
    function laidOut(view, name, count) {
        const list = named(view, name);
        tryCompare(list, "count", count);
        grabImage(view);
        list.forceLayout();
        return list;
    }

    function cleanup() {
        Motion.reduced = true;
        Theme.textScale = 1;
    }

    function test_keys_move_the_cards_wherever_the_focus_is() {
        const view = open(40);
        const list = named(view, "cardList");
        const top = list.contentY;
        named(view, "previewSwitch").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_PageDown);
        verify(list.contentY > top + list.height / 2, "a page on");
        verify(list.contentY < top + list.height, "a little of the page before stays");
        keyClick(Qt.Key_PageUp);
        compare(list.contentY, top);
        keyClick(Qt.Key_End);
        compare(list.atYEnd, true);
        keyClick(Qt.Key_Home);
        compare(list.atYBeginning, true);
        compare(named(view, "previewSwitch").activeFocus, true);
    }

    function test_the_focus_goes_along_with_the_cards() {
        const view = open(40);
        const list = named(view, "cardList");
        list.itemAtIndex(0).button.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_End);
        compare(list.itemAtIndex(39).button.activeFocus, true);
        keyClick(Qt.Key_Home);
        compare(list.itemAtIndex(0).button.activeFocus, true);
        keyClick(Qt.Key_PageDown);
        const row = view.Window.activeFocusItem.parent;
        verify(row.index > 2, "a row of the next page");
        verify(row.y >= list.contentY && row.y + row.height <= list.contentY + list.height, "and in view");
    }

    function test_keys_move_the_history() {
        const history = [];
        for (let number = 0; number < 30; ++number) {
            history.push({bytes: mb, titles: ["a"]});
        }
        const view = open(1, {history: history});
        view.tab = 1;
        const list = laidOut(view, "historyList", 30);
        keyClick(Qt.Key_End);
        compare(list.atYEnd, true);
        keyClick(Qt.Key_Home);
        compare(list.atYBeginning, true);
        keyClick(Qt.Key_PageDown);
        compare(list.atYBeginning, false);
    }

    // A list estimates how high the rows are that it has not shown yet.
    function test_end_and_home_get_there_whatever_the_heights() {
        const history = [];
        for (let number = 0; number < 60; ++number) {
            const tall = number >= 20 && number < 50;
            history.push({bytes: mb, titles: Array.from({length: tall ? 40 : 1}, (_, place) => "A title " + place)});
        }
        const view = open(1, {history: history});
        view.tab = 1;
        const list = laidOut(view, "historyList", 60);
        for (const [key, property, index] of [[Qt.Key_End, "atYEnd", 59], [Qt.Key_Home, "atYBeginning", 0]]) {
            keyClick(key);
            waitForRendering(view, 100);
            compare(list[property], true, property);
            const row = list.itemAtIndex(index);
            verify(row !== null && row.y >= list.contentY - 1 && row.y + row.height <= list.contentY + list.height + 1, property);
        }
    }

    function test_a_mouse_that_drags_moves_nothing() {
        const view = open(40);
        const list = named(view, "cardList");
        const top = list.contentY;
        mouseDrag(list, 200, 300, 0, -200);
        compare(list.contentY, top);
        compare(view.store.detailID, "", "nor presses anything");
        mouseWheel(list, 200, 300, 0, -240);
        tryVerify(() => list.contentY > top);
    }

    function test_the_panels_scroll_bar_covers_nothing() {
        Theme.textScale = 2;
        const view = open(3);
        const panel = named(view, "leftPanel");
        verify(panel.overflows);
        const bar = panel.T.ScrollBar.vertical;
        verify(bar.visible);
        verify(bar.mapToItem(panel, 0, 0).x >= panel.width);
        verify(bar.mapToItem(view, bar.width, 0).x < named(view, "cardList").mapToItem(view, 0, 0).x);
    }

    function test_a_finger_that_drags_moves_the_list() {
        const view = open(40);
        const list = named(view, "cardList");
        const top = list.contentY;
        const touch = touchEvent(list);
        touch.press(0, list, 200, 400).commit();
        for (let y = 390; y >= 100; y -= 10) {
            touch.move(0, list, 200, y).commit();
        }
        verify(list.contentY > top + 100);
        touch.release(0, list, 200, 100).commit();
        compare(view.store.detailID, "");
    }

    function test_picked_leads_to_the_first_ticked_card_data() {
        return [{tag: "headPicked"}, {tag: "panelPicked"}];
    }
    function test_picked_leads_to_the_first_ticked_card(data) {
        const view = open(40);
        const list = named(view, "cardList");
        const button = named(view, data.tag);
        compare(button.text, "19 of 40 picked");
        compare(named(view, "cardList").itemAtIndex(21)?.button.activeFocus ?? false, false);
        view.tab = data.tag === "panelPicked" ? 1 : 0;
        mouseClick(button);
        compare(view.tab, 0);
        const row = list.itemAtIndex(21);
        compare(row.selected, true);
        compare(row.button.activeFocus, true);
        verify(row.y >= list.contentY && row.y + row.height <= list.contentY + list.height, "in view");
    }

    function test_with_nothing_picked_it_leads_nowhere() {
        const view = open(3);
        const button = named(view, "headPicked");
        compare(button.text, "0 of 3 picked");
        compare(button.enabled, false);
        compare(named(view, "panelPicked").enabled, false);
        view.store.setSelected("card1", true);
        compare(button.text, "1 of 3 picked");
        compare(button.enabled, true);
    }

    // A display may be smaller than the content's minimum size.
    function test_all_can_be_reached_in_a_window_that_is_too_small() {
        const view = open(5);
        view.store.setSelected("card0", true);
        view.width = 640;
        view.height = 400;
        const viewport = named(view, "viewport");
        compare([viewport.contentWidth, viewport.contentHeight], [980, 660]);
        for (const name of ["mainButton", "scanButton", "safeOnlyButton", "previewSwitch"]) {
            const item = named(view, name);
            item.forceActiveFocus(Qt.TabFocusReason);
            const place = view.mapFromItem(item, 0, 0, item.width, item.height);
            verify(place.x >= 0 && place.x + place.width <= view.width, name + " across");
            verify(place.y >= 0 && place.y + place.height <= view.height,
                   `${name} from ${place.y} to ${place.y + place.height}, ${viewport.contentY}`);
        }
        view.store.detailID = "card0";
        const frame = named(view, "sheetFrame");
        verify(frame.height <= 400 && frame.y >= 0);
        named(view, "doneButton").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        view.store.showConfirm = true;
        const dialog = named(view, "dialogCard");
        verify(dialog.height <= 400 - 2 * Theme.gap && dialog.y >= 0);
    }

    function test_the_panel_shows_what_gets_the_focus() {
        Theme.textScale = 2;
        const view = open(5);
        const panel = named(view, "leftPanel");
        verify(panel.overflows);
        const button = named(view, "scanButton");
        button.forceActiveFocus(Qt.TabFocusReason);
        const place = panel.mapFromItem(button, 0, 0, button.width, button.height);
        verify(place.y >= 0 && place.y + place.height <= panel.height);
    }

    function test_rows_come_within_the_spring_and_jump_where_motion_is_reduced_data() {
        return [{tag: "springs", reduced: false}, {tag: "jumps", reduced: true}];
    }
    function test_rows_come_within_the_spring_and_jump_where_motion_is_reduced(data) {
        const view = open(3);
        const list = named(view, "cardList");
        waitForRendering(view, 200);
        Motion.reduced = data.reduced;
        const one = id => card(id, "safe", [mb]);
        Stage.find([card("card0", "safe", [1000 * mb]), card("new", "safe", [999.5 * mb]), card("card1", "safe", [999 * mb]),
                    card("card2", "safe", [998 * mb])]);
        view.store.scan();
        tryCompare(list, "count", 4);
        const row = () => [0, 1, 2, 3].map(index => list.itemAtIndex(index)).find(item => item?.cardId === "new");
        tryVerify(() => row() !== undefined);
        if (data.reduced) {
            compare(row().presence, 1);
            compare(row().opacity, 1);
            return;
        }
        verify(row().opacity < 1, "on its way");
        let most = 0;
        tryVerify(() => (most = Math.max(most, row().presence)) > 1.01, 5000, "it swings beyond its place");
        tryVerify(() => row().opacity === 1 && row().presence === 1 && row().button.scale === 1, 5000);
        tryVerify(() => [1, 2, 3].every(index => list.itemAtIndex(index).y
                                        === list.itemAtIndex(index - 1).y + list.itemAtIndex(index - 1).height + list.spacing));
    }

    // The scan after a clean ends while the celebration covers the list and everything there is disabled.
    function test_rows_that_come_beneath_a_layer_are_there_afterwards() {
        const view = open(3);
        const list = named(view, "cardList");
        Motion.reduced = false;
        view.store.notice = "News";
        Stage.find(["card0", "card1", "card2", "new"].map(id => card(id, "safe", [mb])));
        view.store.scan();
        tryCompare(list, "count", 4);
        view.store.notice = "";
        tryVerify(() => [0, 1, 2, 3].every(index => list.itemAtIndex(index)?.presence === 1), 5000);
        compare([0, 1, 2, 3].map(index => list.itemAtIndex(index).opacity), [1, 1, 1, 1]);
    }

    function test_rows_go_within_the_spring() {
        const view = open(3);
        const list = named(view, "cardList");
        Motion.reduced = false;
        const going = list.itemAtIndex(1);
        // The list destroys the row some time after its count has changed, so this records the row's values until then.
        const seen = [];
        going.opacityChanged.connect(() => seen.push({enabled: going.enabled, opacity: going.opacity}));
        const cards = ["card0", "card2"].map(id => card(id, "safe", [mb], {selected: false}));
        Stage.find(cards);
        view.store.scan();
        tryCompare(list, "count", 2);
        tryVerify(() => list.contentItem.children.length > 0
                  && !Array.from(list.contentItem.children).some(item => item.cardId === "card1"), 5000, "gone");
        verify(seen.some(then => then.opacity > 0), "on its way");
        verify(seen.every(then => !then.enabled));
        const [first, second] = [list.itemAtIndex(0), list.itemAtIndex(1)];
        tryVerify(() => second.y === first.y + first.height + list.spacing);
    }

    function test_the_spring_of_the_rows() {
        compare(ListSpring.duration, 1583);
    }
}
