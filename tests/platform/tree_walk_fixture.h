// Shared by the tests of the walk.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "core/probe.h"
#include "support/temporary_home.h"

namespace vesk::testing {

// Walks are tested through Probe::measure, which is how Vesk walks.
class TreeWalkTest : public TemporaryHome {
protected:
    TreeWalkTest() { makeFolder(top); }

    Probe::Measurement measure(const std::filesystem::path& path) { return probe.measure(path); }

    // Makes an empty file in an open folder, quickly.
    static void touch(int folder, const std::string& name) {
        const int file = openat(folder, name.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        ASSERT_GE(file, 0) << name;
        close(file);
    }

    const std::filesystem::path top = testHome() / "top";
    std::shared_ptr<Tracker> tracker = std::make_shared<Tracker>();
    Probe probe{tracker};
};

}  // namespace vesk::testing
