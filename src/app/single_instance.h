// Sees to it that no two Vesks use one history at once: each saves the whole of it, so one would undo what the other
// has recorded. The first to come holds a lock; a later one asks it to bring its window forward, and ends. Main thread.
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
        /// This is the first, or nobody can tell: open the window.
        first,
        /// The first one's window is in front now.
        shown,
        /// There is a first one, but it did not answer.
        silent,
    };

    /// Of the world in force.
    SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Becomes the first, or calls the first one. That one may just be starting or ending, so both are tried again, for
    /// at most `patience`. Needs the application object, not its event loop.
    Entry enter(std::chrono::milliseconds patience);

    /// Has `forward` called from the event loop whenever a later one calls; once this is the first.
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
