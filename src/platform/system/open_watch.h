// Notices that programs open files in items, from a given moment on. A look at all processes (open_files.h) is out of
// date as soon as it is made; this tells for which items. Each object is used by one thread.
#pragma once

#include <filesystem>
#include <map>
#include <set>

#include "platform/files/descriptor.h"

namespace vesk {

class OpenWatch {
public:
    /// Notices from now on when a program opens the item or a file in it. Of a folder, those in its first folders
    /// count, but not those further down. On macOS, and where the system allows no more watches, nothing is noticed.
    void add(const std::filesystem::path& item);

    /// Whether a file in the item was opened since it was added, or since the last call that returned true.
    bool noticed(const std::filesystem::path& item);

    /// Ends the watch over all items.
    void clear();

private:
    void readEvents();

    Descriptor events_;
    std::map<int, std::filesystem::path> items_;
    std::set<std::filesystem::path> opened_;
};

}  // namespace vesk
