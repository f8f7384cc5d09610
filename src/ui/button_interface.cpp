#include "ui/button_interface.h"

#include <QAccessibleActionInterface>
#include <QQuickWindow>

#include "ui/item_interface.h"

namespace vesk {

namespace {

class ButtonInterface final : public ItemInterface, public QAccessibleActionInterface {
public:
    explicit ButtonInterface(QQuickItem* button) : ItemInterface(button) {}

    QString text(QAccessible::Text kind) const override {
        switch (kind) {
            case QAccessible::Name:
                return item().property("text").toString();
            case QAccessible::Description:
                return isAvailable() ? item().property("hint").toString() : QStringLiteral("Not available now");
            default:
                return {};
        }
    }
    QAccessible::Role role() const override { return QAccessible::Button; }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.disabled = !isAvailable();
        state.focusable = isAvailable();
        state.focused = item().hasActiveFocus();
        state.invisible = item().window() == nullptr || !item().window()->isVisible() || !item().isVisible();
        state.pressed = item().property("down").toBool();
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }

    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString& name) override {
        if (name == pressAction()) {
            QMetaObject::invokeMethod(&item(), "pressFromOutside");
        } else if (name == setFocusAction()) {
            item().forceActiveFocus();
        }
    }
    QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

private:
    bool isAvailable() const { return item().property("available").toBool(); }
};

QAccessibleInterface* makeButtonInterface(const QString& /*className*/, QObject* object) {
    auto* button = qobject_cast<QQuickItem*>(object);
    if (button == nullptr || !button->property("standsAlone").toBool()) {
        return nullptr;
    }
    new ButtonChanges(button);
    return new ButtonInterface(button);
}

}  // namespace

ButtonChanges::ButtonChanges(QObject* button) : QObject(button) {
    connect(button, SIGNAL(availableChanged()), this, SLOT(tell()));
}

void ButtonChanges::tell() {
    QAccessible::State changed;
    changed.disabled = true;
    QAccessibleStateChangeEvent event(parent(), changed);
    QAccessible::updateAccessibility(&event);
}

void tellOfButtons() {
    static const bool installed = [] {
        QAccessible::installFactory(makeButtonInterface);
        return true;
    }();
    Q_UNUSED(installed)
}

}  // namespace vesk
