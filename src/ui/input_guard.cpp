#include "ui/input_guard.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineF>
#include <QMouseEvent>
#include <QPointerEvent>
#include <QPointingDevice>
#include <QStyleHints>

#include "ui/pointer_state.h"

namespace vesk {

namespace {

// A hand that clicks twice moves a little. Farther away it is another click, however soon it comes.
constexpr double samePlace = 16;  // points
// Clicks that never stop are meant after all.
constexpr int mostIntervals = 3;

bool presses(int key) {
    switch (key) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
        case Qt::Key_Select:
        case Qt::Key_Escape:
            return true;
        default:
            return false;
    }
}

}  // namespace

InputGuard::InputGuard(QQuickItem* parent) : QQuickItem(parent) {
}

void InputGuard::setFront(const QString& front) {
    if (front == front_) {
        return;
    }
    front_ = front;
    sinceChange_.start();
    begunBefore_ = true;
    Q_EMIT frontChanged();
}

void InputGuard::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange) {
        if (watched_) {
            watched_->removeEventFilter(this);
        }
        watched_ = data.window;
        if (watched_) {
            watched_->installEventFilter(this);
        }
    }
    QQuickItem::itemChange(change, data);
}

bool InputGuard::eventFilter(QObject* watched, QEvent* event) {
    noteMouse(*event);
    switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            if (refusesKey(*static_cast<QKeyEvent*>(event))) {
                event->accept();
                return true;
            }
            break;
        case QEvent::FocusOut:
        case QEvent::WindowDeactivate:
            keysDown_.clear();  // their release is told elsewhere
            break;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::TouchBegin:
        case QEvent::TabletPress:
            refusing_ = refusesPress(*static_cast<QPointerEvent*>(event));
            event->setAccepted(refusing_ || event->isAccepted());
            return refusing_;
        case QEvent::MouseButtonRelease:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TabletRelease:
            if (refusing_) {
                refusing_ = event->type() == QEvent::TouchUpdate;
                event->accept();
                return true;
            }
            break;
        default:
            break;
    }
    return QQuickItem::eventFilter(watched, event);
}

void InputGuard::noteMouse(const QEvent& event) {
    if (event.type() != QEvent::MouseButtonPress && event.type() != QEvent::MouseButtonRelease) {
        return;
    }
    const auto& mouse = static_cast<const QMouseEvent&>(event);
    // A touch that nothing takes as such comes as a mouse, too.
    const bool isTouch = mouse.pointingDevice()->type() == QInputDevice::DeviceType::TouchScreen;
    PointerState::instance().setMouseDown(!isTouch && mouse.buttons() != Qt::NoButton);
}

bool InputGuard::refusesKey(const QKeyEvent& event) {
    if (!presses(event.key())) {
        return false;
    }
    if (event.isAutoRepeat()) {
        return true;
    }
    if (event.type() == QEvent::KeyRelease) {
        keysDown_.remove(event.key());
        released_.insert(event.key(), event.timestamp());
        return false;
    }
    if (isRepetition(event)) {
        return true;
    }
    keysDown_.insert(event.key());
    // Escape leads out of anything, also of what has not yet come to rest.
    return event.key() != Qt::Key_Escape && isSettling();
}

// Not every system says so of a press.
bool InputGuard::isRepetition(const QKeyEvent& press) const {
    if (keysDown_.contains(press.key())) {
        return true;
    }
    // X tells of each repetition as a release and a press at the same time, and Qt takes them for the user's own where
    // the second has not yet come when it looks at the first.
    const auto released = released_.constFind(press.key());
    return released != released_.constEnd() && *released == press.timestamp() &&
           QGuiApplication::platformName() == QLatin1String("xcb");
}

bool InputGuard::refusesPress(const QPointerEvent& event) {
    const QPointF place = event.points().isEmpty() ? QPointF() : event.points().constFirst().position();
    const int interval = QGuiApplication::styleHints()->mouseDoubleClickInterval();
    const bool follows = haveClicked_ && event.timestamp() - lastPress_ <= static_cast<quint64>(interval) &&
                         QLineF(place, lastPlace_).length() <= samePlace;
    if (!follows || sinceChange_.elapsed() > qint64{mostIntervals} * interval) {
        begunBefore_ = false;
    }
    haveClicked_ = true;
    lastPress_ = event.timestamp();
    lastPlace_ = place;
    if (isSettling()) {
        begunBefore_ = true;
        return true;
    }
    return begunBefore_;
}

}  // namespace vesk
