// Turns one list into another by single-row changes, so that a view keeps its scroll position, its focus and its
// unchanged rows. For CardList.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace vesk {

/// Makes `items` equal to `wanted`; rows with the same key count as the same row. Calls `model`'s `begin...` before and
/// `end...` after each change, and `rowChanged` for each row that stayed. Rows count from 0. Moves are always to an
/// earlier row.
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
    // If keys repeat, too many rows may have stayed.
    while (items.size() > wanted.size()) {
        model.beginRemove(items.size() - 1);
        items.pop_back();
        model.endRemove();
    }
}

}  // namespace vesk
