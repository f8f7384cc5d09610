#include "demo_home/demo_home.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <ctime>
#include <map>
#include <string_view>
#include <system_error>

#include "platform/date.h"

namespace vesk {

namespace {

namespace fs = std::filesystem;

constexpr mode_t fileMode = 0644;
constexpr mode_t programMode = 0755;
constexpr std::int64_t bytesPerKilobyte = 1000;
constexpr double installedDaysAgo = 150;

struct InstalledApplication {
    const char* path;
    const char* identifier;
};

constexpr InstalledApplication applications[] = {
    {"Applications/Lumen.app", "com.lumen.Photos"},           {"Applications/Northwind Mail.app", "com.northwind.Mail"},
    {"Applications/Lagoon Music.app", "audio.lagoon.player"}, {"Applications/Xcode.app", "com.apple.dt.Xcode"},
    {"System/Applications/Notes.app", "com.apple.Notes"},
};

// Hours since each snapshot that the backup tool tells of, which lists the oldest first.
constexpr std::array<int, 4> snapshotAges = {50, 26, 9, 2};
constexpr const char* snapshotList = "private/var/db/local-snapshots";

// Stands in for the backup tool. It keeps its snapshots in a list, so one that Vesk deletes is gone in the next scan.
constexpr std::string_view backupTool = R"(#!/bin/sh
kept="$(dirname "$0")/../../private/var/db/local-snapshots"
case "$1" in
listlocalsnapshots)
    echo "Snapshots for disk $2:"
    cat "$kept"
    ;;
deletelocalsnapshots)
    if ! grep -q -x -F "com.apple.TimeMachine.$2.local" "$kept"; then
        echo "no such snapshot: $2" >&2
        exit 1
    fi
    grep -v -x -F "com.apple.TimeMachine.$2.local" "$kept" > "$kept.new"
    mv "$kept.new" "$kept"
    echo "Deleted local snapshot '$2'"
    ;;
*)
    exit 64
    ;;
esac
)";

Date daysAgo(double days) {
    return now() - std::chrono::seconds(std::llround(days * 86'400));
}

bool setDates(const fs::path& item, Date date) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date);
    const timespec stamp{static_cast<time_t>(seconds.time_since_epoch().count()),
                         static_cast<long>((date - seconds).count())};
    const timespec both[] = {stamp, stamp};
    return utimensat(AT_FDCWD, item.c_str(), both, AT_SYMLINK_NOFOLLOW) == 0;
}

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// Makes the file take `size` bytes on disk.
bool fill(int file, std::int64_t size) {
#ifndef __APPLE__
    if (posix_fallocate(file, 0, size) == 0) {
        return true;
    }
#endif
    const std::string block(1 << 20U, 'v');
    for (std::int64_t left = size; left > 0; left -= static_cast<std::int64_t>(block.size())) {
        const auto length = std::min(left, static_cast<std::int64_t>(block.size()));
        if (!writeAll(file, std::string_view(block).substr(0, static_cast<std::size_t>(length)))) {
            return false;
        }
    }
    return true;
}

// Builds the volume. Every step answers whether it worked.
class Builder {
public:
    explicit Builder(const fs::path& top) : top_(top) {}

    bool addFile(const DemoFile& file) {
        return add(file.path, fileMode, daysAgo(file.age),
                   [&](int descriptor) { return fill(descriptor, file.kilobytes * bytesPerKilobyte); });
    }

    bool addText(const std::string& path, std::string_view text, double age, mode_t mode = fileMode) {
        return add(path, mode, daysAgo(age), [&](int descriptor) { return writeAll(descriptor, text); });
    }

