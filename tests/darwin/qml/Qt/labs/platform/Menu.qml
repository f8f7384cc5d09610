import QtQml

QtObject {
    property string title
    default property list<QtObject> items
}
