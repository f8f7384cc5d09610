// Runs a function on a new thread and delivers its result to the thread that started it. Used by Store for a clean and
// an undo, by History for loading and saving, and by the history's details for their report. `finish` is for a program
// that is quitting: a clean must be recorded first. Used on one thread, which runs Qt's event loop.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "state/notifier.h"

namespace vesk {

template <typename Result>
class DetachedTask {
public:
    /// Passed to the work, for use on its thread.
    class Control {
    public:
        /// Whether the work should end after the current step.
        bool stopRequested() const {
            const std::lock_guard guard(lock_);
            return stop_;
        }

    private:
        friend class DetachedTask;

        bool hasEnded() const {
            const std::lock_guard guard(lock_);
            return hasEnded_;
        }
        std::optional<Result> take() {
            const std::lock_guard guard(lock_);
            return std::exchange(result_, std::nullopt);
        }

        mutable std::mutex lock_;
        std::condition_variable ended_;
        bool stop_ = false;
        bool hasEnded_ = false;
        std::optional<Result> result_;
    };

    using Work = std::function<Result(Control&)>;
    using Done = std::function<void(Result)>;

    DetachedTask() = default;
    /// Asks running work to stop, but does not wait for it; its result is dropped.
    ~DetachedTask() {
        if (control_) {
            const std::lock_guard guard(control_->lock_);
            control_->stop_ = true;
        }
    }
    DetachedTask(const DetachedTask&) = delete;
    DetachedTask& operator=(const DetachedTask&) = delete;

    /// Starts the work; no other may be running. Calls `done` with its result from this thread's event loop; `done` may
    /// destroy this object. Returns false, having started nothing, if the system allows no more threads.
    [[nodiscard]] bool start(Work work, Done done) {
        const auto control = std::make_shared<Control>();
        try {
            run(control, std::move(work));
        } catch (const std::system_error&) {
            return false;
        }
        control_ = control;
        done_ = std::move(done);
        return true;
    }

    bool isRunning() const { return control_ != nullptr; }

    /// Asks running work to stop, waits for it at most `patience`, then calls `done` with its result. If the work takes
    /// longer, its result is dropped and `done` is not called. Does nothing if no work is running.
    void finish(std::chrono::milliseconds patience) {
        if (!control_) {
            return;
        }
        {
            std::unique_lock guard(control_->lock_);
            control_->stop_ = true;
            control_->ended_.wait_for(guard, patience, [this] { return control_->hasEnded_; });
        }
        deliver();
    }

private:
    void run(const std::shared_ptr<Control>& control, Work work) {
        std::thread([notifier = notifier_.handle(), control, work = std::move(work)] {
            Result result = work(*control);
            {
                const std::lock_guard guard(control->lock_);
                control->result_ = std::move(result);
                control->hasEnded_ = true;
            }
            control->ended_.notify_all();
            notifier.notify();
        }).detach();
    }

    // A notification may arrive late, after `finish` has already taken the result and while the next work runs.
    void deliverIfEnded() {
        if (control_ && control_->hasEnded()) {
            deliver();
        }
    }

    void deliver() {
        const std::shared_ptr<Control> control = std::exchange(control_, nullptr);
        const Done done = std::exchange(done_, nullptr);
        if (std::optional<Result> result = control->take()) {
            done(*std::move(result));
        }
    }

    MainThreadNotifier notifier_{[this] { deliverIfEnded(); }};
    std::shared_ptr<Control> control_;
    Done done_;
};

}  // namespace vesk
