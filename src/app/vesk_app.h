// The application: the one store, the one window. Made by main once the QGuiApplication exists; main thread only.
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

    /// Makes the window and shows it. Returns false, and says why on standard error, when that fails.
    bool show();

    /// Brings the window to the front, with the focus, also from the Dock or the task bar. Once it is shown.
    void comeForward();

    /// Sizes all type: 1 as composed, 2 twice as large. Once the window is shown.
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
