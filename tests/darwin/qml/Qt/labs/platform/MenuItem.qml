import QtQml

QtObject {
    enum MenuRole { NoRole, TextHeuristicRole, ApplicationSpecificRole, AboutQtRole, AboutRole, PreferencesRole, QuitRole }

    property string text
    property var shortcut
    property bool enabled: true
    property int role: MenuItem.TextHeuristicRole
    signal triggered()
}
