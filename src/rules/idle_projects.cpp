// Folders that coding projects can make again, in projects that nobody has touched for two weeks.

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <string_view>

#include "core/scanner.h"
#include "platform/text.h"
#include "rules/gathering.h"
#include "rules/rules.h"

namespace vesk {

namespace {

using namespace rules;

constexpr std::chrono::seconds idleTime{1'209'600};
// Levels below a folder of the home that are looked at; 1 is its direct children.
constexpr std::size_t deepestLevel = 5;

// Where documents, media and programs are kept, not projects.
constexpr std::array<std::string_view, 9> skippedRoots = {"Library", "Documents", "Desktop",      "Pictures", "Music",
                                                          "Movies",  "Downloads", "Applications", "Public"};

// Folders that are shown as one thing, by extension in lower case: no project lies inside.
// clang-format off
constexpr std::string_view packageExtensions[] = {
    "aplibrary", "app", "appex", "band", "bundle", "component", "docset", "dsym", "fcpbundle",
    "imovielibrary", "kext", "key", "logicx", "mdimporter", "mlmodelc", "mpkg", "numbers", "pages",
    "photoslibrary", "pkg", "playground", "plugin", "prefpane", "qlgenerator", "rtfd", "saver",
    "scptd", "sparsebundle", "systemextension", "theater", "tvlibrary", "utm", "wdgt", "xcarchive",
    "xcdatamodeld", "xcodeproj", "xcworkspace", "xpc"
};
// clang-format on

struct Kind {
    /// The folder that is taken.
    std::string_view folder;
    /// What has to lie beside it; empty when nothing has to.
    std::string_view besideIt;
    CardDescription card;
};

constexpr std::array<Kind, 4> kinds = {{
    {"node_modules",
     "",
     {.id = "proj-node",
      .title = "Idle website project folders",
      .symbol = "chevron.left.forwardslash.chevron.right",
      .bucket = Bucket::smart,
      .confidence = 0.9,
      .risk = 2.0,
      .summary = "Downloaded code libraries (node_modules) in projects you haven't touched for two weeks.",
      .why = "A quick `npm install` brings them back whenever you reopen the project."}},
    {".next",
     "package.json",
     {.id = "proj-next",
      .title = "Old Next.js build folders",
      .symbol = "globe",
      .bucket = Bucket::smart,
      .confidence = 0.9,
      .risk = 2.0,
      .summary = "Website build output from projects you haven't touched for two weeks.",
      .why = "These are generated each time you build or run the project."}},
    {".venv",
     "",
     {.id = "proj-venv",
      .title = "Old Python environments",
      .symbol = "terminal",
      .bucket = Bucket::smart,
      .confidence = 0.75,
      .risk = 2.0,
      .summary = "Python tool setups in projects you haven't touched for two weeks.",
      .why = "They can be recreated from the project's requirements, but anything installed by hand would need "
             "reinstalling."}},
    {"target",
     "Cargo.toml",
     {.id = "proj-cargo",
      .title = "Old Rust build folders",
      .symbol = "gearshape.2",
      .bucket = Bucket::smart,
      .confidence = 0.9,
      .risk = 2.0,
      .summary = "Compiled Rust code from projects you haven't touched for two weeks.",
      .why = "Cargo rebuilds this automatically; the first build afterwards will be slow."}},
}};

// The kind that a folder of this name in `project` is of; nullptr when it is none.
const Kind* kindOf(const std::filesystem::path& project, std::string_view name) {
    const auto* kind = std::find_if(kinds.begin(), kinds.end(), [&](const Kind& k) { return k.folder == name; });
    if (kind == kinds.end() || (!kind->besideIt.empty() && !itemExists(project / kind->besideIt))) {
        return nullptr;
    }
    return kind;
}

bool isPackage(std::string_view name) {
    const std::string extension = lowercased(pathExtension(name));
    return std::find(std::begin(packageExtensions), std::end(packageExtensions), extension) !=
           std::end(packageExtensions);
}

std::optional<Date> newestIn(const std::vector<FolderItem>& items) {
    std::optional<Date> newest;
    for (const FolderItem& item : items) {
        newest = std::max(newest, item.contentModificationDate);
    }
    return newest;
}

// The dates of a project's children and grandchildren, each folder listed once however often they are asked for.
class ProjectDates {
public:
    ProjectDates(Probe& probe, std::filesystem::path project) : probe_(probe), project_(std::move(project)) {
        for (FolderItem& item : childrenOrBlocked(probe_, project_, ListingDetail::dates)) {
            children_.push_back({std::move(item), false, std::nullopt});
        }
    }

