// Prints where every item of the window is, for test_scale.py: view_tests -input print_places.qml
import QtQuick
import QtTest
import Vesk
import VeskStage

ViewTest {
    id: test
    name: "Places"

    Component {
        id: content
        ContentView {}
    }

    function print_below(view: Item, item: Item, path: string): void {
        for (let place = 0; place < item.children.length; ++place) {
            const child = item.children[place];
            if (!child.visible) {
                continue;
            }
            const name = `${path}/${place}${child.objectName ? ":" + child.objectName : ""}`;
            const at = view.mapFromItem(child, 0, 0, child.width, child.height);
            console.log(`PLACE ${name} ${at.x} ${at.y} ${at.width} ${at.height}`);
            print_below(view, child, name);
        }
    }

    function test_print() {
        const cards = [card("a", "safe", [5 * mb, 4 * mb], {selected: true}), card("b", "smart", [3 * mb]),
                       card("c", "personal", [mb])];
        const view = show(content, {store: Stage.open(cards, {blocked: ["App caches"]})});
        tryCompare(view.store, "phase", "done");
        waitForRendering(view, 200);
        print_below(view, view, "screen");
        view.store.detailID = "a";
        waitForRendering(view, 200);
        print_below(view, view, "sheet");
    }
}
