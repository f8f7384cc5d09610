// What lies on the made-up Mac. Beside what the rules offer there are things that they leave alone: a project in use,
// a download opened last week, the data of an installed application.

#include "demo_home/demo_home.h"

namespace vesk {

namespace {

// A DemoFile; the path is relative to the home but for those on the volume.
struct Row {
    const char* path;
    std::int64_t kilobytes;
    double age;
};

constexpr Row onTheVolume[] = {
    {"private/var/folders/x3/k8v2m4tn1qg7/X/com.google.Chrome.code_sign_clone/code_sign_clone.Yq7Lw2/Chrome", 14000, 9},
    {"private/var/folders/x3/k8v2m4tn1qg7/X/com.google.Chrome.code_sign_clone/code_sign_clone.p0ZkRd/Chrome", 13500, 3},
    {"private/var/folders/x3/k8v2m4tn1qg7/X/com.brave.Browser.code_sign_clone/code_sign_clone.Lm3vXe/Brave", 9000, 5},
    {"private/var/folders/x3/k8v2m4tn1qg7/T/session.lock", 4, 0},
};

constexpr Row caches[] = {
    {"Library/Caches/com.lumen.Photos/previews.db", 11000, 2},
    {"Library/Caches/com.northwind.Mail/attachments/brochure.pdf", 5200, 4},
    {"Library/Caches/com.northwind.Mail/index.db", 2600, 1},
    {"Library/Caches/org.fieldnotes.reader/pages.cache", 3400, 12},
    {"Library/Caches/Lagoon Music/streams/0f3a.part", 6100, 6},
    {"Library/Caches/com.apple.Safari/fsCachedData/5D1C", 900, 1},
    {"Library/Caches/CloudKit/records.db", 300, 3},
    {"Library/Logs/DiagnosticReports/Lumen-2.crash", 420, 26},
    {"Library/Logs/DiagnosticReports/northwind-mail.ips", 310, 12},
    {"Library/Logs/DiagnosticReports/Lagoon Music.ips", 280, 2},
    {"Library/Logs/DiagnosticReports/Retired/Lagoon Music.crash", 510, 48},
};

constexpr Row developerFolders[] = {
    {"Library/Developer/Xcode/iOS DeviceSupport/iPhone15,2 17.4 (21E219)/Symbols/dyld", 9000, 74},
    {"Library/Developer/Xcode/watchOS DeviceSupport/Watch6,18 10.2 (21S364)/Symbols/dyld", 3600, 98},
    {"Library/Developer/CoreSimulator/Devices/3F0A6B5E-6C1D-4E0B-9A57-0C5B8B2E7D11/data/disk.img", 8400, 61},
    {"Library/Developer/CoreSimulator/Devices/A4D1C0F2-2B78-4F3C-8E69-71B1D5C09E42/data/disk.img", 6300, 133},
    {"Library/Developer/CoreSimulator/Devices/device_set.plist", 4, 61},
    {"Library/Developer/Xcode/DerivedData/Weatherglass-bqkzvnrwhsxyfd/Build/app.o", 7200, 33},
    {"Library/Developer/Xcode/DerivedData/Tide-Tables-fjwmclpetzuagh/Build/app.o", 4800, 57},
    {"Library/Developer/Xcode/DerivedData/ModuleCache.noindex/Foundation.pcm", 700, 33},
    {"Library/Developer/Xcode/Archives/2024-03-07/Weatherglass 1.4.xcarchive/dSYMs/app.dwarf", 4100, 210},
    {"Library/Developer/Xcode/Archives/2024-09-19/Weatherglass 1.5.xcarchive/dSYMs/app.dwarf", 4300, 88},
};

constexpr Row downloadedByTools[] = {
    {".ollama/models/blobs/sha256-8c17a2e0", 16000, 52},
    {".cache/huggingface/hub/models--small-speech/model.safetensors", 12000, 70},
    {".lmstudio/models/garden-7b/garden-7b.gguf", 8200, 41},
    {"Library/Caches/Homebrew/downloads/ffmpeg--7.0.tar.xz", 5100, 23},
    {"Library/Caches/Homebrew/downloads/node--22.1.tar.gz", 3300, 44},
    {".npm/_cacache/content-v2/3f1b", 4600, 18},
    {"Library/pnpm/store/v3/files/a1", 3900, 29},
    {".bun/install/cache/react@18.3.1/index.js", 1100, 37},
    {"Library/Caches/pip/http-v2/9c44", 2300, 51},
};

constexpr Row projects[] = {
    {"Developer/weather-site/package.json", 4, 47},
    {"Developer/weather-site/src/index.tsx", 8, 45},
    {"Developer/weather-site/node_modules/react/index.js", 6400, 45},
    {"Developer/weather-site/node_modules/vite/dist/node.js", 3800, 45},
    {"Developer/weather-site/.next/cache/pack.gz", 5200, 45},
    {"Developer/recipe-box/package.json", 4, 96},
    {"Developer/recipe-box/node_modules/svelte/index.js", 4700, 96},
    {"Developer/bird-songs/requirements.txt", 4, 81},
    {"Developer/bird-songs/train.py", 12, 80},
    {"Developer/bird-songs/.venv/lib/python3.12/site-packages/numpy/core.so", 7600, 120},
    {"code/experiments/tidepool/Cargo.toml", 4, 38},
    {"code/experiments/tidepool/src/main.rs", 8, 36},
    {"code/experiments/tidepool/target/release/tidepool", 8800, 36},
    // In use, and so left alone.
    {"Developer/garden-planner/package.json", 4, 30},
    {"Developer/garden-planner/src/app.tsx", 8, 1},
    {"Developer/garden-planner/node_modules/react/index.js", 2100, 30},
};

constexpr Row largeThings[] = {
    {"Library/Containers/com.utmapp.UTM/Data/Documents/Debian.utm/Data/disk.qcow2", 14000, 140},
    {"Library/Containers/com.docker.docker/Data/vms/0/data/Docker.raw", 11000, 19},
    {"Library/Application Support/Adobe/Common/Media Cache Files/harbour.cfa", 6200, 66},
    {"Library/Application Support/Adobe/Common/Peak Files/harbour.pek", 900, 66},
    {"Library/Caches/Adobe After Effects 2024/frames.bin", 4400, 72},
    {"Movies/Summer.fcpbundle/Coast/Render Files/High Quality/001.mov", 8300, 54},
    {"Movies/Summer.fcpbundle/Coast/Interview/Transcoded Media/proxy.mov", 3700, 54},
    {"Movies/Summer.fcpbundle/Coast/Original Media/coast.mov", 2600, 54},
};

constexpr Row leftoversAndDownloads[] = {
    {"Library/Application Support/com.saltmarsh.Islands/saves/slot1.sav", 3800, 190},
    {"Library/Application Support/Paperfold Studio/templates.db", 2700, 260},
    {"Library/Application Support/org.quillpad.desktop/history.db", 1900, 115},
    {"Library/Application Support/Lumen/library.db", 1500, 130},
    {"Library/Application Support/Steam/appcache/appinfo.vdf", 800, 300},
    {"Downloads/Paperfold Studio 3.dmg", 9400, 270},
    {"Downloads/coast-walk-photos.zip", 7100, 128},
    {"Downloads/Old Flat/plans.pdf", 1300, 400},
    {"Downloads/manual-oven.pdf", 900, 82},
    {"Downloads/tickets-saturday.pdf", 300, 3},
    {"Documents/Budget.numbers", 600, 5},
    {"Pictures/Coast/IMG_0412.heic", 2400, 128},
};

constexpr Row ofLinux[] = {
    {".cache/mozilla/firefox/x3k8v2.default/cache2/entries/5D1C", 11000, 2},
    {".cache/chromium/Default/Cache/f_0003", 6200, 4},
    {".cache/thumbnails/large/8f1a.png", 2600, 12},
    {".cache/go-build/3f/3f1b-a", 5200, 9},
    {".config/Lumen/Local Storage/leveldb/000003.log", 200, 1},
    {".config/Lumen/Cache/Cache_Data/f_0001", 4300, 3},
    {".config/Lumen/Code Cache/js/index", 900, 3},
    {".config/Lumen/User/settings.json", 8, 20},
    {".cache/JetBrains/LocalHistory/changes.storageData", 1200, 3},
    {".cache/obexd/photo.jpg", 900, 3},
    {".mozilla/firefox/Crash Reports/pending/0f3a.dmp", 420, 26},
    {".mozilla/firefox/Crash Reports/submitted/bp-6c1d.txt", 8, 48},
    {".mozilla/firefox/Crash Reports/pending/77aa.dmp", 310, 2},
    {".config/chromium/Crash Reports/settings.dat", 4, 90},
    {".config/chromium/Crash Reports/completed/9a57.dmp", 510, 33},
    {".cache/kcrash-metadata/lagoon.4711.ini", 4, 12},
    {".ollama/models/blobs/sha256-8c17a2e0", 16000, 52},
    {".cache/huggingface/hub/models--small-speech/blobs/model.safetensors", 12000, 70},
    {".cache/huggingface/token", 4, 200},
    {".lmstudio/models/garden-7b/garden-7b.gguf", 8200, 41},
    {".lmstudio/conversations/1.json", 300, 41},
    {".cache/torch/hub/checkpoints/tide.pth", 6100, 61},
    {".cache/Homebrew/downloads/ffmpeg--7.0.tar.xz", 5100, 23},
    {".npm/_cacache/content-v2/3f1b", 4600, 18},
    {".local/share/pnpm/store/v10/files/a1", 3900, 29},
    {".bun/install/cache/react@18.3.1/index.js", 1100, 37},
    {".cache/pip/http-v2/9c44", 2300, 51},
    {".docker/desktop/vms/0/data/Docker.raw", 11000, 19},
    {".docker/config.json", 4, 19},
    {".var/app/org.saltmarsh.Islands/data/saves/slot1.sav", 3800, 190},
    {".var/app/org.quillpad.Quillpad/config/history.db", 1900, 115},
    {".var/app/org.lagoon.Music/data/library.db", 1500, 130},
    {"snap/paperfold/common/templates.db", 2700, 260},
    {"snap/fieldnotes/common/pages.db", 800, 300},
    {"Downloads/Paperfold Studio 3.deb", 9400, 270},
    {"Downloads/coast-walk-photos.zip", 7100, 128},
    {"Downloads/Old Flat/plans.pdf", 1300, 400},
    {"Downloads/tickets-saturday.pdf", 300, 3},
    {"Documents/Budget.ods", 600, 5},
    {"Pictures/Coast/IMG_0412.jpg", 2400, 128},
};

}  // namespace

const char* demoHomePath(Layout layout) {
    return layout == Layout::macos ? "Users/robin" : "home/robin";
}

std::vector<DemoFile> demoFiles(Layout layout) {
    std::vector<DemoFile> files;
    const auto add = [&](const std::string& above, const auto& rows) {
        for (const Row& row : rows) {
            files.push_back({above + row.path, row.kilobytes, row.age});
        }
    };
    const std::string home = std::string(demoHomePath(layout)) + "/";
    add(home, projects);
    if (layout == Layout::linuxDesktop) {
        add(home, ofLinux);
        return files;
    }
    add("", onTheVolume);
    add(home, caches);
    add(home, developerFolders);
    add(home, downloadedByTools);
    add(home, largeThings);
    add(home, leftoversAndDownloads);
    return files;
}

}  // namespace vesk
