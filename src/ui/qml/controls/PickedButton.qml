// How many cards are ticked. Pressing it leads to the first of them.
import QtQuick
import Vesk

ActionButton {
    required property Store store

    text: `${store.selectedCount} of ${store.cards.count} picked`
    visible: store.cards.count > 0
    available: store.selectedCount > 0
    // It says something also where it leads nowhere.
    opacity: 1
    color: Theme.ink
    hint: "Shows the first picked card"
}
