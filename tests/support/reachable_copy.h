// A copy of a built program or library in the test program's own folder, for a test to run or load. Tests started as
// root continue as "nobody", who may have no access to the build folder; and a path with a space cannot be in
// LD_PRELOAD.
#pragma once

#include <fstream>
#include <string>

namespace vesk::testing {

/// Must have static storage duration, so that the file is opened before the test program changes its user.
class ReachableCopy {
public:
    explicit ReachableCopy(const std::string& original);

    /// The copy's path. The first call makes the copy; throws if that fails.
    const std::string& path() const;

private:
    std::string name_;
    mutable std::ifstream original_;
    mutable std::string path_;
};

}  // namespace vesk::testing