    /// Dates the folders, each as the newest thing in it: last, since making something in a folder dates it anew.
    bool dateFolders() const {
        return std::all_of(folders_.rbegin(), folders_.rend(),
                           [&](const auto& folder) { return setDates(top_ / folder.first, folder.second); });
    }

private:
    template <typename Write>
    bool add(const std::string& path, mode_t mode, Date date, Write writeContent) {
        const fs::path item = top_ / path;
        std::error_code failure;
        fs::create_directories(item.parent_path(), failure);
        const int descriptor = open(item.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (descriptor < 0) {
            return false;
        }
        const bool written = writeContent(descriptor);
        const bool closed = close(descriptor) == 0;
        for (fs::path above = fs::path(path).parent_path(); !above.empty(); above = above.parent_path()) {
            Date& newest = folders_.try_emplace(above, date).first->second;
            newest = std::max(newest, date);
        }
        return written && closed && setDates(item, date);
    }

    const fs::path& top_;
    // Sorted by path, so that a folder comes before what lies in it.
    std::map<fs::path, Date> folders_;
};

std::string informationOf(const InstalledApplication& application) {
    return std::string(R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>CFBundleIdentifier</key>
	<string>)") +
           application.identifier + R"(</string>
	<key>CFBundlePackageType</key>
	<string>APPL</string>
</dict>
</plist>
)";
}

std::string snapshotLines() {
    std::string lines;
    for (const int hours : snapshotAges) {
        const std::time_t taken = std::chrono::system_clock::to_time_t(
            std::chrono::time_point_cast<std::chrono::system_clock::duration>(daysAgo(hours / 24.0)));
        std::tm local{};
        localtime_r(&taken, &local);
        std::array<char, 32> stamp{};
        const std::size_t length = std::strftime(stamp.data(), stamp.size(), "%Y-%m-%d-%H%M%S", &local);
        lines.append("com.apple.TimeMachine.").append(stamp.data(), length).append(".local\n");
    }
    return lines;
}

// What tells which applications are installed, and what they are called.
struct TextFile {
    const char* path;
    const char* text;
};

constexpr TextFile textsOfLinux[] = {
    {"usr/share/applications/chromium.desktop", "[Desktop Entry]\nType=Application\nName=Chromium\n"},
    {"usr/share/applications/Lumen.desktop", "[Desktop Entry]\nType=Application\nName=Lumen Photos\n"},
    {"var/lib/flatpak/app/org.lagoon.Music/current/active/metadata", "[Application]\nname=org.lagoon.Music\n"},
    {"var/lib/snapd/snaps/fieldnotes_12.snap", "made up\n"},
    {"home/robin/.config/user-dirs.dirs",
     "XDG_DOWNLOAD_DIR=\"$HOME/Downloads\"\nXDG_DOCUMENTS_DIR=\"$HOME/Documents\"\n"},
};

bool addMac(Builder& builder) {
    return std::all_of(std::begin(applications), std::end(applications),
                       [&](const InstalledApplication& application) {
                           return builder.addText(std::string(application.path) + "/Contents/Info.plist",
                                                  informationOf(application), installedDaysAgo);
                       }) &&
           builder.addText("usr/bin/tmutil", backupTool, installedDaysAgo, programMode) &&
           builder.addText(snapshotList, snapshotLines(), 0);
}

bool addLinux(Builder& builder) {
    return std::all_of(std::begin(textsOfLinux), std::end(textsOfLinux),
                       [&](const TextFile& file) { return builder.addText(file.path, file.text, installedDaysAgo); });
}

bool build(const fs::path& top, Layout layout) {
    Builder builder(top);
    const std::vector<DemoFile> files = demoFiles(layout);
    return std::all_of(files.begin(), files.end(), [&](const DemoFile& file) { return builder.addFile(file); }) &&
           (layout == Layout::macos ? addMac(builder) : addLinux(builder)) && builder.dateFolders();
}

}  // namespace

std::optional<World> makeDemoHome(const fs::path& folder, Layout layout) {
    std::error_code failure;
    if (!folder.is_absolute()) {
        return std::nullopt;
    }
    fs::create_directories(folder, failure);
    // Never among somebody's own files.
    if (!fs::is_empty(folder, failure) || failure || !build(folder, layout)) {
        return std::nullopt;
    }
    return World::below(folder, folder / demoHomePath(layout), layout);
}

}  // namespace vesk
