// Makes the process a regular foreground application, where the platform needs to be told. Main thread only.
#pragma once

#include <functional>

class QQmlEngine;
class QUrl;
class QWindow;

namespace vesk {

class AppDelegate {
public:
    /// Once the application runs: gives it its Dock icon, and brings it to the front with focus even when it was
    /// started from a terminal or behind another application.
    void applicationDidFinishLaunching() const;

    /// Brings a window that is shown to the front, with the focus, as far as the desktop lets a program do that.
    void bringForward(QWindow& window) const;

    /// Lets the content of a window run beneath its title bar, for as long as the window lives. `setInset` is called
    /// with the height that the title bar takes at the top of the content, in points, now and whenever that changes (0
    /// in full screen); never where the window's frame stays apart from its content.
    void extendIntoTitleBar(QWindow& window, std::function<void(double)> setInset) const;

    /// Where an application outlives its last window, lets it do so: `reopen` is then called when the user comes back
    /// to it, also from the Dock, for as long as the window lives.
    void outliveWindow(QWindow& window, std::function<void()> reopen) const;

    /// Where menus stand at the top of the screen, makes them from `source`, for this window; the engine must outlive
    /// it.
    void offerMenus(QQmlEngine& engine, QWindow& window, const QUrl& source) const;
};

}  // namespace vesk
