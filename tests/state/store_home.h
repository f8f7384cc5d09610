// A Store in a test's made-up world, with the test's rules, an event loop, and a stand-in for the backup tool.
#pragma once

#include <QCoreApplication>
#include <algorithm>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "core/card.h"
#include "core/probe.h"
#include "platform/files/files.h"
#include "state/plain_cards.h"
#include "state/store.h"
#include "support/temporary_home.h"
#include "support/waiting.h"

namespace vesk::testing {

/// A card with these items, measured as by a rule.
inline Card cardOf(Probe& probe, std::string id, std::string title, const std::vector<std::filesystem::path>& items) {
    Card card = plainCard(std::move(id));
    card.title = std::move(title);
    card.selected = true;
    for (const std::filesystem::path& item : items) {
        const Probe::Measurement measured = probe.measure(item);
        card.entries.push_back(Entry{Uuid::random(), item, item.filename().string(), measured.size, measured.newest});
    }
    return card;
}

/// The items of a folder that exist, by name.
inline std::vector<std::filesystem::path> itemsOf(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> items;
    for (const FolderItem& item : listFolder(folder, ListingDetail::kinds).items) {
        items.push_back(folder / item.name);
    }
    return items;
}

class StoreHome : public TemporaryHome {
protected:
    StoreHome() {
        static int argumentCount = 1;
        static char name[] = "state_tests";
        static char* arguments[] = {name, nullptr};
        static QCoreApplication application(argumentCount, arguments);
        sources_.catalogue = [this] { return rules_; };
        sources_.runTool = [this](const std::string& path, const std::vector<std::string>& arguments_) {
            const std::lock_guard guard(toolLock_);
            toolCalls_.push_back(path);
            toolCalls_.back() += " ";
            for (const std::string& argument : arguments_) {
                toolCalls_.back() += " " + argument;
            }
            return arguments_.back() == refusedSnapshot_ ? 1 : 0;
        };
    }

    /// Adds a rule that offers whatever is in this folder at the time of a scan, as one ticked card.
    void offerItemsOf(const std::filesystem::path& folder, const std::string& id = "junk") {
        rules_.push_back({id, [folder, id](Probe& probe) {
                              const auto items = itemsOf(folder);
                              return items.empty() ? std::vector<Card>()
                                                   : std::vector<Card>{cardOf(probe, id, "Title of " + id, items)};
                          }});
    }

    /// Adds a rule that offers exactly these cards.
    void offer(std::function<std::vector<Card>(Probe&)> run) { rules_.push_back({"cards", std::move(run)}); }

    /// Creates the store and waits for its first scan.
    Store& scannedStore() {
        makeStore();
        scan();
        return *store_;
    }
    Store& makeStore() {
        store_ = std::make_unique<Store>(sources_);
        return *store_;
    }
    void scan() {
        store_->scan();
        ASSERT_TRUE(waitFor([this] { return !store_->busy(); }));
    }
    /// Starts a clean and waits for it and for the scan after it.
    void clean() {
        store_->performClean();
        ASSERT_TRUE(waitFor([this] { return !store_->busy(); }));
    }
    void undo(std::size_t row = 0) {
        store_->undo(store_->history().at(row).id);
        ASSERT_TRUE(waitFor([this] { return !store_->busy(); }));
    }

    static std::filesystem::path trashFiles() { return testHome() / ".local/share/Trash/files"; }
    static std::filesystem::path trashInfo() { return testHome() / ".local/share/Trash/info"; }

    std::vector<Spec> rules_;
    Store::Sources sources_;
    std::unique_ptr<Store> store_;
    /// The snapshot that the backup tool does not delete.
    std::string refusedSnapshot_;
    std::mutex toolLock_;
    std::vector<std::string> toolCalls_;
};

}  // namespace vesk::testing
