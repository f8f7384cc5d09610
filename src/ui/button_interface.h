// Makes buttons accessible with their disabled state, for which QML has no property in Qt 6.4. Main thread only.
#pragma once

#include <QObject>

namespace vesk {

/// Installs an accessible interface for buttons whose `standsAlone` is true. They must have the properties `text`,
/// `hint` and `available`, and a function `pressFromOutside`.
void tellOfButtons();

/// Reports changes of a button's disabled state to assistive technology.
class ButtonChanges : public QObject {
    Q_OBJECT

public:
    /// Owned by `button`.
    explicit ButtonChanges(QObject* button);

public Q_SLOTS:
    void tell();
};

}  // namespace vesk
