#include "platform/trash/trash_info.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace vesk {
namespace {

Date atUnixSeconds(std::int64_t seconds) {
    return dateFromUnix(seconds, 999'000'000);
}

class TrashInfoTest : public ::testing::Test {
protected:
    static void setZone(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }
    ~TrashInfoTest() override {
        unsetenv("TZ");
        tzset();
    }
};

TEST_F(TrashInfoTest, TellsPlaceAndLocalTime) {
    setZone("UTC");
    EXPECT_EQ(trashInfoText("/home/u/file", atUnixSeconds(1'645'496'539)),
              "[Trash Info]\nPath=/home/u/file\nDeletionDate=2022-02-22T02:22:19\n");
    setZone("Asia/Kolkata");
    EXPECT_EQ(trashInfoText("a/b", atUnixSeconds(1'645'496'539)),
              "[Trash Info]\nPath=a/b\nDeletionDate=2022-02-22T07:52:19\n");
}

TEST_F(TrashInfoTest, ReadsBackEveryByte) {
    std::string all;
    for (int byte = 1; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    const std::string text = trashInfoText(all, atUnixSeconds(0));
    EXPECT_EQ(placeInTrashInfo(text), all);
    for (const char c : text) {
        EXPECT_TRUE(c == '\n' || (c >= ' ' && c <= '~')) << static_cast<int>(c);
    }
}

TEST_F(TrashInfoTest, ReadsWhatOthersWrite) {
    const struct {
        const char* text;
        const char* place;
    } cases[] = {
        {"[Trash Info]\nDeletionDate=2022-02-22T02:22:19\nPath=/a%20b", "/a b"},
        {"[Trash Info]\nX=y\n\nPath=/a b%c3%A9\nPath=/second\n", "/a b\xC3\xA9"},
        {"[Trash Info]\nPath=", ""},
        {"[Trash Info]\nPath=/100%", "/100%"},
        {"[Trash Info]\nPath=/%zz%4", "/%zz%4"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(placeInTrashInfo(c.text), c.place) << c.text;
    }
}

TEST_F(TrashInfoTest, TellsNothingOfAnythingElse) {
    for (const char* text : {"", "\n", "Path=/a\n", "[Trash Info]", "[Trash Info]\nDeletionDate=2022\n",
                             "[Other]\nPath=/a\n", "[Trash Info]\npath=/a\n"}) {
        EXPECT_FALSE(placeInTrashInfo(text)) << text;
    }
}

}  // namespace
}  // namespace vesk
