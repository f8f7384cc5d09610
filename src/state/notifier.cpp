#include "state/notifier.h"

#include <QCoreApplication>
#include <QEvent>
#include <mutex>
#include <utility>

namespace vesk {

struct MainThreadNotifier::Handle::Link {
    std::mutex lock;
    MainThreadNotifier* notifier = nullptr;
};

void MainThreadNotifier::Handle::notify() const {
    const std::lock_guard guard(link_->lock);
    if (link_->notifier != nullptr) {
        QCoreApplication::postEvent(link_->notifier, new QEvent(QEvent::User));
    }
}

MainThreadNotifier::MainThreadNotifier(std::function<void()> handler)
    : handler_(std::move(handler)), link_(std::make_shared<Handle::Link>()) {
    link_->notifier = this;
}

MainThreadNotifier::~MainThreadNotifier() {
    const std::lock_guard guard(link_->lock);
    link_->notifier = nullptr;
}

bool MainThreadNotifier::event(QEvent* event) {
    if (event->type() != QEvent::User) {
        return QObject::event(event);
    }
    const std::function<void()> handler = handler_;  // the call may destroy the notifier
    handler();
    return true;
}

}  // namespace vesk
