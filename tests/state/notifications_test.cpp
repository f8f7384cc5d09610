// A Store's signals: their order, and what their handlers may do.

#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <map>

#include "state/cleaning_fixture.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAreArray;

class NotificationsTest : public CleaningTest {
protected:
    NotificationsTest() {
        sources_.previewPause = std::chrono::milliseconds(1);
        sources_.volume = [] { return VolumeFigures{1000, 400}; };
    }

    // Records all changes from now on, each with its new value. How often the polled figures arrive depends on the
    // machine's speed: of consecutive ones, one pair is recorded.
    void record() {
        Store& store = *store_;
        const auto note = [this](const std::string& what) {
            const std::size_t size = told_.size();
            const bool isPolledAgain = size >= 2 && what.starts_with("filesSeen") &&
                                       told_[size - 1].starts_with("foundBytes") && told_[size - 2] == "filesSeen";
            if (isPolledAgain) {
                told_.pop_back();
            } else {
                told_.push_back(what);
            }
        };
        const auto on = [&](void (Store::*changed)(), auto what) {
            QObject::connect(&store, changed, [note, what] { note(what()); });
        };
        on(&Store::phaseChanged, [&store] {
            return std::string("phase ") + (store.phase() == Store::Phase::scanning ? "scanning" : "done");
        });
        on(&Store::progressChanged, [&store] { return "progress " + std::to_string(store.progress()).substr(0, 3); });
        on(&Store::foundBytesChanged, [] { return std::string("foundBytes"); });
        on(&Store::filesSeenChanged, [] { return std::string("filesSeen"); });
        on(&Store::capacityChanged, [] { return std::string("capacity"); });
        on(&Store::freeChanged, [] { return std::string("free"); });
        on(&Store::cardsChanged, [&store] { return "cards " + std::to_string(store.cards().size()); });
        on(&Store::blockedAreasChanged, [] { return std::string("blockedAreas"); });
        on(&Store::cleaningChanged, [&store] {
            return std::string("cleaning ") +
                   (store.cleaning() ? "begins" : "ends, stored " + std::to_string(storedHistory().size()));
        });
        on(&Store::celebrationChanged, [] { return std::string("celebration"); });
        on(&Store::noticeChanged, [&store] { return "notice " + store.notice().value_or("-"); });
        on(&Store::showConfirmChanged, [] { return std::string("showConfirm"); });
        on(&Store::detailIDChanged, [] { return std::string("detailID"); });
        on(&Store::previewOnlyChanged, [] { return std::string("previewOnly"); });
        const auto* history = store.property("history").value<HistoryList*>();
        QObject::connect(history, &HistoryList::rowsInserted,
                         [note](const QModelIndex&, int row) { note("history row " + std::to_string(row)); });
        QObject::connect(history, &HistoryList::dataChanged, [note, &store] {
            note(std::string("undone ") + (store.history().at(0).undone ? "yes" : "no"));
        });
    }

    // Calls this from the event loop each time a run is being stored.
    QMetaObject::Connection queueWhileARunIsStored(const std::function<void()>& action) {
        const auto* history = store_->property("history").value<HistoryList*>();
        return QObject::connect(history, &HistoryList::rowsInserted, [action] {
            QMetaObject::invokeMethod(QCoreApplication::instance(), action, Qt::QueuedConnection);
        });
    }

    std::vector<std::string> told_;
    const std::vector<std::string> scan_ = {"phase scanning", "progress 0.0", "foundBytes", "filesSeen",   "capacity",
                                            "free",           "foundBytes",   "filesSeen",  "progress 1.0"};
};

std::vector<std::string> joined(std::vector<std::string> first, const std::vector<std::string>& second,
                                const std::vector<std::string>& third = {}) {
    first.insert(first.end(), second.begin(), second.end());
    first.insert(first.end(), third.begin(), third.end());
    return first;
}

TEST_F(NotificationsTest, AScanTellsItsStepsInOrder) {
    writeFile(junk() / "a", "a");
    offerItemsOf(junk());
    makeStore();
    record();
    scan();
    const auto expected = joined(scan_, {"cards 1", "blockedAreas", "phase done", "capacity", "free"});
    EXPECT_THAT(told_, ElementsAreArray(expected));
}

TEST_F(NotificationsTest, ACleanTellsItsStepsInOrder) {
    writeFile(junk() / "a", "a");
    offerItemsOf(junk());
    scannedStore();
    record();
    clean();
    const auto expected = joined({"cleaning begins", "history row 0", "cleaning ends, stored 1", "celebration"}, scan_,
                                 {"cards 0", "blockedAreas", "phase done", "capacity", "free"});
    EXPECT_THAT(told_, ElementsAreArray(expected));
}

TEST_F(NotificationsTest, APreviewTellsItsStepsInOrder) {
    writeFile(junk() / "a", "a");
    offerItemsOf(junk());
    scannedStore().setPreviewOnly(true);
    record();
    clean();
    EXPECT_THAT(told_,
                ElementsAreArray({"cleaning begins", "history row 0", "cleaning ends, stored 1", "celebration"}));
}

TEST_F(NotificationsTest, AnUndoTellsItsStepsInOrder) {
    writeFile(junk() / "a", "a");
    offerItemsOf(junk());
    scannedStore();
    clean();
    record();
    undo();
    const auto expected = joined(
        {"cleaning begins", "cleaning ends, stored 1", "undone yes", "notice All 1 items are back where they were."},
        scan_, {"cards 1", "blockedAreas", "phase done", "capacity", "free"});
    EXPECT_THAT(told_, ElementsAreArray(expected));
    EXPECT_TRUE(storedHistory().at(0).undone);
}

