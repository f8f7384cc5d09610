// Work that comes in items, where doing one may bring up more: a walk over folders, say. The calling thread does it,
// and free helpers take items off it. Each thread works through items of its own, the newest first, so that few wait;
// a lock is taken only when one thread hands an item to another.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/threads/helpers.h"

namespace vesk {

/// `State` is what a thread that takes part has to itself.
template <typename Item, typename State>
class DividedWork {
public:
    /// One thread's part in the work.
    class Worker {
    public:
        Worker(DividedWork& work, State& own) : state(own), work_(work) {}

        State& state;

        /// Adds an item, to be done by this thread or another.
        void add(Item item) {
            items_.push_back(std::move(item));
            // A single one is for this thread itself: work that is a chain would else go to and fro between two.
            if (items_.size() > 1) {
                giveIfWanted();
            }
        }

        /// Hands items of this thread to others that have none. For an item that takes long, to be called in between;
        /// costs next to nothing when all are busy.
        void giveIfWanted() {
            if (!items_.empty() && work_.shared_ && work_.someoneIsFree()) {
                work_.give(items_);
            }
        }

        /// Whether helpers are called. At first they are not: little work is done before one has woken.
        bool shared() const { return work_.shared_; }

        /// From here on they are. Does nothing when called again.
        void share() {
            // Until the first call there is only the calling thread, so this needs no lock.
            if (!work_.shared_) {
                work_.shared_ = true;
                giveIfWanted();
            }
        }

    private:
        friend DividedWork;

        void workOff() {
            while (!items_.empty()) {
                const Item item = std::move(items_.back());
                items_.pop_back();
                giveIfWanted();
                work_.doItem_(item, *this);
            }
        }

        DividedWork& work_;
        std::deque<Item> items_;
    };

    /// `makeState` is called once for each thread that takes part, one call at a time; `doItem` on all of them at once.
    DividedWork(std::function<State()> makeState, std::function<void(const Item&, Worker&)> doItem)
        : makeState_(std::move(makeState)), doItem_(std::move(doItem)) {}
    DividedWork(const DividedWork&) = delete;
    DividedWork& operator=(const DividedWork&) = delete;

    /// Does this item and all that come of it; returns when the last is done. To be called once.
    void run(Item first) {
        Worker worker(*this, stateOfThisThread());
        worker.items_.push_back(std::move(first));
        for (;;) {
            worker.workOff();
            std::unique_lock lock(lock_);
            callerWaits_.store(true, std::memory_order_relaxed);
            changed_.wait(lock, [this] { return !handedOver_.empty() || helping_ == 0; });
            callerWaits_.store(false, std::memory_order_relaxed);
            if (handedOver_.empty()) {
                return;
            }
            takeInto(worker);
        }
    }

private:
    State& stateOfThisThread() {
        const std::lock_guard lock(lock_);
        const auto own = states_.find(std::this_thread::get_id());
        return own != states_.end() ? own->second
                                    : states_.emplace(std::this_thread::get_id(), makeState_()).first->second;
    }

    bool someoneIsFree() const { return callerWaits_.load(std::memory_order_relaxed) || aHelperIsFree(); }

    // Hands over the older half, which most likely has the most work behind it, unless whoever was free has found other
    // work meanwhile.
    void give(std::deque<Item>& items) {
        const std::lock_guard lock(lock_);
        if (callerWaits_.load(std::memory_order_relaxed)) {
            changed_.notify_one();
        } else if (callHelper([this] { help(); })) {
            ++helping_;
        } else {
            return;
        }
        for (std::size_t half = (items.size() + 1) / 2; half > 0; --half) {
            handedOver_.push_back(std::move(items.front()));
            items.pop_front();
        }
    }

    // A helper's part. The last use of this object is under the lock: `run` may return as soon as that is free.
    void help() {
        Worker worker(*this, stateOfThisThread());
        for (;;) {
            {
                const std::lock_guard lock(lock_);
                if (handedOver_.empty()) {
                    --helping_;
                    changed_.notify_one();
                    return;
                }
                takeInto(worker);
            }
            worker.workOff();
        }
    }

    void takeInto(Worker& worker) { worker.items_.swap(handedOver_); }

    const std::function<State()> makeState_;
    const std::function<void(const Item&, Worker&)> doItem_;

    bool shared_ = false;
    std::atomic<bool> callerWaits_ = false;

    std::mutex lock_;
    std::condition_variable changed_;
    std::deque<Item> handedOver_;
    int helping_ = 0;
    std::map<std::thread::id, State> states_;
};

}  // namespace vesk
