// Lets any thread call the thread that Store lives on. A ring carries nothing: what a thread has to say it leaves
// behind a lock of its own first, and the handler looks for it there.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

namespace vesk {

class Doorbell : public QObject {
public:
    /// What other threads hold; it may outlive the doorbell.
    class Button {
    public:
        /// Has the handler called soon, from the event loop of the doorbell's thread; does nothing once the doorbell
        /// is gone. Callable from any thread.
        void ring() const;

    private:
        friend class Doorbell;
        struct Wire;
        explicit Button(std::shared_ptr<Wire> wire) : wire_(std::move(wire)) {}
        std::shared_ptr<Wire> wire_;
    };

    /// The handler is called on this thread, once or more after a ring, and may destroy the doorbell.
    explicit Doorbell(std::function<void()> onRing);
    ~Doorbell() override;

    Button button() const { return Button(wire_); }

protected:
    bool event(QEvent* event) override;

private:
    std::function<void()> onRing_;
    std::shared_ptr<Button::Wire> wire_;
};

}  // namespace vesk
