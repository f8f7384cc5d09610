// A running scan: every rule on a thread of its own at background priority, all with the same tracker. Used by Store on
// the main thread, where its callbacks are called too.
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

/// The result of a scan.
struct ScanResult {
    /// The cards of all rules, highest priority first; with equal priority, in the order in which their rules finished.
    std::vector<Card> cards;
    /// Labels of the rules that were denied permission anywhere, sorted.
    std::vector<std::string> blockedAreas;
    /// What the scan recorded about the cards' entries.
    SeenItems seen;
};

class ScanRun {
public:
    /// Prepares a run of these rules. Calls `onProgress` with the finished fraction of the rules each time one
    /// finishes, and `onResult` at the end. Either may destroy the run.
    ScanRun(std::vector<Spec> rules, std::function<void(double)> onProgress, std::function<void(ScanResult)> onResult);
    /// Drops the results of rules still running. Waits for them at most half a second.
    ~ScanRun();
    ScanRun(const ScanRun&) = delete;
    ScanRun& operator=(const ScanRun&) = delete;

    /// Starts every rule. Without rules, calls `onResult` at once. If the system allows no more threads, the remaining
    /// rules run on threads whose rules have ended, or as soon as it allows more.
    void start();

    Tracker::Counts counts() const { return tracker_->counts(); }

private:
    // The result of one rule.
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
    // The results of the finished rules, in the order in which they finished.
    ScanResult collected_;
    std::size_t finishedRules_ = 0;
    // Expires with the run: shows whether a callback has destroyed it.
    std::shared_ptr<const void> life_ = std::make_shared<char>();
};

}  // namespace vesk
