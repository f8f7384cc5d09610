// Makes the process a regular foreground application, where the platform needs to be told. Main thread only.
#pragma once

class QWindow;

namespace vesk {

class AppDelegate {
public:
    /// Once the application runs: gives it its Dock icon and a menu with "About Vesk", and brings it to the front with
    /// focus even when it was started from a terminal or behind another application.
    void applicationDidFinishLaunching() const;

    /// Brings a window that is shown to the front, with the focus, as far as the desktop lets a program do that.
    void bringForward(QWindow& window) const;

    /// Lets the content of a window run beneath its title bar. Returns the title bar's height; 0 where the window's
    /// frame stays apart from its content.
    double extendIntoTitleBar(QWindow& window) const;
};

}  // namespace vesk
