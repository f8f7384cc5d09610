// A folder for the run of a program that goes, with all it holds, when this goes. If the program is killed, the next
// one of its kind removes it.
#pragma once

#include <filesystem>
#include <string>

namespace vesk {

/// Removes a folder with all it holds, also what nobody may read in it; as far as that is possible.
void removeTree(const std::filesystem::path& folder);

class TemporaryFolder {
public:
    /// Makes a folder of this process's own, "NAME-" and six letters, in `place`; first removes those of the same name
    /// there that killed processes of this user have left behind.
    explicit TemporaryFolder(const std::string& name, const std::filesystem::path& place = systemPlace());
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// Removes it early.
    void remove();

    /// Empty when it could not be made.
    const std::filesystem::path& path() const { return path_; }

    /// The system's temporary folder.
    static std::filesystem::path systemPlace();

    /// Removes the folders of that name in `place` whose processes were killed. One that a living process uses stays,
    /// and so does any that was not made by this class or not by this user.
    static void removeLeftBehind(const std::string& name, const std::filesystem::path& place);

private:
    std::filesystem::path path_;
    int lock_ = -1;
};

}  // namespace vesk
