// The menus at the top of the screen, where the system has a place for them (macOS). The application's own one holds
// "About" by its role; the system adds the rest of it.
import QtQuick
import QtQuick.Window
import Qt.labs.platform

MenuBar {
    id: menus

    /// The application's window; the menus outlive it while it is closed.
    required property var target
    /// What describes the application: an action.
    property var about: null

    Menu {
        title: "File"
        MenuItem {
            text: "About Vesk"
            role: MenuItem.AboutRole
            onTriggered: menus.about.trigger()
        }
        MenuItem {
            text: "Close"
            shortcut: StandardKey.Close
            onTriggered: menus.target.close()
        }
    }
    // Nothing in the window can be written into; the menu is where people look for these.
    Menu {
        title: "Edit"
        MenuItem { text: "Undo"; shortcut: StandardKey.Undo; enabled: false }
        MenuItem { text: "Redo"; shortcut: StandardKey.Redo; enabled: false }
        MenuSeparator {}
        MenuItem { text: "Cut"; shortcut: StandardKey.Cut; enabled: false }
        MenuItem { text: "Copy"; shortcut: StandardKey.Copy; enabled: false }
        MenuItem { text: "Paste"; shortcut: StandardKey.Paste; enabled: false }
        MenuItem { text: "Select All"; shortcut: StandardKey.SelectAll; enabled: false }
    }
    Menu {
        title: "Window"
        MenuItem {
            text: "Minimize"
            shortcut: "Ctrl+M"  // the command key, there
            onTriggered: menus.target.showMinimized()
        }
        MenuItem {
            text: "Zoom"
            onTriggered: menus.target.visibility === Window.Maximized ? menus.target.showNormal()
                                                                      : menus.target.showMaximized()
        }
    }
}
