// Notices that programs open files in items, from a given moment on. A look at all processes (open_files.h) is out of
// date as soon as it is made; this tells for which items. Each object is used by one thread.
#pragma once

#include <chrono>
#include <filesystem>
#include <future>
#include <memory>
#include <string>
#include <vector>

namespace vesk {

class OpenWatch {
public:
    OpenWatch();
    OpenWatch(const OpenWatch&) = delete;
    OpenWatch& operator=(const OpenWatch&) = delete;
    ~OpenWatch();

    /// Starts watching the items at these paths, on another thread, beside those that are watched now.
    void prepare(std::vector<std::string> items);

    /// Notices from now on when a program opens one of the items last prepared or a file in it, and no other item.
    /// Waits until all are watched. Of a folder, the files in its first folders count, but not those further down; of
    /// an item that is a file, its opening at its own path. On macOS, and where the system allows no more watches,
    /// nothing is noticed. Returns since when they are watched: that may be long before the call.
    std::chrono::steady_clock::time_point begin();

    /// Whether a file in the item was opened since it was watched, or since the last call that returned true.
    bool noticed(const std::filesystem::path& item);

private:
    class Items;

    std::unique_ptr<Items> items_;
    // No longer watched, but not closed yet.
    std::unique_ptr<Items> former_;
    std::future<std::unique_ptr<Items>> prepared_;
};

}  // namespace vesk
