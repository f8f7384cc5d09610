// One piece of work on a thread of its own, whose result comes back to the thread that started it. Store uses one for
// a clean or an undo: those must end in the books even when the program is asked to quit meanwhile, which `finish` is
// for. Used on one thread that runs Qt's event loop.
#pragma once

#include <QMetaObject>
#include <QObject>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace vesk {

template <typename Result>
class DetachedTask {
public:
    /// What the work is handed to tell of itself while it runs. Callable on the work's thread.
    class Control {
    public:
        /// Whether the work should end after the step it is at.
        bool stopRequested() const {
            const std::lock_guard guard(lock_);
            return stop_;
        }
        /// Keeps what is done so far: it becomes the result if the rest takes longer than anyone waits.
        void keep(Result soFar) {
            const std::lock_guard guard(lock_);
            result_ = std::move(soFar);
        }

    private:
        friend class DetachedTask;
        mutable std::mutex lock_;
        std::condition_variable ended_;
        bool stop_ = false;
        bool hasEnded_ = false;
        std::optional<Result> result_;
    };

    using Work = std::function<Result(Control&)>;
    using Done = std::function<void(Result)>;

    DetachedTask() = default;
    DetachedTask(const DetachedTask&) = delete;
    DetachedTask& operator=(const DetachedTask&) = delete;

    /// Starts the work; nothing else may be running. `done` is called with its result on this thread, from the event
    /// loop of `context`, which must outlive this object.
    void start(QObject* context, Work work, Done done) {
        control_ = std::make_shared<Control>();
        done_ = std::move(done);
        std::thread([this, context, control = control_, work = std::move(work)] {
            Result result = work(*control);
            const std::lock_guard guard(control->lock_);
            control->result_ = std::move(result);
            control->hasEnded_ = true;
            // Under the lock: whoever waits in `finish` goes on, and may take `context` away, only after this.
            if (!control->stop_) {
                QMetaObject::invokeMethod(
                    context, [this, control] { deliver(*control); }, Qt::QueuedConnection);
            }
            control->ended_.notify_all();
        }).detach();
    }

    /// Asks running work to stop and waits for it, though no longer than `patience`; then calls `done` with what was
    /// achieved. Does nothing when no work is running. Without any result in that time `done` is not called.
    void finish(std::chrono::milliseconds patience) {
        if (!control_) {
            return;
        }
        {
            std::unique_lock guard(control_->lock_);
            control_->stop_ = true;
            control_->ended_.wait_for(guard, patience, [this] { return control_->hasEnded_; });
        }
        deliver(*control_);
    }

private:
    void deliver(Control& control) {
        if (control_.get() != &control) {
            return;  // delivered already
        }
        const std::shared_ptr<Control> kept = std::exchange(control_, nullptr);
        std::optional<Result> result;
        {
            const std::lock_guard guard(kept->lock_);
            result = std::exchange(kept->result_, std::nullopt);
        }
        if (result) {
            std::exchange(done_, nullptr)(*std::move(result));
        }
    }

    std::shared_ptr<Control> control_;
    Done done_;
};

}  // namespace vesk
