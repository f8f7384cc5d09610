// One scan under way: every rule on a thread of its own at background priority, all on one tracker.
// Made, asked and destroyed on the main thread; what it tells arrives there too.
#pragma once

#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/card.h"
#include "core/spec.h"
#include "core/tracker.h"
#include "state/notifier.h"
#include "state/seen_items.h"

namespace vesk {

/// What a scan comes to.
struct ScanResult {
    /// The cards of all rules, those of the highest priority first; of equal priority, in the order they came.
    std::vector<Card> cards;
    /// Labels of the rules that were denied permission somewhere, in order.
    std::vector<std::string> blockedAreas;
    /// What was seen of the cards' entries.
    SeenItems seen;
};

class ScanRun {
public:
    /// Prepares a run of these rules. `onProgress` is told the fraction of the rules that have finished each time one
    /// does; `onResult` what all of them came to. Either may destroy the run.
    ScanRun(std::vector<Spec> rules, std::function<void(double)> onProgress, std::function<void(ScanResult)> onResult);
    /// Forgets what still runs: its results are dropped. Waits a moment for its threads, never for ever.
    ~ScanRun();
    ScanRun(const ScanRun&) = delete;
    ScanRun& operator=(const ScanRun&) = delete;

    /// Starts every rule. Without rules the result is told at once. Where the system allows no more threads, the rules
    /// that are left run on the threads of those that have ended, or as soon as it allows more.
    void start();

    Tracker::Counts counts() const { return tracker_->counts(); }

private:
    // What one rule came back with.
    struct RuleResult;
    struct Inbox;

    static RuleResult runRule(const Spec& rule, std::shared_ptr<Tracker> tracker);
    static void runWaitingRules(Inbox& inbox, const std::shared_ptr<Tracker>& tracker,
                                const MainThreadNotifier::Handle& notifier);
    void startThreads();
    void takeResults();
    void take(RuleResult result);
    void finish();

    std::vector<Spec> rules_;
    std::function<void(double)> onProgress_;
    std::function<void(ScanResult)> onResult_;
    std::shared_ptr<Tracker> tracker_ = std::make_shared<Tracker>();
    MainThreadNotifier notifier_;
    std::shared_ptr<Inbox> inbox_;
    QTimer nextTry_;
    // What the rules that have finished came to, in the order of finishing.
    ScanResult collected_;
    std::size_t finishedRules_ = 0;
    // Gone with the run, which whoever is told of something may destroy.
    std::shared_ptr<const void> life_ = std::make_shared<char>();
};

}  // namespace vesk
