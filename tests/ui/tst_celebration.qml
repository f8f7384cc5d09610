import QtQuick
import QtTest
import Vesk
import VeskStage

ViewTest {
    id: test
    name: "Celebration"

    Component {
        id: celebration
        CelebrationView {}
    }
    Component {
        id: confetti
        ConfettiView {}
    }
    SignalSpy {
        id: closed
        signalName: "close"
    }

    function open(info) {
        const view = show(celebration, {
            info: Object.assign({id: "x", bytesText: "1.2 GB", preview: false, snapshots: 0, failures: 0}, info)
        });
        closed.target = view;
        closed.clear();
        return view;
    }

    function cleanup() {
        Motion.reduced = true;
    }

    function test_texts_data() {
        const trash = "It's all in the Trash. Undo anytime from History.";
        return [
            {tag: "real", info: {}, lines: ["Vesk!", "1.2 GB freed", trash, "", ""]},
            {
                tag: "preview", info: {preview: true},
                lines: ["Preview done", "1.2 GB could be freed", "Nothing was touched.", "", ""]
            },
            {
                tag: "one snapshot, two failures", info: {snapshots: 1, failures: 2},
                lines: ["Vesk!", "1.2 GB freed", trash, "1 Time Machine snapshot removed.",
                        "2 items couldn't be moved (maybe in use)."]
            },
            {
                tag: "two snapshots, one failure", info: {snapshots: 2, failures: 1},
                lines: ["Vesk!", "1.2 GB freed", trash, "2 Time Machine snapshots removed.",
                        "1 item couldn't be moved (maybe in use)."]
            },
            {tag: "nothing", info: {bytesText: "Zero KB"}, lines: ["Vesk!", "Zero KB freed", trash, "", ""]}
        ];
    }
    function test_texts(data) {
        const view = open(data.info);
        const names = ["Title", "Amount", "Reassurance", "Snapshots", "Failures"].map(name => "celebration" + name);
        compare(names.map(name => shown(view, name) ? textOf(view, name) : ""), data.lines);
        for (const line of data.lines.slice(1)) {
            verify(view.Accessible.name.includes(line), line);
        }
    }

    function test_ways_to_close_data() {
        return [
            {tag: "tap in a corner", act: view => mouseClick(view, 3, 3)},
            {tag: "tap on the card", act: view => mouseClick(view, view.width / 2, view.height / 2)},
            {tag: "Return", act: () => keyClick(Qt.Key_Return)},
            {tag: "Escape", act: () => keyClick(Qt.Key_Escape)},
            {tag: "Space", act: () => keyClick(Qt.Key_Space)},
            {tag: "assistive technology", act: view => view.Accessible.pressAction()}
        ];
    }
    function test_ways_to_close(data) {
        const view = open({});
        data.act(view);
        compare(closed.count, 1);
    }

    function test_confetti_is_drawn_from_its_ranges() {
        const view = show(confetti, {});
        compare(view.pieces.length, 70);
        const within = (value, least, end) => value >= least && value < end;
        const colors = [Theme.green, Theme.yellow, Theme.blue, Theme.accent, Theme.accent2].map(String);
        for (const piece of view.pieces) {
            verify(within(piece.x, 0, 1) && within(piece.delay, 0, 0.6) && within(piece.duration, 1.6, 3)
                   && within(piece.size, 8, 16) && within(piece.spin, 180, 720), JSON.stringify(piece));
            verify(colors.includes(String(piece.color)));
        }
        compare(new Set(view.pieces.map(piece => piece.id)).size, 70);
        verify(new Set(view.pieces.map(piece => String(piece.color))).size >= 4);
        compare(view.fall, true);
    }

    function test_confetti_falls_once() {
        Motion.reduced = false;
        const view = show(confetti, {});
        const piece = Array.from(view.children).find(child => child.radius === 3);
        verify(piece.y < 0);
        tryVerify(() => piece.y >= view.height + 40, 30000);
        compare(piece.rotation, piece.modelData.spin);
        compare(piece.height, 0.6 * piece.width);
    }

    function test_reduced_motion_has_no_confetti() {
        const view = open({});
        compare(findChild(view, "confettiPlace").item, null);
        compare(named(view, "celebrationCard").scale, 1);
    }

    function test_the_card_springs_into_view() {
        Motion.reduced = false;
        const view = createTemporaryObject(celebration, test, {
            info: {id: "x", bytesText: "1 KB", preview: false, snapshots: 0, failures: 0}
        });
        const frame = named(view, "celebrationCard");
        verify(frame.scale < 0.6);
        tryVerify(() => frame.scale > 1.02, 10000);
        tryCompare(frame, "scale", 1, 10000);
        verify(findChild(view, "confettiPlace").item);
    }
}
