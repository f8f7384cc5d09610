// Base of the accessible interfaces for items that QML cannot describe fully in Qt 6.4. Main thread only.
#pragma once

#include <QAccessibleObject>
#include <QQuickItem>

namespace vesk {

/// An item without accessible children. Derived classes add its role and name.
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
