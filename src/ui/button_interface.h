// Tells assistive technology of buttons, and whether they can be used: items of QML have no accessible state for that
// in Qt 6.4. Main thread.
#pragma once

#include <QObject>

namespace vesk {

/// From now on, buttons that say `standsAlone` are told of with their state. They have the properties `text`, `hint`
/// and `available`, and a function `pressFromOutside`.
void tellOfButtons();

/// Tells of a button's changes.
class ButtonChanges : public QObject {
    Q_OBJECT

public:
    /// Lives as long as `button`.
    explicit ButtonChanges(QObject* button);

public Q_SLOTS:
    void tell();
};

}  // namespace vesk
