// Ensures that only one instance uses a history: each saves all of it, so two would overwrite each other's entries. The
// first instance holds a lock; a later one asks it to come to the front, and ends. Main thread only.
#pragma once

#include <QLocalServer>
#include <QString>
#include <chrono>
#include <functional>

#include "platform/files/file_lock.h"

namespace vesk {

class SingleInstance {
public:
    enum class Entry {
        /// This is the first instance, or that cannot be determined: open the window.
        first,
        /// The first instance's window is now in front.
        shown,
        /// There is a first instance, but it did not answer.
        silent,
    };

    SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Becomes the first instance, or calls it. The first may be just starting or ending, so both are retried, for at
    /// most `patience`. Needs the application object, but not its event loop.
    Entry enter(std::chrono::milliseconds patience);

    /// For the first instance: calls `forward` from the event loop whenever a later instance calls.
    void onCall(std::function<void()> forward) { forward_ = std::move(forward); }

private:
    void listen();
    void answer();
    bool callFirst(std::chrono::milliseconds patience) const;

    FileLock lock_;
    QString address_;
    QLocalServer server_;
    std::function<void()> forward_ = [] {};
};

}  // namespace vesk
