// Keeps a window's keys and clicks from meaning what nobody meant. A key that repeats by itself presses nothing; and
// when what the window shows has just changed, as a dialog comes or goes, it takes no press that was begun before that
// or that is the second click of a double click begun before it. An item of the window that it guards; main thread.
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
    /// What is in front, under any name. A new value begins a new time of showing.
    Q_PROPERTY(QString front READ front WRITE setFront NOTIFY frontChanged)
    /// Milliseconds that what is in front needs until it is wholly shown, and in which it takes no press at all.
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
    bool refusesKey(const QKeyEvent& event);
    bool isRepetition(const QKeyEvent& press) const;
    bool refusesPress(const QPointerEvent& event);
    bool isSettling() const { return sinceChange_.isValid() && sinceChange_.elapsed() < settling_; }

    QPointer<QQuickWindow> watched_;
    QString front_;
    int settling_ = 0;
    QElapsedTimer sinceChange_;

    QSet<int> keysDown_;
    QHash<int, quint64> released_;  // when each key was last let go, as far as is known
    // Of clicks one soon after the other at one place: the last one, and whether the first fell on what is in front
    // now.
    bool haveClicked_ = false;
    quint64 lastPress_ = 0;  // milliseconds of the system's own count
    QPointF lastPlace_;
    bool begunBefore_ = false;
    // Whether the press under way was refused, so that its end is, too.
    bool refusing_ = false;
};

}  // namespace vesk
