// Turns one list into another by single-row changes, so that a view keeps its scroll position, its focus and the rows
// that did not change.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace vesk {

/// Makes `items` equal to `wanted`; rows with the same key are the same row. `model` is told of each change just before
/// (`begin...`) and just after it (`end...`), and of each row that stayed (`rowChanged`). Rows count from 0. A move
/// takes a row to an earlier place.
template <typename Model, typename Item, typename Key>
void applyListDiff(Model& model, std::vector<Item>& items, std::vector<Item> wanted, Key key) {
    const auto isWanted = [&](const Item& item) {
        return std::any_of(wanted.begin(), wanted.end(), [&](const Item& w) { return key(w) == key(item); });
    };
    for (std::size_t row = items.size(); row-- > 0;) {
        if (!isWanted(items[row])) {
            model.beginRemove(row);
            items.erase(items.begin() + static_cast<std::ptrdiff_t>(row));
            model.endRemove();
        }
    }
    for (std::size_t row = 0; row < wanted.size(); ++row) {
        const auto place = items.begin() + static_cast<std::ptrdiff_t>(row);
        const auto found = std::find_if(place, items.end(), [&](const Item& i) { return key(i) == key(wanted[row]); });
        if (found == items.end()) {
            model.beginInsert(row);
            items.insert(place, std::move(wanted[row]));
            model.endInsert();
            continue;
        }
        if (found != place) {
            model.beginMove(static_cast<std::size_t>(found - items.begin()), row);
            std::rotate(place, found, found + 1);
            model.endMove();
        }
        items[row] = std::move(wanted[row]);
        model.rowChanged(row);
    }
    // Of keys that repeat, more rows may have stayed than are wanted.
    while (items.size() > wanted.size()) {
        model.beginRemove(items.size() - 1);
        items.pop_back();
        model.endRemove();
    }
}

}  // namespace vesk
