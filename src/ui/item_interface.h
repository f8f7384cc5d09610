// What assistive technology is told of an item whose QML cannot say all of it in the Qt version at hand. Main thread.
#pragma once

#include <QAccessibleObject>
#include <QQuickItem>

namespace vesk {

/// An item without anything accessible inside. What it is and what it is called is for those that derive from it.
class ItemInterface : public QAccessibleObject {
public:
    explicit ItemInterface(QQuickItem* item) : QAccessibleObject(item) {}

    QWindow* window() const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    QRect rect() const override;

protected:
    QQuickItem& item() const { return *static_cast<QQuickItem*>(object()); }
};

}  // namespace vesk
