// Says how many cards are ticked. Pressing it shows the first of them.
import QtQuick
import Vesk

ActionButton {
    required property Store store

    text: `${store.selectedCount} of ${store.cards.count} picked`
    visible: store.cards.count > 0
    available: store.selectedCount > 0
    // Not dimmed: the number matters even if no card is ticked.
    opacity: 1
    color: Theme.ink
    hint: "Shows the first picked card"
}
