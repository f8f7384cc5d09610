// Waiting for something that happens in the event loop.
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <chrono>
#include <functional>

namespace vesk::testing {

/// Runs the event loop until `condition` is true. Returns false if it is still false after `limit`.
inline bool waitFor(const std::function<bool()>& condition,
                    std::chrono::milliseconds limit = std::chrono::seconds(20)) {
    const QDeadlineTimer deadline(limit);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        constexpr int atMostMilliseconds = 5;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, atMostMilliseconds);
    }
    return true;
}

}  // namespace vesk::testing
