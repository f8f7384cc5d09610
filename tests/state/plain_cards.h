// Cards and rules for tests of a Store that need no files.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/card.h"
#include "core/probe.h"
#include "core/spec.h"

namespace vesk::testing {

/// A card without entries, whose priority depends only on its size.
inline Card plainCard(std::string id) {
    Card card;
    card.id = std::move(id);
    card.title = card.id;
    card.confidence = 1;
    card.risk = 1;
    card.dormancyDays = 1;
    return card;
}

/// A rule that returns these cards at once.
inline Spec ruleOf(std::string label, std::vector<Card> cards, bool blocked = false) {
    return {std::move(label), [cards = std::move(cards), blocked](Probe& probe) {
                probe.blocked = blocked;
                return cards;
            }};
}

}  // namespace vesk::testing
