#include "state/use_guard.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/date.h"

namespace vesk {

namespace {

// The pause after a look at all processes is forty times the look's length, within these limits.
constexpr int shareOfTime = 40;
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
    // A look shows what was opened before the watch began.
    const Clock::time_point since = tools_.openWatch->begin();
    if (!open_ || looked_ < since) {
        lookAgain();
    }
    isPrepared_ = !next.empty();
    if (isPrepared_) {
        prepareWatch(next);  // after a look, which wants all cores
    }
}

void UseGuard::prepareWatch(std::span<const SeenItem> items) {
    std::vector<std::string> paths;
    paths.reserve(items.size());
    for (const SeenItem& item : items) {
        paths.push_back(item.path.native());
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
    if (!outcome.place.empty()) {
        moved_.push_back({outcome.place, item.path, {}, outcome.identity});
    }
    if (isNoticed(item.path)) {
        lookAgain();
    }
}

void UseGuard::finish() {
    if (checked_ != std::ssize(moved_)) {
        lookAgain();
    }
}

std::vector<std::filesystem::path> UseGuard::trashed() const {
    std::vector<std::filesystem::path> places;
    places.reserve(moved_.size());
    for (const TrashedItem& item : moved_) {
        places.push_back(item.place);
    }
    return places;
}

bool UseGuard::isNoticed(const std::filesystem::path& item) const {
    return tools_.openWatch != nullptr && tools_.openWatch->noticed(item);
}

void UseGuard::lookAgain() {
    looked_ = Clock::now();
    open_.emplace(tools_.lookAtUse());
    const Clock::time_point end = Clock::now();
    next_ = end + std::clamp<Clock::duration>((end - looked_) * shareOfTime, shortestPause, longestPause);
    restoreWhatIsInUse();
}

void UseGuard::restoreWhatIsInUse() {
    const auto isRestored = [this](const TrashedItem& item) {
        if (!open_->use(item.place) || tools_.restore({item.place, item.original, now(), item.identity})) {
            return false;
        }
        log_.noteRestored(item.place);
        return true;
    };
    moved_.erase(std::remove_if(moved_.begin() + checked_, moved_.end(), isRestored), moved_.end());
    checked_ = std::ssize(moved_);
}

}  // namespace vesk
