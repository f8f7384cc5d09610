#include "ui/progress_figure.h"

#include <QAccessible>

#include "ui/item_interface.h"

namespace vesk {

namespace {

class ProgressInterface final : public ItemInterface, public QAccessibleValueInterface {
public:
    explicit ProgressInterface(ProgressFigure* figure) : ItemInterface(figure) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? figure()->said : QString();
    }
    QAccessible::Role role() const override { return QAccessible::ProgressBar; }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.readOnly = true;
        state.invisible = !figure()->isVisible();
        state.disabled = !figure()->isEnabled();
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
    }

    QVariant currentValue() const override { return figure()->value; }
    void setCurrentValue(const QVariant& /*value*/) override {}
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override { return 100; }
    QVariant minimumStepSize() const override { return 1; }

private:
    ProgressFigure* figure() const { return static_cast<ProgressFigure*>(object()); }
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
    auto* figure = qobject_cast<ProgressFigure*>(object);
    return figure != nullptr ? new ProgressInterface(figure) : nullptr;
}

}  // namespace

ProgressFigure::ProgressFigure(QQuickItem* parent) : QQuickItem(parent) {
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(installed)
}

}  // namespace vesk
