// One scan under way: every rule on a thread of its own at background priority, all on one tracker.
// Made, asked and destroyed on the main thread; results arrive there too.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/spec.h"
#include "core/tracker.h"
#include "state/notifier.h"
#include "state/seen_items.h"

namespace vesk {

/// What one rule came back with.
struct RuleResult {
    std::string label;
    std::vector<Card> cards;
    /// Whether its probe was denied permission somewhere.
    bool blocked = false;
    /// What it saw of the cards' entries.
    SeenItems seen;
};

class ScanRun {
public:
    /// Prepares a run of these rules. `onResult` is called on this thread for each as it finishes, in the order of
    /// finishing, and may destroy the run.
    ScanRun(std::vector<Spec> rules, std::function<void(RuleResult)> onResult);
    /// Forgets what still runs: its results are dropped. Waits a moment for its threads, never for ever.
    ~ScanRun();
    ScanRun(const ScanRun&) = delete;
    ScanRun& operator=(const ScanRun&) = delete;

    /// Starts every rule.
    void start();

    std::size_t ruleCount() const { return rules_.size(); }
    Tracker::Counts counts() const { return tracker_->counts(); }

private:
    struct Inbox;

    void takeResults();

    std::vector<Spec> rules_;
    std::function<void(RuleResult)> onResult_;
    std::shared_ptr<Tracker> tracker_ = std::make_shared<Tracker>();
    MainThreadNotifier notifier_;
    std::shared_ptr<Inbox> inbox_;
};

}  // namespace vesk
