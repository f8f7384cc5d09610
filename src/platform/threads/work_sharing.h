// Work sharing: the calling thread and idle threads of the pool process items, each of which may add more (a walk over
// folders, say). Each thread works through its own items, newest first, so that few are queued; it takes a lock only to
// join in, to hand items over or when it runs out of them.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/threads/thread_pool.h"

namespace vesk {

/// `State` is private to each participating thread.
template <typename Item, typename State>
class WorkSharing {
public:
    /// One thread's share of the work.
    class Worker {
    public:
        Worker(WorkSharing& work, State& own) : state(own), work_(work) {}

        State& state;

        /// Adds an item, for this thread or another.
        void add(Item item) {
            items_.push_back(std::move(item));
            // A single item stays on this thread: a chain of items would otherwise bounce between two.
            if (items_.size() > 1) {
                offerItems();
            }
        }

        /// Hands some of this thread's items to an idle thread, if there is one. Call it now and then during a long
        /// item; it costs next to nothing while all threads are busy.
        void offerItems() {
            if (!items_.empty() && work_.sharing_ && work_.someoneIsIdle()) {
                work_.handOver(items_);
            }
        }

        /// Whether items are shared with other threads. At first they are not: a small job is done before another
        /// thread has woken.
        bool isSharing() const { return work_.sharing_; }

        /// Starts sharing. Calling it again does nothing.
        void startSharing() {
            // Until the first call there is only the calling thread, so this needs no lock.
            if (!work_.sharing_) {
                work_.sharing_ = true;
                offerItems();
            }
        }

    private:
        friend WorkSharing;

        void doItems() {
            while (!items_.empty()) {
                const Item item = std::move(items_.back());
                items_.pop_back();
                offerItems();
                work_.doItem_(item, *this);
            }
        }

        WorkSharing& work_;
        std::deque<Item> items_;
    };

    /// `makeState` is called once per participating thread, one call at a time; `doItem` on all threads concurrently.
    WorkSharing(std::function<State()> makeState, std::function<void(const Item&, Worker&)> doItem)
        : makeState_(std::move(makeState)), doItem_(std::move(doItem)) {}
    WorkSharing(const WorkSharing&) = delete;
    WorkSharing& operator=(const WorkSharing&) = delete;

    /// Processes this item and all that it leads to; returns when the last one is done. Call it once.
    void run(Item first) {
        Worker worker(*this, stateOfThisThread());
        worker.items_.push_back(std::move(first));
        for (;;) {
            worker.doItems();
            std::unique_lock lock(lock_);
            callerWaits_.store(true, std::memory_order_relaxed);
            changed_.wait(lock, [this] { return !handedOver_.empty() || otherThreads_ == 0; });
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

    bool someoneIsIdle() const { return callerWaits_.load(std::memory_order_relaxed) || hasIdleThread(); }

    // Hands over the older half, which most likely leads to the most work, unless the idle thread has found other work
    // meanwhile.
    void handOver(std::deque<Item>& items) {
        const std::lock_guard lock(lock_);
        if (callerWaits_.load(std::memory_order_relaxed)) {
            changed_.notify_one();
        } else if (runOnIdleThread([this] { takePart(); })) {
            ++otherThreads_;
        } else {
            return;
        }
        for (std::size_t half = (items.size() + 1) / 2; half > 0; --half) {
            handedOver_.push_back(std::move(items.front()));
            items.pop_front();
        }
    }

    // What a thread of the pool does. It last uses this object under the lock: `run` may return once that is free.
    void takePart() {
        Worker worker(*this, stateOfThisThread());
        for (;;) {
            {
                const std::lock_guard lock(lock_);
                if (handedOver_.empty()) {
                    --otherThreads_;
                    changed_.notify_one();
                    return;
                }
                takeInto(worker);
            }
            worker.doItems();
        }
    }

    void takeInto(Worker& worker) { worker.items_.swap(handedOver_); }

    const std::function<State()> makeState_;
    const std::function<void(const Item&, Worker&)> doItem_;

    bool sharing_ = false;
    std::atomic<bool> callerWaits_ = false;

    std::mutex lock_;
    std::condition_variable changed_;
    std::deque<Item> handedOver_;
    int otherThreads_ = 0;
    std::map<std::thread::id, State> states_;
};

}  // namespace vesk
