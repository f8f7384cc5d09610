// Qt's menu bar at the top of the screen, by its documentation: what is in it can be looked at, nothing is shown.
import QtQml

QtObject {
    property var window: null
    default property list<QtObject> menus
}
