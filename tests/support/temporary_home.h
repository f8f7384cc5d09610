// The made-up world of a test program: a temporary folder that stands for "/", with a home folder inside. It is created
// once, before any test runs, and emptied before each test, so tests see neither each other nor the real machine.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/date.h"

namespace vesk::testing {

/// This test program's folder, which contains the made-up world. Removed when the program ends.
const std::filesystem::path& testFolder();
/// The folder that stands for "/".
const std::filesystem::path& testRoot();
/// The home folder below it, "/Users/tester".
const std::filesystem::path& testHome();

/// Whether the file system of the made-up home preserves the order of renames.
bool homeKeepsOrderOfNames();

/// The date this many seconds before `now()`.
Date secondsAgo(double seconds);
/// The date this many days before `now()`.
Date daysAgo(double days);

/// Whether a folder is writable and its file system has room for the worlds of tests that run in parallel.
bool hasRoomForTests(const std::filesystem::path& place);

/// Throws, with a message that says why, if a folder's file system has less space. Called at the start of each test.
void requireSpace(const std::filesystem::path& folder, std::uintmax_t bytes = std::uintmax_t{4} << 20U);

/// Writes a file with this content, and creates the folders above it. Like the functions below, throws on failure,
/// which ends the test with the reason.
void writeFile(const std::filesystem::path& path, std::string_view content);

/// Makes a file of `size` bytes, written so that it takes space on disk, and the folders above it.
void makeFile(const std::filesystem::path& path, std::int64_t size = 4096);
/// Makes a folder and the folders above it.
void makeFolder(const std::filesystem::path& path);
/// Makes a symbolic link and the folders above it.
void makeLink(const std::filesystem::path& path, const std::filesystem::path& target);

/// Sets both times of an item (of a link itself). Set a folder's after everything in it has been made.
void setDates(const std::filesystem::path& path, Date modified, Date accessed);
void setDates(const std::filesystem::path& path, Date both);

/// Bytes that an item takes on disk, according to stat.
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
