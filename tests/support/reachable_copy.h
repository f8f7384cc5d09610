// A program or a library of the build for a test to run or load, as a copy in the test program's own folder. Tests
// started as root go on as "nobody", who may not be allowed into the build's folder; and that folder's path may have a
// space in it, at which LD_PRELOAD splits.
#pragma once

#include <fstream>
#include <string>

namespace vesk::testing {

/// Belongs into static storage: then the file is opened before the test program changes its user.
class ReachableCopy {
public:
    explicit ReachableCopy(const std::string& original);

    /// The copy's path. Made when this is first called; throws when that fails.
    const std::string& path() const;

private:
    std::string name_;
    mutable std::ifstream original_;
    mutable std::string path_;
};

}  // namespace vesk::testing
