#include "state/use_guard.h"

#include <algorithm>
#include <utility>

#include "platform/date.h"

namespace vesk {

namespace {

// The pause after a look at all processes is twenty times the look's length, within these limits.
constexpr int shareOfTime = 20;
constexpr std::chrono::milliseconds shortestPause{10};
constexpr std::chrono::milliseconds longestPause{1000};

}  // namespace

void UseGuard::expect(std::span<const SeenItem> items, std::span<const SeenItem> next) {
    if (tools_.openWatch == nullptr) {
        return;
    }
    if (!isPrepared_) {
        prepareWatch(items);
    }
    tools_.openWatch->begin();
    lookAgain();  // shows what was opened before the watch began
    isPrepared_ = !next.empty();
    if (isPrepared_) {
        prepareWatch(next);  // after the look, which wants all cores
    }
}

void UseGuard::prepareWatch(std::span<const SeenItem> items) {
    std::vector<std::filesystem::path> paths;
    paths.reserve(items.size());
    for (const SeenItem& item : items) {
        paths.push_back(item.path);
    }
    tools_.openWatch->prepare(std::move(paths));
}

bool UseGuard::isInUse(const std::filesystem::path& item) {
    constexpr int mostLooks = 3;
    if (!open_ || Clock::now() >= next_) {
        lookAgain();
    }
    for (int looks = 1; isNoticed(item); ++looks) {
        if (looks == mostLooks) {
            return true;
        }
        lookAgain();
    }
    return open_->use(item);
}

void UseGuard::watch(const SeenItem& item, const TrashOutcome& outcome) {
    trashed_.push_back(outcome.place);
    if (!outcome.place.empty()) {
        watched_.push_back({outcome.place, item.path, {}, outcome.identity});
    }
    if (isNoticed(item.path)) {
        lookAgain();
    }
}

void UseGuard::finish() {
    if (!watched_.empty()) {
        lookAgain();
    }
}

bool UseGuard::isNoticed(const std::filesystem::path& item) const {
    return tools_.openWatch != nullptr && tools_.openWatch->noticed(item);
}

void UseGuard::lookAgain() {
    const Clock::time_point start = Clock::now();
    open_.emplace(tools_.lookAtUse());
    const Clock::time_point end = Clock::now();
    next_ = end + std::clamp<Clock::duration>((end - start) * shareOfTime, shortestPause, longestPause);
    restoreWhatIsInUse();
}

void UseGuard::restoreWhatIsInUse() {
    for (TrashedItem& item : std::exchange(watched_, {})) {
        item.cleaned = now();
        if (open_->use(item.place) && !tools_.restore(item)) {
            std::erase(trashed_, item.place);
            log_.noteRestored(item.place);
        }
    }
}

}  // namespace vesk
