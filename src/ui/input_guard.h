// Prevents unintended key presses and clicks in a window. A held key presses nothing while it repeats. After the layer
// in front has changed, as when a dialog opens or closes, the second click of a double click begun before that has no
// effect. An item in the window that it guards; main thread only.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QElapsedTimer>
#include <QHash>
#include <QPointF>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSet>
#include <QString>

class QInputEvent;
class QKeyEvent;
class QPointerEvent;

namespace vesk {

class InputGuard : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// A name for the layer in front. A new value means that the layer has changed.
    Q_PROPERTY(QString front READ front WRITE setFront NOTIFY frontChanged)
    /// How long the layer in front takes to appear, in milliseconds. Until then, no press has any effect.
    Q_PROPERTY(int settling MEMBER settling_ NOTIFY settlingChanged)

public:
    explicit InputGuard(QQuickItem* parent = nullptr);

    QString front() const { return front_; }
    void setFront(const QString& front);

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void frontChanged();
    void settlingChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    static void noteMouse(const QEvent& event);
    bool blocksKey(const QKeyEvent& event);
    bool isRepetition(const QKeyEvent& press) const;
    bool blocksPress(const QPointerEvent& event);
    bool isSettling() const { return sinceChange_.isValid() && sinceChange_.elapsed() < settling_; }

    QPointer<QQuickWindow> watched_;
    QString front_;
    int settling_ = 0;
    QElapsedTimer sinceChange_;

    QSet<int> keysDown_;
    QHash<int, quint64> released_;  // the timestamp of each key's last release
    // The last click, and whether the series of quick clicks at one place that it belongs to began before the layer in
    // front changed.
    bool haveClicked_ = false;
    quint64 lastPress_ = 0;  // milliseconds, as in event timestamps
    QPointF lastPlace_;
    bool begunBefore_ = false;
    // Whether the current press was blocked, so that its release is blocked too.
    bool isBlocking_ = false;
};

}  // namespace vesk
