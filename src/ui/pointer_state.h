// Whether a mouse button is down in the window, for views: lists scroll by wheel and touch, but not by dragging with
// the mouse, and before Qt 6.9 a Flickable cannot tell mouse and touch apart. InputGuard updates it. Lives on the main
// thread.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QJSEngine>
#include <QObject>
#include <QQmlEngine>

namespace vesk {

class PointerState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool mouseDown READ mouseDown NOTIFY mouseDownChanged)

public:
    /// The one instance of the process, shared by all QML engines.
    static PointerState& instance();
    static PointerState* create(QQmlEngine* engine, QJSEngine* scripts);

    bool mouseDown() const { return mouseDown_; }
    void setMouseDown(bool down);

Q_SIGNALS:
    void mouseDownChanged();

private:
    PointerState() = default;

    bool mouseDown_ = false;
};

}  // namespace vesk
