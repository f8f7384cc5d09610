// The scan of Store, step by step.

#include <QTimer>
#include <algorithm>
#include <numeric>
#include <utility>

#include "state/scan_run.h"
#include "state/store.h"

namespace vesk {

namespace {

// The cards with the highest priority first; cards of equal priority stay in the order they came.
std::vector<Card> inPriorityOrder(std::vector<Card> cards) {
    std::vector<double> priorities;
    priorities.reserve(cards.size());
    for (const Card& card : cards) {
        priorities.push_back(card.priority());
    }
    std::vector<std::size_t> order(cards.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return priorities[a] > priorities[b]; });
    std::vector<Card> sorted;
    sorted.reserve(cards.size());
    for (const std::size_t place : order) {
        sorted.push_back(std::move(cards[place]));
    }
    return sorted;
}

}  // namespace

void Store::scan() {
    if (busy()) {
        return;
    }

    // The previous cards and blocked areas stay until this scan's replace them.
    progress_ = 0.0;
    foundBytes_ = 0;
    filesSeen_ = 0;
    setPhase(Phase::scanning);
    Q_EMIT progressChanged();
    Q_EMIT foundBytesChanged();
    Q_EMIT filesSeenChanged();
    readVolume();

    collectedCards_.clear();
    collectedBlocked_.clear();
    collectedItems_ = {};
    finishedRules_ = 0;
    scanRun_ = std::make_unique<ScanRun>(sources_.catalogue(),
                                         [this](RuleResult result) { takeRuleResult(std::move(result)); });

    publishCounts();
    poller_->start();

    if (scanRun_->ruleCount() == 0) {
        finishScan();
        return;
    }
    scanRun_->start();
}

void Store::publishCounts() {
    const Tracker::Counts counts = scanRun_->counts();
    publish<qint64>(foundBytes_, counts.bytes, &Store::foundBytesChanged);
    publish<qint64>(filesSeen_, counts.files, &Store::filesSeenChanged);
}

void Store::takeRuleResult(RuleResult result) {
    std::move(result.cards.begin(), result.cards.end(), std::back_inserter(collectedCards_));
    collectedItems_.merge(std::move(result.seen));
    if (result.blocked) {
        collectedBlocked_.push_back(std::move(result.label));
    }
    ++finishedRules_;
    const std::size_t rules = scanRun_->ruleCount();
    publish(progress_, static_cast<double>(finishedRules_) / static_cast<double>(rules), &Store::progressChanged);
    if (finishedRules_ == rules) {
        finishScan();
    }
}

void Store::finishScan() {
    poller_->stop();

    seenItems_ = std::exchange(collectedItems_, {});
    cardList_.replace(inPriorityOrder(std::exchange(collectedCards_, {})));
    Q_EMIT cardsChanged();
    std::sort(collectedBlocked_.begin(), collectedBlocked_.end());
    publish(blockedAreas_, std::exchange(collectedBlocked_, {}), &Store::blockedAreasChanged);
    setPhase(Phase::done);

    readVolume();
}

Tracker::Counts Store::trackerCounts() const {
    return scanRun_ ? scanRun_->counts() : Tracker::Counts{};
}

}  // namespace vesk
