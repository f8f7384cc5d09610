// Shared by the tests of the views.
import QtQuick
import QtTest
import Vesk
import VeskStage

TestCase {
    id: test

    readonly property real kb: 1000
    readonly property real mb: 1000 * kb
    readonly property real gb: 1000 * mb

    when: windowShown
    width: 980
    height: 660
    visible: true

    /// A card as Stage takes it.
    function card(id: string, bucket: string, sizes: var, more: var): var {
        return Object.assign({
            id: id,
            title: "Title of " + id,
            bucket: bucket,
            entries: sizes
        }, more);
    }

    /// A store after its first scan.
    function scanned(cards: var, options: var): var {
        const store = Stage.open(cards, options ?? {});
        store.scan();
        tryCompare(store, "phase", "done");
        return store;
    }

    /// A view that fills the test's window and is destroyed with the test.
    function show(component: var, properties: var): var {
        const view = createTemporaryObject(component, test, properties);
        verify(view, "made");
        view.width = Qt.binding(() => test.width);
        view.height = Qt.binding(() => test.height);
        waitForRendering(test, 200);
        const layers = findChild(view, "layers");
        if (layers) {
            tryCompare(layers, "status", Loader.Ready);
        }
        return view;
    }

    function named(parent: var, name: string): var {
        const item = findChild(parent, name);
        verify(item, "there is " + name);
        return item;
    }

    function textOf(parent: var, name: string): string {
        return named(parent, name).text;
    }

    function shown(parent: var, name: string): bool {
        const item = findChild(parent, name);
        return item !== null && item.visible;
    }
}
