#include "support/reachable_copy.h"

#include <filesystem>
#include <stdexcept>

#include "support/temporary_home.h"

namespace vesk::testing {

namespace fs = std::filesystem;

ReachableCopy::ReachableCopy(const std::string& original)
    : name_(fs::path(original).filename().string()), original_(original, std::ios::binary) {
}

const std::string& ReachableCopy::path() const {
    if (path_.empty()) {
        const fs::path copy = testFolder() / name_;
        std::ofstream stream(copy, std::ios::binary);
        stream << original_.rdbuf();
        stream.close();
        if (!original_.is_open() || !stream.good()) {
            throw std::runtime_error("cannot copy " + name_ + " to " + copy.string());
        }
        original_.close();
        fs::permissions(copy, fs::perms::owner_all);
        path_ = copy.string();
    }
    return path_;
}

}  // namespace vesk::testing
