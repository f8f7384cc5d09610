#include "state/scan_run.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <iterator>
#include <mutex>
#include <numeric>
#include <system_error>
#include <thread>
#include <utility>

#include "core/probe.h"
#include "platform/threads/background.h"
#include "state/running_work.h"

namespace vesk {

struct ScanRun::RuleResult {
    std::string label;
    std::vector<Card> cards;
    // Whether its probe was denied permission somewhere.
    bool blocked = false;
    SeenItems seen;
};

// What the rules' threads and the main thread share; the threads may outlive the run.
struct ScanRun::Inbox {
    std::mutex lock;
    std::condition_variable oneEnded;
    // Rules that no thread has taken yet.
    std::deque<Spec> waiting;
    std::size_t running = 0;
    std::vector<RuleResult> results;
};

namespace {

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

ScanRun::RuleResult ScanRun::runRule(const Spec& rule, std::shared_ptr<Tracker> tracker) {
    enterBackground();
    Probe probe(std::move(tracker));
    std::vector<Card> cards = rule.run(probe);
    SeenItems seen;
    seen.look(cards, probe);
    return RuleResult{rule.label, std::move(cards), probe.blocked, std::move(seen)};
}

ScanRun::ScanRun(std::vector<Spec> rules, std::function<void(double)> onProgress,
                 std::function<void(ScanResult)> onResult)
    : rules_(std::move(rules)),
      onProgress_(std::move(onProgress)),
      onResult_(std::move(onResult)),
      notifier_([this] { takeResults(); }),
      inbox_(std::make_shared<Inbox>()) {
    constexpr std::chrono::milliseconds pause{100};
    nextTry_.setSingleShot(true);
    nextTry_.setInterval(pause);
    QObject::connect(&nextTry_, &QTimer::timeout, [this] { startThreads(); });
}

ScanRun::~ScanRun() {
    constexpr auto patience = std::chrono::milliseconds(500);
    std::unique_lock guard(inbox_->lock);
    inbox_->waiting.clear();
    inbox_->oneEnded.wait_for(guard, patience, [this] { return inbox_->running == 0; });
}

void ScanRun::start() {
    if (rules_.empty()) {
        finish();
        return;
    }
    inbox_->waiting.assign(rules_.begin(), rules_.end());
    startThreads();
}

void ScanRun::startThreads() {
    std::size_t wanted = 0;
    {
        const std::lock_guard guard(inbox_->lock);
        wanted = inbox_->waiting.size();
    }
    // One thread for each rule: a rule that waits (for a tool, for a slow disk) holds up no other. Threads of the
    // scan's own, since one that has entered the background stays there.
    try {
        for (; wanted > 0; --wanted) {
            std::thread([tracker = tracker_, inbox = inbox_, notifier = notifier_.handle(), token = takeWorkToken()] {
                runWaitingRules(*inbox, tracker, notifier);
            }).detach();
        }
    } catch (const std::system_error&) {
        nextTry_.start();
    }
}

void ScanRun::runWaitingRules(Inbox& inbox, const std::shared_ptr<Tracker>& tracker,
                              const MainThreadNotifier::Handle& notifier) {
    std::unique_lock guard(inbox.lock);
    while (!inbox.waiting.empty()) {
        const Spec rule = std::move(inbox.waiting.front());
        inbox.waiting.pop_front();
        ++inbox.running;
        guard.unlock();
        RuleResult result = runRule(rule, tracker);
        guard.lock();
        inbox.results.push_back(std::move(result));
        --inbox.running;
        inbox.oneEnded.notify_all();
        notifier.notify();
    }
}

void ScanRun::takeResults() {
    std::vector<RuleResult> arrived;
    {
        const std::lock_guard guard(inbox_->lock);
        arrived.swap(inbox_->results);
    }
    const std::weak_ptr<const void> life = life_;
    for (RuleResult& result : arrived) {
        take(std::move(result));
        if (life.expired()) {
            return;
        }
    }
    if (!arrived.empty() && finishedRules_ == rules_.size()) {
        finish();
    }
}

void ScanRun::take(RuleResult result) {
    std::move(result.cards.begin(), result.cards.end(), std::back_inserter(collected_.cards));
    collected_.seen.merge(std::move(result.seen));
    if (result.blocked) {
        collected_.blockedAreas.push_back(std::move(result.label));
    }
    ++finishedRules_;
    const std::function<void(double)> onProgress = onProgress_;
    onProgress(static_cast<double>(finishedRules_) / static_cast<double>(rules_.size()));
}

void ScanRun::finish() {
    collected_.cards = inPriorityOrder(std::move(collected_.cards));
    std::sort(collected_.blockedAreas.begin(), collected_.blockedAreas.end());
    const std::function<void(ScanResult)> onResult = onResult_;
    onResult(std::move(collected_));
}

}  // namespace vesk
