// The made-up world of a test program: a temporary folder that stands for "/", with a home folder inside. It is set
// once, before any test runs, and emptied before each test, so tests neither see each other nor the machine they run
// on.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/date.h"

namespace vesk::testing {

/// The folder of this test program, which is there until its end. The made-up world lies in it.
const std::filesystem::path& testFolder();
/// The folder that stands for "/".
const std::filesystem::path& testRoot();
/// The home folder below it, "/Users/tester".
const std::filesystem::path& testHome();

/// Whether the file system that the made-up home lies on keeps the order of changes to names.
bool homeKeepsOrderOfNames();

/// A date so many seconds before `now()`.
Date secondsAgo(double seconds);
/// A date so many days before `now()`.
Date daysAgo(double days);

/// Whether a folder can be written in and its file system has room for the worlds of tests that run side by side.
bool hasRoomForTests(const std::filesystem::path& place);

/// Throws, with a sentence that says why, when the file system of a folder has less room than that. Each test begins
/// with it.
void requireSpace(const std::filesystem::path& folder, std::uintmax_t bytes = std::uintmax_t{4} << 20U);

/// Writes a file with this content, with the folders above it. Like the two below, throws when that fails, which ends
/// the test with the reason.
void writeFile(const std::filesystem::path& path, std::string_view content);

/// Makes a file of `size` bytes, written out so that it takes space on disk, with the folders above it.
void makeFile(const std::filesystem::path& path, std::int64_t size = 4096);
/// Makes a folder with the folders above it.
void makeFolder(const std::filesystem::path& path);
/// Makes a symbolic link, with the folders above it.
void makeLink(const std::filesystem::path& path, const std::filesystem::path& target);

/// Sets both times of an item itself (a link's own); set a folder's after everything in it is made.
void setDates(const std::filesystem::path& path, Date modified, Date accessed);
void setDates(const std::filesystem::path& path, Date both);

/// Bytes that an item itself takes on disk, as stat tells.
std::int64_t allocated(const std::filesystem::path& path);

/// A test in an empty world.
class TemporaryHome : public ::testing::Test {
protected:
    TemporaryHome();
    ~TemporaryHome() override;

    /// Stops the clock of `now` for the rest of the test.
    void stopClock(Date at);
};

}  // namespace vesk::testing
