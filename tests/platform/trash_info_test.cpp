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

TEST_F(TrashInfoTest, ReadsTheDateThatItWrote) {
    for (const char* zone : {"UTC", "Europe/Berlin", "America/New_York", "Australia/Lord_Howe", "Pacific/Kiritimati"}) {
        setZone(zone);
        for (std::int64_t seconds = 1'700'000'000; seconds < 1'735'000'000; seconds += 9'999'991) {
            EXPECT_EQ(deletionInTrashInfo(trashInfoText("/a", atUnixSeconds(seconds))), dateFromUnix(seconds, 0))
                << zone << " " << seconds;
        }
    }
}

TEST_F(TrashInfoTest, AnHourThatComesTwiceIsTheFirstOfTheTwo) {
    setZone("Europe/Berlin");
    constexpr std::int64_t summer = 1'792'888'200;
    for (const std::int64_t seconds : {summer, summer + 3600}) {
        EXPECT_EQ(deletionInTrashInfo(trashInfoText("/a", atUnixSeconds(seconds))), dateFromUnix(summer, 0));
    }
    setZone("Australia/Lord_Howe");
    constexpr std::int64_t halfAnHour = 1'775'313'900;  // 2026-04-05 01:45, half an hour before 01:45 occurs again
    for (const std::int64_t seconds : {halfAnHour, halfAnHour + 1800}) {
        EXPECT_EQ(deletionInTrashInfo(trashInfoText("/a", atUnixSeconds(seconds))), dateFromUnix(halfAnHour, 0));
    }
}

TEST_F(TrashInfoTest, TellsNoDateOfAnythingElse) {
    for (const char* date : {"", "once", "2022-02-22", "2022-02-22T02:22", "2022-02-22T02:22:19Z",
                             "2022-13-01T00:00:00", "2022-02-22 02:22:19", "-"}) {
        EXPECT_FALSE(deletionInTrashInfo(std::string("[Trash Info]\nPath=/a\nDeletionDate=") + date + "\n")) << date;
    }
    EXPECT_FALSE(deletionInTrashInfo("DeletionDate=2022-02-22T02:22:19\n"));
}

}  // namespace
}  // namespace vesk
