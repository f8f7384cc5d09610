// The states of the window that pictures are taken of.
#pragma once

#include <QQuickWindow>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/vesk_app.h"
#include "state/history_entry.h"
#include "state/store.h"

namespace vesk {

/// Runs the event loop until `done` says so, at most ten seconds. Returns what `done` said last.
bool runUntil(const std::function<bool()>& done);
/// Runs the event loop for so long.
void runFor(int milliseconds);

struct Scene {
    std::string name;
    /// What its store is made from; called in a home that is empty but for the demo's files.
    std::function<Store::Sources()> sources;
    /// What its history holds when the store is made.
    std::vector<HistoryEntry> history;
    /// Brings the window into the state, once the first scan has begun.
    std::function<void(VeskApp&)> act = [](VeskApp&) {};
    /// Undone once the pictures are taken: lets a waiting scan end, for one.
    std::function<void()> release = [] {};
    /// Whether pictures are also taken at double scale, and with text twice as large.
    bool main = false;
    /// Whether things move; a still picture is taken of things at rest otherwise.
    bool moving = false;
    /// Waits, before each picture, until the window looks as it should.
    std::function<void(VeskApp&)> settle = [](VeskApp&) { runFor(120); };
};

/// All of them. World::home holds the demo's files.
std::vector<Scene> allScenes();

}  // namespace vesk
