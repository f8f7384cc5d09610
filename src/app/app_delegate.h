// What the application asks of the platform's desktop: to be a regular foreground application, to come to the front, to
// use the title bar. Main thread only.
#pragma once

class QWindow;

namespace vesk {

class AppDelegate {
public:
    /// On macOS, gives the application its Dock icon and a menu with "About Vesk", and brings it to the front with the
    /// focus, even if it was started from a terminal or behind another application. On Linux, does nothing. Call it
    /// once the application is running.
    void applicationDidFinishLaunching() const;

    /// Brings a visible window to the front with the focus, as far as the desktop allows.
    void bringForward(QWindow& window) const;

    /// Extends a window's content beneath its title bar. Returns the title bar's height; 0 if the content cannot be
    /// extended.
    double extendIntoTitleBar(QWindow& window) const;
};

}  // namespace vesk
