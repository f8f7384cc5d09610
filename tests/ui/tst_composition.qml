// Properties of the layout that can be checked by figures.
import QtQuick
import QtTest
import Vesk
import VeskStage

ViewTest {
    id: test
    name: "Composition"

    Component {
        id: content
        ContentView {
            focus: true
        }
    }

    function open(cards, options) {
        const view = show(content, {store: Stage.open(cards ?? [card("a", "safe", [5 * mb])], options ?? {})});
        tryCompare(view.store, "phase", "done");
        waitForRendering(view, 200);
        return view;
    }

    function cleanup() {
        Theme.textScale = 1;
        Motion.reduced = true;
    }

    function all(item, accepts) {
        const found = accepts(item) ? [item] : [];
        return Array.from(item.children).reduce((list, child) => list.concat(all(child, accepts)), found);
    }

    function row(view, index) {
        const list = named(view, "cardList");
        tryVerify(() => list.itemAtIndex(index) !== null);
        return list.itemAtIndex(index);
    }

    // The smallest size at which a text is drawn, in points. (Chips are smaller by design, and never shrink.)
    function leastSize(text) {
        return text.parent?.objectName === "chip" || text.parent?.objectName === "sheetChip" ? Theme.chip : Theme.caption;
    }

    function test_no_text_is_smaller_than_a_caption_data() {
        return [{tag: "usual text", scale: 1}, {tag: "doubled text", scale: 2}];
    }
    function test_no_text_is_smaller_than_a_caption(data) {
        Theme.textScale = data.scale;
        const view = open([card("a", "safe", [15850 * mb, 2 * mb]), card("s", "safe", [], {snapshots: 2})],
                          {capacity: 500 * gb, free: 148300 * mb, history: [{bytes: mb, titles: ["a"], snapshotsRemoved: 1}]});
        const looks = [() => {}, () => view.store.detailID = "a", () => view.store.showConfirm = true, () => view.tab = 1];
        for (const look of looks) {
            look();
            waitForRendering(view, 100);
            const texts = all(view, item => item.visible && typeof item.text === "string" && item.fontInfo !== undefined
                              && item.text !== "");
            verify(texts.length > 10);
            for (const text of texts) {
                verify(text.fontInfo.pixelSize >= leastSize(text) - 0.5, `${text.text}: ${text.fontInfo.pixelSize}`);
            }
        }
    }

    function test_the_wheels_ring_gives_way_to_its_words_data() {
        return [{tag: "usual", scale: 1}, {tag: "larger", scale: 1.5}, {tag: "doubled", scale: 2}];
    }
    function test_the_wheels_ring_gives_way_to_its_words(data) {
        Theme.textScale = data.scale;
        const view = open([card("a", "safe", [888880 * mb])], {capacity: 2000 * gb, free: 148300 * mb});
        const words = named(view, "readyText");
        const wheel = words.parent.parent;
        verify(wheel.ringWidth >= 14 && wheel.ringWidth <= 34);
        // Both ends of its last line are inside the ring.
        const place = wheel.mapFromItem(words, (words.width - words.contentWidth) / 2, words.height);
        const distance = Math.hypot(place.x - wheel.width / 2, place.y - wheel.height / 2);
        verify(distance <= wheel.width / 2 - wheel.ringWidth + 2, `${distance} of ${wheel.width / 2 - wheel.ringWidth}`);
        compare(words.truncated, false);
    }

    function test_the_ring_keeps_its_width_where_there_is_room() {
        test.height = 1000;
        const view = open();
        compare(named(view, "readyText").parent.parent.ringWidth, 34);
        test.height = 660;
    }

    function test_a_card_gives_way_to_a_press_like_any_button() {
        Motion.reduced = false;
        const view = open([card("a", "safe", [mb])]);
        const button = named(row(view, 0), "cardButton");
        tryCompare(row(view, 0), "opacity", 1);
        mousePress(button, 150, 20);
        tryVerify(() => button.contentItem.scale < 0.96);
        compare(button.background.scale, button.contentItem.scale);
        mouseRelease(button, 150, 20);
        tryCompare(button.contentItem, "scale", 1);
    }

    function test_the_main_buttons_shadow_goes_with_its_face() {
        const view = open();
        const button = named(view, "mainButton");
        const glow = named(button, "glow");
        compare(glow.visible, true);
        verify(glow.parent === button.background, "it is scaled with the face");
        view.store.setSelected("a", false);
        compare(button.enabled, false);
        compare(glow.visible, false, "it would shine through a fill that is not opaque");
    }

    function test_a_card_under_the_pointer_is_tinted_and_shows_where_it_leads() {
        const view = open([card("a", "safe", [mb], {selected: false})]);
        const button = named(row(view, 0), "cardButton");
        const plate = named(button, "cardPlate");
        const before = String(plate.color);
        compare(plate.opacity, 0.7);
        mouseMove(button, 150, 20);
        tryVerify(() => String(plate.color) !== before);
        compare(plate.opacity, 1);
        compare(all(button, item => item.symbol === "chevron.right").length, 1);
        mouseMove(view, 10, 10);
    }

    function test_focus_rings_are_concentric_and_never_dimmed() {
        const view = open([card("a", "safe", [mb], {selected: false})], {history: [{bytes: mb, titles: ["a"]}]});
        const button = named(row(view, 0), "cardButton");
        button.forceActiveFocus(Qt.TabFocusReason);
        const rings = all(view, item => item.control !== undefined && item.cornerRadius !== undefined);
        verify(rings.length > 5);
        for (const ring of rings) {
            const around = ring.parent;
            const distance = (ring.width - around.width) / 2;
            compare(ring.radius - distance, ring.cornerRadius, ring.control.objectName);
            let opacity = 1;
            for (let item = ring; item && item !== view; item = item.parent) {
                opacity *= item.enabled ? item.opacity : 1;
            }
            compare(opacity, 1, ring.control.objectName);
        }
        const own = rings.find(ring => ring.control === button);
        compare(own.visible, true);
        compare(own.cornerRadius, named(button, "cardPlate").radius);
    }

    function test_a_label_beside_a_switch_toggles_it() {
        const view = open();
        const panel = named(view, "leftPanel");
        const toggle = named(view, "previewSwitch");
        const label = toggle.parent;
        mouseClick(label, 30, label.height / 2);
        compare(view.store.previewOnly, true);
        mouseClick(label, 30, label.height / 2);
        compare(view.store.previewOnly, false);
        view.store.detailID = "a";
        const include = named(view, "includeSwitch");
        const footer = include.parent;
        mouseClick(footer, include.x + include.width + 40, footer.height / 2);
        compare(view.store.selectedCount, 0);
        compare(view.mapFromItem(include.indicator, 0, 0).x, view.mapFromItem(named(view, "contentsHeading"), 0, 0).x);
    }

    function test_the_chip_stands_after_the_last_word() {
        const longTitle = "Support files of applications with long and hardly ever abbreviated names that go on and on";
        const view = open([card("a", "safe", [3 * mb], {title: "Short"}), card("b", "safe", [2 * mb], {title: longTitle})]);
        const head = index => {
            const chip = named(row(view, index), "chip");
            return {chip: chip, title: named(row(view, index), "titleText")};
        };
        const single = head(0);
        compare(single.chip.x, Math.ceil(single.title.contentWidth) + Theme.gap);
        const wrapped = head(1);
        verify(wrapped.title.lineCount > 1);
        compare(wrapped.title.truncated, false);
        verify(wrapped.chip.y > wrapped.title.height / 2 - 2, "on the last line");
        verify(wrapped.chip.x + wrapped.chip.width <= wrapped.title.width + 0.5);
        // Where the last word ends.
        const metrics = createTemporaryQmlObject("import QtQuick; Text {}", test);
        metrics.font = wrapped.title.font;
        const words = longTitle.split(" ");
        let line = "";
        for (const word of words) {
            metrics.text = line === "" ? word : line + " " + word;
            line = metrics.implicitWidth > wrapped.title.width ? word : metrics.text;
        }
        metrics.text = line;
        fuzzyCompare(wrapped.chip.x, metrics.implicitWidth + Theme.gap, 2);
    }

    function test_eight_entries_and_the_last_sentence_fit_in_the_sheet_data() {
        return [{tag: "8", entries: 8}, {tag: "20", entries: 20}];
    }
    function test_eight_entries_and_the_last_sentence_fit_in_the_sheet(data) {
        const view = open([card("a", "safe", Array.from({length: data.entries}, (_, place) => (99 - place) * mb), {
            why: "These are copies that apps keep so that they start faster. They make them again the next time they need "
                + "them, and nothing of yours is in them."
        })]);
        view.store.detailID = "a";
        const body = named(view, "sheetBody");
        waitForRendering(view, 100);
        verify(named(view, "whyText").lineCount >= 2);
        verify(!body.overflows, `${body.contentHeight} of ${body.height}`);
        compare(body.atYEnd, true);
    }

    function test_the_question_names_what_goes() {
        const view = open([card("a", "safe", [3 * mb]), card("b", "smart", [2 * mb], {selected: false}),
                           card("c", "smart", [mb], {selected: true})]);
        view.store.showConfirm = true;
        const message = named(view, "dialogMessage");
        const items = named(view, "dialogItems");
        verify(message.text.startsWith("Everything goes to the Trash"));
        compare(items.text.split("\n").sort(), ["Title of a", "Title of c"]);
        tryVerify(() => items.y > message.y, 5000, "its own text first");
        view.store.showConfirm = false;
        view.store.notice = "News";
        compare(named(view, "dialogItems").visible, false);
    }

    function test_dialogs_keep_their_margins_data() {
        return [{tag: "usual", scale: 1}, {tag: "doubled", scale: 2}];
    }
    function test_dialogs_keep_their_margins(data) {
        Theme.textScale = data.scale;
        const cards = [];
        for (let number = 0; number < 19; ++number) {
            cards.push(card("card" + number, "safe", [(100 - number) * mb], {title: "A title of a usual length " + number}));
        }
        const view = open(cards.concat([card("s", "safe", [], {snapshots: 2})]));
        view.store.showConfirm = true;
        const frame = named(view, "dialogCard");
        verify(frame.y >= Theme.margin - 0.5 && frame.y + frame.height <= view.height - Theme.margin + 0.5);
        verify(frame.x >= Theme.margin - 0.5);
        for (const name of ["acceptButton", "rejectButton", "dialogTitle", "dialogMessage"]) {
            const item = named(frame, name);
            const place = frame.mapFromItem(item, 0, 0, item.width, item.height);
            verify(place.x >= 27.5 && place.x + place.width <= frame.width - 27.5, name);
        }
        const accept = named(frame, "acceptButton");
        verify(frame.mapFromItem(accept, 0, accept.height).y <= frame.height - 27.5);
    }

    // Seen with doubled text in DejaVu, a wide font: "Found" and "History" met, and "Include in cl…" was cut.
    function test_wide_words_have_room_data() {
        return [{tag: "usual", scale: 1}, {tag: "doubled", scale: 2}, {tag: "doubled, in a wide font", scale: 2.6}];
    }
    function test_wide_words_have_room(data) {
        Theme.textScale = data.scale;
        const view = open();
        for (const word of ["Found", "History"]) {
            const choice = all(named(view, "tabs"), item => item.text === word && item.contentItem !== undefined)[0];
            verify(choice.contentItem.contentWidth <= choice.width - 16, `${word}: ${choice.contentItem.contentWidth}`);
        }
        verify(named(view, "tabs").width >= 220);
        view.store.detailID = "a";
        waitForRendering(view, 100);
        const label = all(named(view, "sheetFooter"), item => item.text === "Include in clean" && item.truncated !== undefined)[0];
        compare(label.truncated, false);
        verify(label.contentWidth <= label.width + 0.5 && label.contentHeight <= label.height + 0.5);
        const frame = named(view, "sheetFrame");
        const footer = named(view, "sheetFooter");
        verify(frame.mapFromItem(footer, 0, footer.height).y <= frame.height - 20);
    }

    function test_nothing_stands_above_an_empty_list() {
        const view = open([]);
        compare(shown(view, "emptyState"), true);
        compare(named(view, "safeOnlyButton").visible, false);
        compare(named(view, "listHeading").visible, false);
        compare(shown(view, "panelPicked"), false);
    }

    function test_rows_fade_out_at_the_upper_edge() {
        const cards = [];
        for (let number = 0; number < 20; ++number) {
            cards.push(card("card" + number, "safe", [(100 - number) * mb]));
        }
        const view = open(cards);
        const fade = all(view, item => item.fades === true && item.list !== undefined)[0];
        compare(fade.visible, false);
        named(view, "cardList").contentY = 300;
        compare(fade.visible, true);
        const place = view.mapFromItem(fade, 0, 0);
        compare([fade.whole.x, fade.whole.y], [-place.x, -place.y]);
        waitForRendering(view, 200);
        // Between two rows, where only the background shows, there is no seam.
        const picture = grabImage(view);
        const y = place.y + 1;
        const [inside, beside] = [picture.pixel(place.x + 4, y), picture.pixel(place.x - 4, y)];
        fuzzyCompare(inside.r, beside.r, 0.02);
        fuzzyCompare(inside.b, beside.b, 0.02);
    }

    // Combining marks stack, as high as a name has them.
    function test_texts_that_hold_names_draw_over_nothing_else() {
        const view = open([card("a", "safe", [mb])], {history: [{bytes: mb, titles: ["a"]}]});
        const shows = {
            titleText: () => {},
            sheetTitle: () => view.store.detailID = "a",
            dialogItems: () => view.store.showConfirm = true,
            titlesText: () => view.tab = 1
        };
        for (const [name, show] of Object.entries(shows)) {
            show();
            tryVerify(() => findChild(view, name) !== null, 5000, name);
            compare(named(view, name).clip, true, name);
        }
    }

    function test_names_have_no_gaps() {
        const view = open([card("a", "safe", [mb])], {history: [{bytes: mb, titles: ["a"]},
                                                               {bytes: mb, titles: ["b"], undone: true, snapshotsRemoved: 2}]});
        view.store.celebration;
        view.tab = 1;
        waitForRendering(view, 100);
        for (const name of Stage.readable(view)) {
            verify(!name.includes("  ") && name === name.trim(), `"${name}"`);
        }
    }

    function test_a_celebration_is_named_without_gaps_and_says_how_it_ends() {
        const view = open([card("a", "safe", [mb], {missing: true})]);
        view.store.performClean();
        tryVerify(() => view.store.celebration !== null);
        tryCompare(view.store, "busy", false);
        compare(textOf(view, "celebrationHint"), "Click anywhere to close");
        const names = Stage.readable(view).filter(name => name.startsWith("Vesk!"));
        verify(names.length > 0);
        for (const name of names) {
            verify(!name.includes("  "), name);
        }
    }

    function test_all_titles_of_a_past_run_are_told() {
        const titles = Array.from({length: 19}, (_, place) => "A title of a usual length " + place);
        const view = open([], {history: [{bytes: mb, titles: titles}]});
        view.tab = 1;
        const text = named(view, "titlesText");
        compare(text.text, titles.join(", "));
        tryVerify(() => text.lineCount > 3);
        compare(text.truncated, false);
    }
}