// A history of many runs takes seconds to store.
TEST_F(NotificationsTest, OtherEventsAreHandledWhileARunIsStored) {
    writeFile(junk() / "a", "a");
    offerItemsOf(junk());
    Store& store = scannedStore();
    for (const bool preview : {true, false}) {
        store.setPreviewOnly(preview);
        bool wasHandled = false;
        const auto inserting = queueWhileARunIsStored([&] { wasHandled = store.cleaning(); });
        clean();
        QObject::disconnect(inserting);
        EXPECT_TRUE(wasHandled) << (preview ? "in a preview" : "in a clean");
    }
}

TEST_F(NotificationsTest, ASaveWhileARunIsStoredWaitsForThat) {
    writeFile(junk() / "a", "a");
    offerItemsOf(junk());
    Store& store = scannedStore();
    queueWhileARunIsStored([&] { store.saveHistory(); });
    clean();
    ASSERT_TRUE(store.celebration());
    EXPECT_EQ(storedHistory(), store.history());
    undo();
    EXPECT_EQ(storedHistory(), store.history());
}

TEST_F(NotificationsTest, AStoreEndedWhileARunIsStoredHasStoredIt) {
    writeFile(junk() / "a", "a");
    offerItemsOf(junk());
    Store& store = scannedStore();
    queueWhileARunIsStored([&] { store_.reset(); });
    store.performClean();
    ASSERT_TRUE(waitFor([&] { return !store_; }));
    ASSERT_EQ(storedHistory().size(), 1U);
    EXPECT_EQ(storedHistory()[0].moves.size(), 1U);
}

using Signal = void (Store::*)();

const std::map<std::string, Signal> notifications = {
    {"phase", &Store::phaseChanged},
    {"cards", &Store::cardsChanged},
    {"blockedAreas", &Store::blockedAreasChanged},
    {"progress", &Store::progressChanged},
    {"foundBytes", &Store::foundBytesChanged},
    {"filesSeen", &Store::filesSeenChanged},
    {"capacity", &Store::capacityChanged},
    {"free", &Store::freeChanged},
    {"cleaning", &Store::cleaningChanged},
    {"celebration", &Store::celebrationChanged},
    {"notice", &Store::noticeChanged},
    {"previewOnly", &Store::previewOnlyChanged},
    {"totals", &Store::totalsChanged},
    {"busy", &Store::busyChanged},
};

// Performs each action in the nth call of a handler for each signal of each operation.
class HandlersTest : public NotificationsTest, public ::testing::WithParamInterface<const char*> {
protected:
    HandlersTest() { offerItemsOf(junk()); }

    // One clean has been done, and there are items for the next.
    void startAfresh() {
        store_.reset();
        fs::remove_all(testHome());
        for (const char* const name : {"a", "b"}) {
            writeFile(junk() / name, name);
        }
        scannedStore();
        clean();
        for (const char* const name : {"c", "d"}) {
            writeFile(junk() / name, name);
        }
        scan();
    }

    void begin(const std::string& operation) {
        if (operation == "scan") {
            store_->scan();
        } else if (operation == "undo") {
            store_->undo(store_->history().at(0).id);
        } else {
            store_->setPreviewOnly(operation == "preview");
            if (store_) {
                store_->performClean();
            }
        }
    }

    void act(const std::string& action) {
        if (action == "end") {
            store_.reset();
        } else if (action == "toggle") {
            store_->setSelected("junk", !store_->selectedCount());
            store_->setPreviewOnly(!store_->previewOnly());
        } else {
            begin(action);
        }
    }

    // Each file exists once, at its place or in the Trash with a record, and the history can be read.
    void expectNothingLost(const std::string& when) const {
        for (const std::string name : {"a", "b", "c", "d"}) {
            const bool isInTrash = isThere(trashFiles() / name);
            EXPECT_NE(isThere(junk() / name), isInTrash) << name << when;
            EXPECT_EQ(contentOf((isInTrash ? trashFiles() : junk()) / name), name) << when;
            EXPECT_EQ(isThere(trashInfo() / (name + ".trashinfo")), isInTrash) << name << when;
        }
        const auto stored = decodeHistory(Preferences().data("vesk.history").value_or(""));
        ASSERT_TRUE(stored) << when;
        for (const HistoryEntry& entry : *stored) {
            EXPECT_EQ(entry.titles.size(), 1U) << when;
            EXPECT_TRUE(!entry.preview || entry.moves.empty()) << when;
            std::int64_t sum = 0;
            for (const HistoryEntry::Move& move : entry.moves) {
                sum += move.size;
            }
            EXPECT_EQ(entry.preview ? entry.bytes > 0 : entry.bytes == sum, true) << when;
        }
        if (store_) {
            EXPECT_EQ(store_->history(), *stored) << when;
        }
    }
};

TEST_P(HandlersTest, MayDoAnythingInsideEachNotification) {
    const std::string operation = GetParam();
    for (const auto& [name, signal] : notifications) {
        for (const std::string action : {"scan", "clean", "preview", "undo", "toggle", "end"}) {
            for (int nth = 1;; ++nth) {
                const std::string when =
                    ": " + action + " inside " + name + " " + std::to_string(nth) + " of " + operation;
                startAfresh();
                int times = 0;
                QObject::connect(store_.get(), signal, [&, action = action] {
                    if (++times == nth) {
                        act(action);
                    }
                });
                begin(operation);
                ASSERT_TRUE(waitFor([this] { return !store_ || !store_->busy(); })) << when;
                expectNothingLost(when);
                const bool wasTold = times >= nth;
                if (store_) {
                    store_->disconnect();
                }
                if (!wasTold || nth == 2 || HasFailure()) {
                    break;
                }
            }
            if (HasFailure()) {
                return;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Of, HandlersTest, ::testing::Values("scan", "clean", "preview", "undo"),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace
}  // namespace vesk