    /// The newest date but for the child `ignored` and what is in it; absent when there is no date at all.
    std::optional<Date> newestIgnoring(std::string_view ignored) {
        std::optional<Date> newest;
        for (Child& child : children_) {
            if (child.item.name != ignored) {
                newest = std::max({newest, child.item.contentModificationDate, newestInside(child)});
            }
        }
        return newest;
    }

private:
    struct Child {
        FolderItem item;
        bool listed;
        std::optional<Date> newestInside;
    };

    std::optional<Date> newestInside(Child& child) {
        if (child.item.isDirectory && !child.listed) {
            child.listed = true;
            child.newestInside = newestIn(childrenOrBlocked(probe_, project_ / child.item.name, ListingDetail::dates));
        }
        return child.newestInside;
    }

    Probe& probe_;
    std::filesystem::path project_;
    std::vector<Child> children_;
};

// Walks folders of the home and gathers what idle projects in them can spare, by kind.
class Search {
public:
    Search(Probe& probe, Date cutOff) : probe_(probe), cutOff_(cutOff) {}

    void walk(const std::filesystem::path& root) {
        // The folders from the root down to the one being looked at.
        std::vector<Folder> open;
        open.push_back({root, childrenOf(root, ListingDetail::kinds), 0, std::nullopt});
        while (!open.empty()) {
            Folder& folder = open.back();
            if (folder.next == folder.items.size()) {
                open.pop_back();
                continue;
            }
            const FolderItem& item = folder.items[folder.next++];
            if (!item.isDirectory) {
                continue;
            }
            if (const Kind* kind = kindOf(folder.path, item.name)) {
                take(folder, *kind);
            } else if (!item.name.starts_with('.') && open.size() < deepestLevel && !isPackage(item.name)) {
                FolderListing inside = listSubfolder(folder.path, item.name, ListingDetail::kinds);
                open.push_back({folder.path / item.name, std::move(inside.items), 0, std::nullopt});
            }
        }
    }

    std::vector<Card> cards() {
        std::vector<Card> cards;
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            addCard(cards, kinds[i].card, std::move(found_[i]));
        }
        return cards;
    }

private:
    struct Folder {
        std::filesystem::path path;
        std::vector<FolderItem> items;
        std::size_t next;
        std::optional<ProjectDates> dates;
    };

    void take(Folder& project, const Kind& kind) {
        if (!project.dates) {
            project.dates.emplace(probe_, project.path);
        }
        const std::optional<Date> touched = project.dates->newestIgnoring(kind.folder);
        if (touched.value_or(Date::min()) >= cutOff_) {
            return;
        }
        const std::filesystem::path url = project.path / kind.folder;
        found_[static_cast<std::size_t>(&kind - kinds.data())].push_back(
            Entry{Uuid::random(), url, label(project.path.filename().string()), probe_.measure(url).size, touched});
    }

    Probe& probe_;
    Date cutOff_;
    std::array<std::vector<Entry>, kinds.size()> found_;
};

}  // namespace

std::vector<Card> Scanner::projectCards(Probe& probe) {
    Search search(probe, now() - idleTime);
    for (const FolderItem& item : childrenOf(home(), ListingDetail::kinds)) {
        if (item.isDirectory && !item.name.starts_with('.') &&
            std::find(skippedRoots.begin(), skippedRoots.end(), item.name) == skippedRoots.end()) {
            search.walk(home() / item.name);
        }
    }
    return search.cards();
}

}  // namespace vesk
