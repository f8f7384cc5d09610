// Folders that coding projects can make again, in projects that nobody has touched for two weeks.

#include <algorithm>
#include <array>
#include <chrono>
#include <deque>
#include <string>
#include <string_view>

#include "core/scanner.h"
#include "platform/text.h"
#include "platform/threads/background.h"
#include "platform/threads/work_sharing.h"
#include "rules/kept_folders.h"
#include "rules/place_search.h"
#include "rules/rule_support.h"
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

// Where snaps keep their data on Linux.
constexpr std::string_view snapData = "snap";

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

// Whether programs are installed here rather than a project's libraries: npm puts those that are for the whole user
// into "lib/node_modules" of a folder of their choice, and nothing but their own installation brings them back.
bool isGlobalLibrary(const std::filesystem::path& folder, std::string_view name) {
    return isOnLinux() && name == "node_modules" && folder.filename() == "lib" && !itemExists(folder / "package.json");
}

bool isPackage(std::string_view name) {
    return isAmong(lowercased(pathExtension(name)), packageExtensions);
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

    /// The date of a child itself; absent when it has none or is not there.
    std::optional<Date> ownDate(std::string_view name) const {
        const auto child =
            std::find_if(children_.begin(), children_.end(), [&](const Child& c) { return c.item.name == name; });
        return child == children_.end() ? std::nullopt : child->item.contentModificationDate;
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

// Searches the home's folders for what idle projects can spare. Many small folders are listed and measured on the way,
// so the folders are divided among threads.
class Search {
public:
    Search(Probe& probe, Date cutOff) : probe_(probe), cutOff_(cutOff), background_(inBackground()) {}

    std::vector<Card> run() {
        WorkSharing<Folder, Part*> work([this] { return &parts_.emplace_back(Probe(probe_.tracker)); },
                                        [this](const Folder& folder, auto& worker) { search(folder, worker); });
        work.run({Scanner::home(), homeLevel});
        return cards();
    }

private:
    static constexpr std::size_t homeLevel = 0;

    struct Folder {
        std::filesystem::path path;
        // Of the folder's children: 1 in a folder of the home, 0 in the home itself.
        std::size_t level;
    };
    struct Hit {
        std::size_t kind;
        Entry entry;
    };
    // What one thread has to itself.
    struct Part {
        explicit Part(Probe own) : probe(std::move(own)) {}
        Probe probe;
        std::vector<Hit> hits;
    };

    template <typename Worker>
    void search(const Folder& folder, Worker& worker) {
        if (background_) {
            enterBackground();
        }
        std::optional<ProjectDates> dates;
        for (const FolderItem& item : childrenOf(folder)) {
            if (!item.isDirectory) {
                continue;
            }
            if (folder.level == homeLevel) {
                if (!item.name.starts_with('.') && !isAmong(item.name, skippedRoots) &&
                    !(isOnLinux() && item.name == snapData) && !kept_.contains(folder.path / item.name)) {
                    worker.add({folder.path / item.name, homeLevel + 1});
                }
            } else if (kept_.contains(folder.path / item.name) || isGlobalLibrary(folder.path, item.name)) {
                continue;
            } else if (const Kind* kind = kindOf(folder.path, item.name)) {
                take(*worker.state, folder.path, *kind, dates);
                worker.offerItems();
            } else if (!item.name.starts_with('.') && folder.level < deepestLevel && !isPackage(item.name)) {
                worker.add({folder.path / item.name, folder.level + 1});
            }
        }
        worker.startSharing();
    }

    // The home may lie anywhere; below it links and other file systems are not entered.
    static std::vector<FolderItem> childrenOf(const Folder& folder) {
        if (folder.level == homeLevel) {
            return rules::childrenOf(folder.path, ListingDetail::kinds);
        }
        return listSubfolder(folder.path.parent_path(), folder.path.filename().string(), ListingDetail::kinds).items;
    }

    void take(Part& part, const std::filesystem::path& project, const Kind& kind, std::optional<ProjectDates>& dates) {
        if (!dates) {
            dates.emplace(part.probe, project);
        }
        const std::optional<Date> touched = dates->newestIgnoring(kind.folder);
        if (touched.value_or(Date::min()) >= cutOff_) {
            return;
        }
        const std::filesystem::path url = project / kind.folder;
        // The dates that tell of rest are the project's; that the folder was made again since shows in its own.
        part.probe.judgedBy[url] = {.modified = dates->ownDate(kind.folder), .accessed = {}};
        part.hits.push_back(
            {static_cast<std::size_t>(&kind - kinds.data()),
             Entry{Uuid::random(), url, label(project.filename().string()), part.probe.measure(url).size, touched}});
    }

    std::vector<Card> cards() {
        std::vector<Hit> hits;
        for (Part& part : parts_) {
            probe_.blocked = probe_.blocked || part.probe.blocked;
            probe_.judgedBy.merge(part.probe.judgedBy);
            std::move(part.hits.begin(), part.hits.end(), std::back_inserter(hits));
        }
        // Which thread came where is chance; the order of the paths is that of a search by one alone.
        std::sort(hits.begin(), hits.end(), [](const Hit& a, const Hit& b) { return a.entry.url < b.entry.url; });
        std::array<std::vector<Entry>, kinds.size()> found;
        for (Hit& hit : hits) {
            found[hit.kind].push_back(std::move(hit.entry));
        }
        std::vector<Card> cards;
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            addCard(cards, kinds[i].card, std::move(found[i]));
        }
        return cards;
    }

    Probe& probe_;
    Date cutOff_;
    bool background_;
    // By whole path: on Linux they may lie anywhere in the home.
    const KeptFolders kept_;
    std::deque<Part> parts_;  // a deque: threads keep pointers into it while it grows
};

}  // namespace

std::vector<Card> Scanner::projectCards(Probe& probe) {
    return Search(probe, now() - idleTime).run();
}

}  // namespace vesk
