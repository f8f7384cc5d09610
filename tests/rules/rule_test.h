// Shared by the tests of rules: running one rule in the made-up world, and short forms of its result.
#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/card.h"
#include "core/probe.h"
#include "platform/world.h"
#include "support/temporary_home.h"

namespace vesk::testing {

constexpr double sixtyDays = 5'184'000;  // seconds

using Rule = std::vector<Card> (*)(Probe&);

struct RuleResult {
    std::vector<Card> cards;
    bool blocked = false;

    /// The card with this identifier; nullptr if the rule returned none.
    const Card* card(std::string_view id) const {
        for (const Card& candidate : cards) {
            if (candidate.id == id) {
                return &candidate;
            }
        }
        return nullptr;
    }
};

inline RuleResult run(Rule rule) {
    Probe probe(std::make_shared<Tracker>());
    RuleResult result;
    result.cards = rule(probe);
    result.blocked = probe.blocked;
    return result;
}

/// The identifiers of the cards, in order.
inline std::vector<std::string> idsOf(const RuleResult& result) {
    std::vector<std::string> ids;
    for (const Card& card : result.cards) {
        ids.push_back(card.id);
    }
    return ids;
}

/// One line per entry, "path from the home folder: name", in the card's order; empty without a card.
inline std::vector<std::string> linesOf(const Card* card) {
    std::vector<std::string> lines;
    if (card != nullptr) {
        for (const Entry& entry : card->entries) {
            const bool inHome = entry.url.string().starts_with(testHome().string() + "/");
            lines.push_back(entry.url.lexically_relative(inHome ? testHome() : testRoot()).string() + ": " +
                            entry.name);
        }
    }
    return lines;
}

/// The same for a rule with one card.
inline std::vector<std::string> linesOf(const RuleResult& result) {
    EXPECT_LE(result.cards.size(), 1U);
    return linesOf(result.cards.empty() ? nullptr : &result.cards.front());
}

/// A folder that this user may not list while this object exists.
class Denied {
public:
    explicit Denied(std::filesystem::path folder) : folder_(std::move(folder)) {
        std::filesystem::permissions(folder_, std::filesystem::perms::none);
    }
    ~Denied() {
        std::error_code ignored;
        std::filesystem::permissions(folder_, std::filesystem::perms::owner_all, ignored);
    }
    Denied(const Denied&) = delete;
    Denied& operator=(const Denied&) = delete;

private:
    std::filesystem::path folder_;
};

/// Writes an executable shell script.
inline void writeScript(const std::filesystem::path& path, std::string_view body) {
    writeFile(path, "#!/bin/sh\n" + std::string(body));
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

class RuleTest : public TemporaryHome {};

}  // namespace vesk::testing
