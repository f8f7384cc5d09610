#include "ui/item_interface.h"

#include <QQuickWindow>

namespace vesk {

QWindow* ItemInterface::window() const {
    return item().window();
}

// The nearest item around it that is told of at all; the window itself around all of them.
QAccessibleInterface* ItemInterface::parent() const {
    const QQuickItem* outermost = item().window() != nullptr ? item().window()->contentItem() : nullptr;
    for (QQuickItem* around = item().parentItem(); around != nullptr && around != outermost;
         around = around->parentItem()) {
        if (QAccessibleInterface* found = QAccessible::queryAccessibleInterface(around)) {
            return found;
        }
    }
    return QAccessible::queryAccessibleInterface(item().window());
}

QRect ItemInterface::rect() const {
    if (item().window() == nullptr) {
        return {};
    }
    const QRectF inScene = item().mapRectToScene(item().boundingRect());
    return inScene.toRect().translated(item().window()->mapToGlobal(QPoint(0, 0)));
}

}  // namespace vesk
