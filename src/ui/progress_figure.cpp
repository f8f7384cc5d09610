#include "ui/progress_figure.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QQuickWindow>

namespace vesk {

namespace {

class ProgressInterface final : public QAccessibleObject, public QAccessibleValueInterface {
public:
    explicit ProgressInterface(ProgressFigure* figure) : QAccessibleObject(figure) {}

    QWindow* window() const override { return figure()->window(); }
    // The nearest item around it that is told of at all; the window itself around all of them.
    QAccessibleInterface* parent() const override {
        const QQuickItem* outermost = figure()->window() != nullptr ? figure()->window()->contentItem() : nullptr;
        for (QQuickItem* item = figure()->parentItem(); item != nullptr && item != outermost;
             item = item->parentItem()) {
            if (QAccessibleInterface* around = QAccessible::queryAccessibleInterface(item)) {
                return around;
            }
        }
        return QAccessible::queryAccessibleInterface(figure()->window());
    }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

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
    QRect rect() const override {
        const QQuickItem& item = *figure();
        if (item.window() == nullptr) {
            return {};
        }
        const QRectF inScene = item.mapRectToScene(item.boundingRect());
        return inScene.toRect().translated(item.window()->mapToGlobal(QPoint(0, 0)));
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
