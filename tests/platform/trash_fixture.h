// Shared by the tests of the home Trash.
#pragma once

#include <gmock/gmock.h>

#include <map>
#include <string>

#include "support/trash_home.h"

namespace vesk::testing {

class TrashTest : public TemporaryHome {
protected:
    std::filesystem::path home = testHome();
    std::filesystem::path item = home / "Junk/item";
    std::filesystem::path files = homeTrash() / "files";
    std::filesystem::path info = homeTrash() / "info";

    // Nothing happened: the item is there, and no record claims otherwise.
    void expectUntouched(const std::filesystem::path& path, const std::map<std::string, std::string>& before) {
        EXPECT_EQ(portrait(path), before) << path;
        EXPECT_THAT(namesIn(info), ::testing::IsEmpty());
        EXPECT_THAT(namesIn(files), ::testing::IsEmpty());
    }
    void expectRefused(int error) {
        const auto before = portrait(item);
        EXPECT_EQ(trashing(seen(item)), error);
        expectUntouched(item, before);
    }
};

}  // namespace vesk::testing
