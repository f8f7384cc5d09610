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

    // The median of five times, and the least and the most. `measure` is given the number of the turn.
    function fiveTimes(measure: var, what: string): string {
        const times = [1, 2, 3, 4, 5].map(measure).sort((a, b) => a - b);
        return `${times[2]} ms ${what} (${times[0]} to ${times[4]})`;
    }

    function longestGaps(list: var): string {
        return fiveTimes(() => longestGap(list), "between frames at most");
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
        const oneTick = turn => {
            wait(1500);  // until what moved has come to rest
            const ticked = Date.now();
            view.store.setSelected("card0", turn % 2 === 1);
            waitForRendering(view);
            return Date.now() - ticked;
        };
        console.log(`one tick of 500: ${fiveTimes(oneTick, "to its frame")}`);
        const opened = Date.now();
        view.tab = 1;
        waitForRendering(view);
        console.log(`a history of 50 runs and 10,000 moves opens in ${Date.now() - opened} ms`);
        console.log(`history: ${longestGaps(named(view, "historyList"))}, ${stamps.length} frames`);
    }
}
