// What the application asks of the platform's desktop: to be a regular foreground application, to come to the front, to
// use the title bar. Main thread only.
#pragma once

#include <functional>

class QQmlEngine;
class QUrl;
class QWindow;

namespace vesk {

class AppDelegate {
public:
    /// On macOS, gives the application its Dock icon and brings it to the front with the focus, even if it was started
    /// from a terminal or behind another application. On Linux, does nothing. Call it once the application is running.
    void applicationDidFinishLaunching() const;

    /// Brings a visible window to the front with the focus, as far as the desktop allows.
    void bringForward(QWindow& window) const;

    /// Extends a window's content beneath its title bar, for as long as the window lives. Calls `setInset` with the
    /// height of the title bar over the content, in points, now and whenever that changes (0 in full screen); never if
    /// the content cannot be extended.
    void extendIntoTitleBar(QWindow& window, std::function<void(double)> setInset) const;

    /// On macOS, lets the application outlive its last window: calls `reopen` when the user comes back to it, also from
    /// the Dock, for as long as the window lives.
    void outliveWindow(QWindow& window, std::function<void()> reopen) const;

    /// On macOS, makes the menus at the top of the screen from `source`, for this window; the engine must outlive it.
    void offerMenus(QQmlEngine& engine, QWindow& window, const QUrl& source) const;
};

}  // namespace vesk
