// The user's setting for reduced motion, for views. Lives on the main thread.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QJSEngine>
#include <QObject>
#include <QQmlEngine>

namespace vesk {

class Motion : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// If true, views change at once: no springs, no spinner, no confetti. Read from the platform at first use.
    Q_PROPERTY(bool reduced READ reduced WRITE setReduced NOTIFY reducedChanged)

public:
    /// The one instance of the process, shared by all QML engines.
    static Motion& instance();
    static Motion* create(QQmlEngine* engine, QJSEngine* scripts);

    bool reduced() const { return reduced_; }
    void setReduced(bool reduced);

Q_SIGNALS:
    void reducedChanged();

private:
    Motion();

    bool reduced_ = false;
};

}  // namespace vesk
