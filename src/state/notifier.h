// Lets any thread have a function called on the main thread. A notification carries no data: the thread first stores
// its result under a lock, and the handler fetches it from there.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

namespace vesk {

class MainThreadNotifier : public QObject {
public:
    /// For other threads to hold; may outlive the notifier.
    class Handle {
    public:
        /// Schedules a call of the handler from the event loop of the notifier's thread. Does nothing if the notifier
        /// is gone. Callable from any thread.
        void notify() const;

    private:
        friend class MainThreadNotifier;
        struct Link;
        explicit Handle(std::shared_ptr<Link> link) : link_(std::move(link)) {}
        std::shared_ptr<Link> link_;
    };

    /// The handler is called on this thread, at least once after each notification, and may destroy the notifier.
    explicit MainThreadNotifier(std::function<void()> handler);
    ~MainThreadNotifier() override;

    Handle handle() const { return Handle(link_); }

protected:
    bool event(QEvent* event) override;

private:
    std::function<void()> handler_;
    std::shared_ptr<Handle::Link> link_;
};

}  // namespace vesk
