#include "tree_shapes.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <span>

#include "tree_writer.h"

namespace vesk::bench {

namespace {

constexpr std::uint64_t seed = 20'261'121;

// The shape of a subtree.
struct Subtree {
    std::int64_t files;
    std::int64_t folders;
    int deepest;
};

// The contents of each folder in a subtree: indices of its subfolders, and a number of files.
struct PlannedFolder {
    std::vector<std::size_t> subfolders;
    std::int64_t files = 0;
    int level = 0;
};

// A folder's parent is an earlier one, preferably a recent one, so that there are deep branches and broad ones; a few
// folders hold most files, many hold a handful.
std::vector<PlannedFolder> plan(const Subtree& subtree, Sequence& sequence) {
    constexpr std::uint64_t recent = 12;
    std::vector<PlannedFolder> folders(static_cast<std::size_t>(std::max<std::int64_t>(subtree.folders, 1)));
    for (std::size_t i = 1; i < folders.size(); ++i) {
        const bool nearby = sequence.below(3) != 0;
        std::size_t parent = nearby ? i - 1 - sequence.below(std::min<std::uint64_t>(i, recent)) : sequence.below(i);
        if (folders[parent].level >= subtree.deepest) {
            parent = sequence.below(std::min<std::uint64_t>(i, recent));
        }
        folders[parent].subfolders.push_back(i);
        folders[i].level = folders[parent].level + 1;
    }
    std::vector<std::size_t> order(folders.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    for (std::size_t i = order.size() - 1; i > 0; --i) {
        std::swap(order[i], order[sequence.below(i + 1)]);
    }
    for (std::int64_t file = 0; file < subtree.files; ++file) {
        const double skewed = sequence.fraction() * sequence.fraction();
        ++folders[order[static_cast<std::size_t>(skewed * static_cast<double>(folders.size()))]].files;
    }
    return folders;
}

void fill(int folder, std::int64_t files, Sequence& sequence) {
    static constexpr std::string_view endings[] = {".js", ".d.ts", ".o", ".json", ".map", ".plist", "", ".swiftmodule"};
    for (std::int64_t i = 0; i < files; ++i) {
        const std::string_view ending = endings[sequence.below(std::size(endings))];
        makeFile(folder,
                 "item-" + std::to_string(sequence.below(100'000)) + "-" + std::to_string(i) + std::string(ending),
                 sequence);
    }
}

void write(int folder, const std::vector<PlannedFolder>& folders, std::size_t which, Sequence& sequence) {
    fill(folder, folders[which].files, sequence);
    for (const std::size_t subfolder : folders[which].subfolders) {
        const int made = makeFolder(folder, "folder-" + std::to_string(subfolder));
        write(made, folders, subfolder, sequence);
        closeFolder(made);
    }
    dateBack(folder);
}

void makeSubtree(int folder, const Subtree& subtree, Sequence& sequence) {
    constexpr std::size_t top = 0;
    write(folder, plan(subtree, sequence), top, sequence);
}

// One kind of place in a developer's home, and its share of the home's files in percent.
struct Place {
    // "#" stands for a number: the share is spread over several folders of that name.
    std::string_view path;
    std::int64_t percent;
    // A file by which the rules recognise the folder.
    std::string_view beside;
};

// All of these are places that a rule measures, so a scan of such a home reads every file of it.
constexpr Place placesOfMac[] = {
    {"Library/Caches/com.example.app#", 24, ""},
    {"Library/Caches/Homebrew", 3, ""},
    {"Library/Caches/pip", 4, ""},
    {".npm", 7, ""},
    {".cache/huggingface", 1, ""},
    {"Library/Developer/Xcode/DerivedData/App#-abcdefgh", 16, ""},
    {"Library/Developer/Xcode/iOS DeviceSupport", 5, ""},
    {"Library/Developer/CoreSimulator/Devices/00000000-0000-4000-8000-00000000000#", 8, ""},
    {"code/website#/node_modules", 20, "package.json"},
    {"code/tool#/target", 6, "Cargo.toml"},
    {"Library/Application Support/Gone Program#", 4, ""},
    {"Downloads/archive#", 2, ""},
};
constexpr Place placesOfLinux[] = {
    {".cache/mozilla", 12, ""},
    {".cache/chromium", 12, ""},
    {".cache/go-build", 16, ""},
    {".cache/yarn", 8, ""},
    {".cache/pip", 4, ""},
    {".npm", 7, ""},
    {".cache/huggingface/hub/models--org--model#", 2, ""},
    {".var/app/org.example.Gone#", 8, ""},
    {"code/website#/node_modules", 22, "package.json"},
    {"code/tool#/target", 7, "Cargo.toml"},
    {"Downloads/archive#", 2, ""},
};
constexpr std::int64_t foldersOfOneName = 8;

std::string numbered(std::string_view path, std::int64_t number) {
    std::string text(path);
    if (const std::size_t mark = text.find('#'); mark != std::string::npos) {
        text.replace(mark, 1, std::to_string(number));
    }
    return text;
}

// A developer's home with ten files per folder.
std::int64_t makeHome(int top, std::int64_t files, std::span<const Place> places) {
    constexpr std::int64_t percent = 100;
    constexpr std::int64_t filesPerFolder = 10;
    constexpr int deepest = 14;
    Sequence sequence(seed + static_cast<std::uint64_t>(files));
    std::int64_t made = 0;
    for (const Place& place : places) {
        const std::int64_t parts = place.path.find('#') == std::string_view::npos ? 1 : foldersOfOneName;
        const std::int64_t each = files * place.percent / percent / parts;
        for (std::int64_t part = 1; part <= parts; ++part) {
            const std::string path = numbered(place.path, part);
            const int folder = makeFolders(top, path);
            makeSubtree(folder, Subtree{each, each / filesPerFolder, deepest}, sequence);
            closeFolder(folder);
            made += each;
            if (!place.beside.empty()) {
                const int project = makeFolders(top, path.substr(0, path.rfind('/')));
                makeTextFile(project, std::string(place.beside), "{}\n");
                dateBack(project);
                closeFolder(project);
                ++made;
            }
        }
    }
    return made;
}

std::int64_t makeWide(int top) {
    constexpr std::int64_t files = 200'000;
    Sequence sequence(seed);
    fill(top, files, sequence);
    return files;
}

// Chains of nested folders, with a sibling folder and a few files at each level. Their depth stays within the path
// length that the compared programs can handle.
std::int64_t makeDeep(int top) {
    constexpr int chains = 10;
    constexpr int levels = 1'500;
    constexpr std::int64_t filesPerFolder = 2;
    Sequence sequence(seed);
    for (int chain = 0; chain < chains; ++chain) {
        int folder = makeFolder(top, std::to_string(chain));
        for (int level = 0; level < levels; ++level) {
            fill(folder, filesPerFolder, sequence);
            const int sibling = makeFolder(folder, "s");
            fill(sibling, filesPerFolder, sequence);
            closeFolder(sibling);
            const int next = makeFolder(folder, "d");
            closeFolder(folder);
            folder = next;
        }
        closeFolder(folder);
    }
    return chains * levels * filesPerFolder * 2;
}

// A home full of small idle projects, half of them with build output.
std::int64_t makeProjects(int top) {
    constexpr std::int64_t projects = 2'000;
    constexpr std::int64_t perGroup = 50;
    constexpr Subtree sources{10, 4, 3};
    constexpr Subtree modules{30, 6, 3};
    constexpr Subtree output{20, 4, 3};
    Sequence sequence(seed);
    std::int64_t made = 0;
    const auto add = [&](int project, const char* name, const Subtree& subtree) {
        const int folder = makeFolder(project, name);
        makeSubtree(folder, subtree, sequence);
        closeFolder(folder);
        made += subtree.files;
    };
    for (std::int64_t i = 0; i < projects; ++i) {
        const int project =
            makeFolders(top, "code/group" + std::to_string(i / perGroup) + "/project" + std::to_string(i));
        makeTextFile(project, "package.json", "{}\n");
        ++made;
        add(project, "src", sources);
        add(project, "node_modules", modules);
        if (i % 2 == 0) {
            makeTextFile(project, "Cargo.toml", "[package]\n");
            ++made;
            add(project, "target", output);
        }
        dateBack(project);
        closeFolder(project);
    }
    return made;
}

std::function<std::int64_t(int)> homeOf(std::int64_t files, std::span<const Place> places = placesOfMac) {
    return [files, places](int top) { return makeHome(top, files, places); };
}

}  // namespace

std::vector<Shape> shapes() {
    return {
        {"home-10k", "a developer's home of 10,000 files", homeOf(10'000)},
        {"home-100k", "a developer's home of 100,000 files", homeOf(100'000)},
        {"home-300k", "a developer's home of 300,000 files in 30,000 folders", homeOf(300'000)},
        {"linux-300k", "the same on Linux", homeOf(300'000, placesOfLinux)},
        {"home-1m", "a developer's home of 1,000,000 files in 100,000 folders", homeOf(1'000'000)},
        {"wide", "one folder of 200,000 files", makeWide},
        {"deep", "ten chains of 1,500 nested folders", makeDeep},
        {"projects", "a home full of 2,000 small projects", makeProjects},
    };
}

}  // namespace vesk::bench
