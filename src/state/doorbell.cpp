#include "state/doorbell.h"

#include <QCoreApplication>
#include <QEvent>
#include <mutex>
#include <utility>

namespace vesk {

struct Doorbell::Button::Wire {
    std::mutex lock;
    Doorbell* bell = nullptr;
};

void Doorbell::Button::ring() const {
    const std::lock_guard guard(wire_->lock);
    if (wire_->bell != nullptr) {
        QCoreApplication::postEvent(wire_->bell, new QEvent(QEvent::User));
    }
}

Doorbell::Doorbell(std::function<void()> onRing) : onRing_(std::move(onRing)), wire_(std::make_shared<Button::Wire>()) {
    wire_->bell = this;
}

Doorbell::~Doorbell() {
    const std::lock_guard guard(wire_->lock);
    wire_->bell = nullptr;
}

bool Doorbell::event(QEvent* event) {
    if (event->type() != QEvent::User) {
        return QObject::event(event);
    }
    const std::function<void()> handler = onRing_;  // it stays though the doorbell may go
    handler();
    return true;
}

}  // namespace vesk
