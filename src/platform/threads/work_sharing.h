// Work sharing: the calling thread and idle threads of the pool process items, each of which may add more (a walk over
// folders, say). Each thread works through its own items, newest first, so that few are queued; it takes a lock only to
// join in, to hand items over or when it runs out of them.
#pragma once

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstddef>
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

        /// Hands items of this thread to an idle one, and checks whether the thread waits for the disk. A long item
        /// calls it now and then; if all threads are busy, it costs little more than reading the clock.
        void offerItems() {
            watch_.look();
            if (!work_.sharing_ && watch_.hasWaited()) {
                work_.sharing_ = true;
            }
            if (!items_.empty() && work_.sharing_ && work_.someoneIsIdle()) {
                work_.handOver(items_);
            }
        }

        /// Whether a thread is idle and this one has no items for it: a long item may then add a part of itself.
        bool lacksItems() const { return items_.empty() && work_.sharing_ && work_.someoneIsIdle(); }

        /// Adds an item that goes to an idle thread at once, where there is one.
        void addForOthers(Item item) {
            items_.push_back(std::move(item));
            offerItems();
        }

        /// Whether items go to other threads. At first they do not: a little work is finished before another thread has
        /// woken, unless it has to wait for the disk.
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

        // Processes all items, unless the thread may leave and should.
        void doItems(bool mayLeave) {
            while (!items_.empty() && !(mayLeave && tooManyThreadsAtWork())) {
                const Item item = std::move(items_.back());
                items_.pop_back();
                offerItems();
                work_.doItem_(item, *this);
            }
        }

        WorkSharing& work_;
        std::deque<Item> items_;
        DiskWatch watch_;
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
            worker.doItems(false);
            std::unique_lock lock(lock_);
            callerWaits_.store(true, std::memory_order_relaxed);
            changed_.wait(lock, [this] { return !handedOver_.empty() || otherThreads_ == 0; });
            callerWaits_.store(false, std::memory_order_relaxed);
            if (handedOver_.empty()) {
                return;
            }
            takeInto(worker);
            lock.unlock();
            worker.watch_.restart();
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
            ++comingThreads_;
        } else {
            return;
        }
        move((items.size() + 1) / 2, items, handedOver_);
    }

    // What a thread of the pool does. It last uses this object under the lock: `run` may return once that is free.
    void takePart() {
        Worker worker(*this, stateOfThisThread());
        for (bool coming = true;; coming = false) {
            {
                const std::lock_guard lock(lock_);
                comingThreads_ -= coming ? 1 : 0;
                // Other threads process what it leaves.
                move(worker.items_.size(), worker.items_, handedOver_);
                if (handedOver_.empty() || (!coming && tooManyThreadsAtWork())) {
                    --otherThreads_;
                    changed_.notify_one();
                    return;
                }
                takeInto(worker);
            }
            worker.doItems(true);
        }
    }

    // Leaves a share for each thread that is on its way.
    void takeInto(Worker& worker) {
        const std::size_t takers = static_cast<std::size_t>(comingThreads_) + 1;
        move((handedOver_.size() + takers - 1) / takers, handedOver_, worker.items_);
    }

    static void move(std::size_t count, std::deque<Item>& from, std::deque<Item>& to) {
        for (; count > 0; --count) {
            to.push_back(std::move(from.front()));
            from.pop_front();
        }
    }

    const std::function<State()> makeState_;
    const std::function<void(const Item&, Worker&)> doItem_;

    bool sharing_ = false;
    std::atomic<bool> callerWaits_ = false;

    std::mutex lock_;
    std::condition_variable changed_;
    std::deque<Item> handedOver_;
    int otherThreads_ = 0;
    int comingThreads_ = 0;
    std::map<std::thread::id, State> states_;
};

/// Processes the numbers from 0 to `count`, in batches of [first, last), on all cores. `makeState` is called as by
/// WorkSharing, `visit` on all threads concurrently.
template <typename State>
void shareBatches(std::size_t count, std::size_t size, std::function<State()> makeState,
                  const std::function<void(std::size_t first, std::size_t last, State& state)>& visit) {
    using Work = WorkSharing<std::size_t, State>;
    Work work(std::move(makeState), [&](const std::size_t& first, typename Work::Worker& worker) {
        if (first < count) {
            visit(first, std::min(first + size, count), worker.state);
            worker.offerItems();
            return;
        }
        for (std::size_t batch = 0; batch < count; batch += size) {
            worker.add(batch);
        }
        worker.startSharing();
    });
    work.run(count);
}

}  // namespace vesk
