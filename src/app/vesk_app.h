// The application: one store, one window. Created once the QGuiApplication exists; main thread only.
#pragma once

#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include "app/app_delegate.h"
#include "state/store.h"

namespace vesk {

class VeskApp {
public:
    explicit VeskApp(Store::Sources sources = Store::Sources());
    ~VeskApp();
    VeskApp(const VeskApp&) = delete;
    VeskApp& operator=(const VeskApp&) = delete;

    /// Creates and shows the window. On failure returns false, and prints why on standard error.
    bool show();

    /// Brings the window to the front with the focus, even if it is minimised. Call it once the window is shown.
    void comeForward();

    /// Scales all type: 1 as designed, 2 twice as large. Call it once the window is shown.
    void setTextScale(double scale);

    Store& store() { return store_; }
    /// The window; null until it is shown.
    QQuickWindow* window() const { return window_; }

private:
    Store store_;
    AppDelegate delegate_;
    QQmlApplicationEngine engine_;
    QQuickWindow* window_ = nullptr;
};

}  // namespace vesk
