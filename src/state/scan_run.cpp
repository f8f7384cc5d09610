#include "state/scan_run.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

#include "core/probe.h"
#include "platform/threads/background.h"
#include "state/running_work.h"

namespace vesk {

// What the rules' threads and the main thread share; the threads may outlive the run.
struct ScanRun::Inbox {
    std::mutex lock;
    std::condition_variable oneEnded;
    std::size_t running = 0;
    std::vector<RuleResult> results;
};

namespace {

RuleResult runRule(const Spec& rule, std::shared_ptr<Tracker> tracker) {
    enterBackground();
    Probe probe(std::move(tracker));
    std::vector<Card> cards = rule.run(probe);
    SeenItems seen;
    seen.look(cards, probe);
    return RuleResult{rule.label, std::move(cards), probe.blocked, std::move(seen)};
}

}  // namespace

ScanRun::ScanRun(std::vector<Spec> rules, std::function<void(RuleResult)> onResult)
    : rules_(std::move(rules)),
      onResult_(std::move(onResult)),
      notifier_([this] { takeResults(); }),
      inbox_(std::make_shared<Inbox>()) {
}

ScanRun::~ScanRun() {
    constexpr auto patience = std::chrono::milliseconds(500);
    std::unique_lock guard(inbox_->lock);
    inbox_->oneEnded.wait_for(guard, patience, [this] { return inbox_->running == 0; });
}

void ScanRun::start() {
    inbox_->running = rules_.size();
    for (const Spec& rule : rules_) {
        // One thread for each rule: a rule that waits (for a tool, for a slow disk) holds up no other. Threads of the
        // scan's own, since one that has entered the background stays there.
        std::thread([rule, tracker = tracker_, inbox = inbox_, notifier = notifier_.handle(), token = takeWorkToken()] {
            RuleResult result = runRule(rule, tracker);
            {
                const std::lock_guard guard(inbox->lock);
                inbox->results.push_back(std::move(result));
                --inbox->running;
            }
            inbox->oneEnded.notify_all();
            notifier.notify();
        }).detach();
    }
}

void ScanRun::takeResults() {
    std::vector<RuleResult> arrived;
    {
        const std::lock_guard guard(inbox_->lock);
        arrived.swap(inbox_->results);
    }
    // Kept here, since the last result ends the scan, and whoever hears of that may start the next one.
    const std::function<void(RuleResult)> onResult = onResult_;
    for (RuleResult& result : arrived) {
        onResult(std::move(result));
    }
}

}  // namespace vesk
