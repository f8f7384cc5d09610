// Whether a mouse button is down somewhere in the window, as views ask for it: lists scroll by wheel and by touch, and
// a mouse that drags does not move them. (A Flickable of Qt before 6.9 cannot tell the two apart.) InputGuard keeps it
// up to date. Lives on the main thread.
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
