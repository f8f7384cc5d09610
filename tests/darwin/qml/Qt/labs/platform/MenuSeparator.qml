import QtQml

QtObject {
    readonly property bool separator: true
}
