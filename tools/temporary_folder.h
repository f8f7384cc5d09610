// A folder for the run of a program that goes, with all it holds, when this goes.
#pragma once

#include <filesystem>
#include <string>

namespace vesk {

class TemporaryFolder {
public:
    /// Makes a folder of this process's own, "NAME-" and six letters, in the system's temporary folder.
    explicit TemporaryFolder(const std::string& name);
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// Removes it early.
    void remove();

    /// Empty when it could not be made.
    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace vesk
