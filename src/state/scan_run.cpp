#include "state/scan_run.h"

#include <QFuture>
#include <QThreadPool>
#include <QtConcurrentRun>
#include <algorithm>
#include <utility>

#include "core/probe.h"
#include "platform/background.h"

namespace vesk {

namespace {

RuleResult runRule(const Spec& rule, std::shared_ptr<Tracker> tracker) {
    enterBackground();
    Probe probe(std::move(tracker));
    std::vector<Card> cards = rule.run(probe);
    SeenFolders folders;
    folders.look(cards);
    return RuleResult{rule.label, std::move(cards), probe.blocked, std::move(folders)};
}

}  // namespace

ScanRun::ScanRun(std::vector<Spec> rules) : rules_(std::move(rules)), threads_(std::make_unique<QThreadPool>()) {
    // A thread that has entered the background stays there, so these are the scan's own. One for each rule: a rule
    // that waits (for a tool, for a slow disk) holds up no other.
    threads_->setMaxThreadCount(static_cast<int>(std::max<std::size_t>(rules_.size(), 1)));
}

ScanRun::~ScanRun() {
    constexpr int patienceMilliseconds = 500;
    if (!threads_->waitForDone(patienceMilliseconds)) {
        // Destroying the pool would wait for as long as a rule hangs.
        (void)threads_.release();
    }
}

void ScanRun::start(const std::function<void(RuleResult)>& onResult) {
    for (const Spec& rule : rules_) {
        QtConcurrent::run(threads_.get(), runRule, rule, tracker_).then(this, onResult);
    }
}

}  // namespace vesk
