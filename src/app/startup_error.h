// Why Vesk does not start, and the window that says so. Main thread.
#pragma once

#include <QQmlApplicationEngine>
#include <QQuickWindow>

namespace vesk {

/// A heading without a full stop, and whole sentences.
struct StartupError {
    const char* title;
    const char* message;
};

namespace startupErrors {

inline constexpr StartupError homeUnknown = {
    "Vesk can't find your home folder",
    "Your account doesn't say where your home folder is, so Vesk has nothing to scan."};
inline constexpr StartupError homeIsWholeDisk = {
    "Vesk doesn't scan a whole disk",
    "Your home folder is set to \"/\". Vesk scans only a home folder, never a whole disk."};
inline constexpr StartupError homeIsAnothers = {
    "Vesk cleans only your own home",
    "Your home folder is set to one that belongs to another account, which couldn't open what Vesk creates there."};
inline constexpr StartupError firstIsSilent = {"Vesk is already open",
                                               "But it isn't responding. Quit it, then open Vesk again."};

}  // namespace startupErrors

/// Loads a window that replaces the application's; the engine owns it. Null, with a warning from Qt, if that fails. The
/// window shows itself, and quits the application when it is closed.
QQuickWindow* loadStartupError(QQmlApplicationEngine& engine, const StartupError& error);

}  // namespace vesk
