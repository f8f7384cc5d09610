// One scan under way: every rule as a task of its own at background priority, all on one tracker.
// Made, asked and destroyed on the main thread; results arrive there too.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/spec.h"
#include "core/tracker.h"
#include "state/seen_folders.h"

class QThreadPool;

namespace vesk {

/// What one rule came back with.
struct RuleResult {
    std::string label;
    std::vector<Card> cards;
    /// Whether its probe was refused somewhere.
    bool blocked = false;
    /// The folders that the cards' entries lie in.
    SeenFolders folders;
};

class ScanRun : public QObject {
    Q_OBJECT

public:
    /// Prepares a run of these rules.
    explicit ScanRun(std::vector<Spec> rules);
    /// Forgets what still runs: its results are dropped. Waits a moment for its threads, never for ever.
    ~ScanRun() override;

    /// Starts every rule. `onResult` is called on this thread for each as it finishes, in the order of finishing.
    void start(const std::function<void(RuleResult)>& onResult);

    std::size_t ruleCount() const { return rules_.size(); }
    Tracker::Counts counts() const { return tracker_->counts(); }

private:
    std::vector<Spec> rules_;
    std::shared_ptr<Tracker> tracker_ = std::make_shared<Tracker>();
    std::unique_ptr<QThreadPool> threads_;
};

}  // namespace vesk
