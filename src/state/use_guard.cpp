#include "state/use_guard.h"

#include <algorithm>
#include <utility>

#include "platform/date.h"

namespace vesk {

namespace {

// A look may take a twentieth of the time of a clean, but is never older than a second nor renewed for every item.
constexpr int shareOfTime = 20;
constexpr std::chrono::milliseconds shortestPause{10};
constexpr std::chrono::milliseconds longestPause{1000};

}  // namespace

bool UseGuard::isInUse(const std::filesystem::path& item) {
    if (!open_ || Clock::now() >= next_) {
        lookAgain();
    }
    return open_->use(item);
}

void UseGuard::watch(const SeenItem& item, const TrashOutcome& outcome) {
    trashed_.push_back(outcome.place);
    if (!outcome.place.empty()) {
        watched_.push_back({outcome.place, item.path, {}, outcome.identity});
    }
}

void UseGuard::finish() {
    if (!watched_.empty()) {
        lookAgain();
    }
}

void UseGuard::lookAgain() {
    const Clock::time_point start = Clock::now();
    open_.emplace(tools_.lookAtUse());
    const Clock::time_point end = Clock::now();
    next_ = end + std::clamp<Clock::duration>((end - start) * shareOfTime, shortestPause, longestPause);
    putBackWhatIsInUse();
}

void UseGuard::putBackWhatIsInUse() {
    for (TrashedItem& item : std::exchange(watched_, {})) {
        item.cleaned = now();
        if (open_->use(item.place) && !tools_.putBack(item)) {
            std::erase(trashed_, item.place);
            log_.takeBack(item.place);
        }
    }
}

}  // namespace vesk
