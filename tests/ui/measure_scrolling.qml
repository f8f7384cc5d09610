// Prints the longest gap between two frames while long lists open and scroll, the median of five times, since another
// program may cause one: view_tests -input measure_scrolling.qml
import QtQuick
import QtTest
import Vesk
import VeskStage

ViewTest {
    id: test
    name: "Measure"

    property var stamps: []

    Component {
        id: content
        ContentView {}
    }
    NumberAnimation {
        id: scroll
        property: "contentY"
        duration: 3000
    }

    function longestGap(list: var): real {
        stamps = [];
        const note = () => stamps.push(Date.now());
        list.contentYChanged.connect(note);
        scroll.target = list;
        scroll.from = 0;
        scroll.to = list.contentHeight - list.height;
        scroll.start();
        tryCompare(scroll, "running", false, 60000);
        list.contentYChanged.disconnect(note);
        list.positionViewAtBeginning();
        wait(300);
        return stamps.slice(1).reduce((longest, stamp, place) => Math.max(longest, stamp - stamps[place]), 0);
    }

    function longestGaps(list: var): string {
        const gaps = [1, 2, 3, 4, 5].map(() => longestGap(list)).sort((a, b) => a - b);
        return `${gaps[2]} ms between frames at most (${gaps[0]} to ${gaps[4]})`;
    }

    function test_lists() {
        const cards = [];
        for (let number = 0; number < 500; ++number) {
            cards.push(card("card" + number, number % 3 ? "safe" : "smart", [(1000 - number) * mb]));
        }
        const history = [];
        for (let number = 0; number < 50; ++number) {
            history.push({bytes: number * gb, titles: ["App caches", "Old crash reports"], moves: 200});
        }
        const view = show(content, {store: Stage.open(cards, {history: history})});
        tryCompare(view.store, "phase", "done");
        wait(500);
        const list = named(view, "cardList");
        console.log(`500 cards: ${longestGaps(list)}, ${stamps.length} frames`);
        const ticks = [1, 2, 3, 4, 5].map(time => {
            wait(1500);  // until what moved has come to rest
            const ticked = Date.now();
            view.store.setSelected("card0", time % 2 === 1);
            waitForRendering(view);
            return Date.now() - ticked;
        }).sort((a, b) => a - b);
        console.log(`one tick of 500: ${ticks[2]} ms to its frame (${ticks[0]} to ${ticks[4]})`);
        const opened = Date.now();
        view.tab = 1;
        waitForRendering(view);
        console.log(`a history of 50 runs and 10,000 moves opens in ${Date.now() - opened} ms`);
        console.log(`history: ${longestGaps(named(view, "historyList"))}, ${stamps.length} frames`);
    }
}
