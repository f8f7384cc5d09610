#include "vesk_shots/scenes.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QQuickItem>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <utility>

#include "core/scanner.h"
#include "support/staged_cards.h"

namespace vesk {

namespace {

constexpr std::int64_t megabyte = 1'000'000;
constexpr std::int64_t gigabyte = 1000 * megabyte;
// Brings the demo's quarter of a gigabyte to what a used disk holds.
constexpr std::int64_t realistic = 240;

void untilScanned(VeskApp& app) {
    runUntil([&] { return app.store().phase() == Store::Phase::done; });
}

std::vector<Card> threeCards() {
    return {stagedCard("caches", Bucket::safe, 18'400 * megabyte), stagedCard("ai", Bucket::smart, 36'200 * megabyte),
            stagedCard("films", Bucket::personal, 7 * gigabyte)};
}

Scene scene(
    std::string name, std::function<Store::Sources()> sources, std::function<void(VeskApp&)> act = [](VeskApp&) {}) {
    Scene result;
    result.name = std::move(name);
    result.sources = std::move(sources);
    result.act = [act = std::move(act)](VeskApp& app) {
        untilScanned(app);
        act(app);
    };
    return result;
}

// A scene of a scan under way: `finished` of ten rules are done, the others wait until its pictures are taken.
Scene scanningScene(std::string name, std::size_t finished, std::int64_t bytes) {
    auto released = std::make_shared<std::latch>(1);
    Scene result;
    result.name = std::move(name);
    result.sources = [=] {
        std::vector<Spec> rules(finished, staged({}));
        constexpr std::size_t all = 10;
        while (rules.size() < all) {
            rules.push_back(waiting(bytes / static_cast<std::int64_t>(all - finished), released));
        }
        return sourcesOf(rules);
    };
    result.act = [=](VeskApp& app) {
        runUntil([&] { return app.store().progress() >= static_cast<double>(finished) / 10 - 0.001; });
        runFor(300);  // two looks at the counters
    };
    result.release = [released] { released->count_down(); };
    result.moving = true;  // so that the spinner shows
    return result;
}

Store::Sources results() {
    return sourcesOf({staged(foundCards(realistic))});
}

// How far the first piece of confetti below `item` has fallen, in points.
double confettiDepth(const QQuickItem& item) {
    double deepest = item.objectName() == QLatin1String("confettiPiece") ? item.y() : 0;
    for (const QQuickItem* child : item.childItems()) {
        deepest = std::max(deepest, confettiDepth(*child));
    }
    return deepest;
}

// Frames come as fast as the machine draws them, so it is the paper that says when it has come far enough.
void untilConfettiIsHalfDown(VeskApp& app) {
    runUntil([&] { return confettiDepth(*app.window()->contentItem()) > app.window()->height() * 0.8; });
}

void setAll(Store& store, bool selected) {
    for (const Card& card : std::vector<Card>(store.cards())) {
        store.setSelected(QString::fromStdString(card.id), selected);
    }
}

void openDetail(VeskApp& app, const std::string& id) {
    app.store().setDetailID(id);
}

void showHistory(VeskApp& app) {
    for (QObject* item : app.window()->findChildren<QObject*>(QStringLiteral("tabs"))) {
        item->setProperty("current", 1);
    }
}

void cleanAndWait(VeskApp& app) {
    app.store().performClean();
    runUntil([&] { return app.store().celebration().has_value() && !app.store().busy(); });
}

QQuickItem* itemNamed(QQuickItem& item, const QString& name) {
    if (item.objectName() == name) {
        return &item;
    }
    for (QQuickItem* child : item.childItems()) {
        if (QQuickItem* const found = itemNamed(*child, name)) {
            return found;
        }
    }
    return nullptr;
}

// Of the items cleaned, some are back, the place of some is taken, and the rest have been emptied away.
void undoPartly(VeskApp& app) {
    cleanAndWait(app);
    app.store().dismissCelebration();
    const std::vector<HistoryEntry::Move> moves = app.store().history().at(0).moves;
    for (std::size_t i = 0; i < moves.size(); ++i) {
        if (i % 3 == 1) {
            stagedEntry(
                std::filesystem::path(moves[i].original).lexically_relative(Scanner::home() / "Staged").string(), 0);
        } else if (i % 3 == 2) {
            std::error_code ignored;
            std::filesystem::remove(moves[i].trashed, ignored);
        }
    }
    app.store().undo(app.store().history().at(0).id);
    runUntil([&] { return app.store().notice().has_value() && !app.store().busy(); });
    app.store().setNotice(std::nullopt);
    showHistory(app);
    QQuickItem* const pane = itemNamed(*app.window()->contentItem(), QStringLiteral("historyPane"));
    if (pane == nullptr) {
        return;
    }
    pane->setProperty("openedRun", QString::fromStdString(app.store().history().at(0).id.text()));
    runFor(200);  // until the answer is there
}

HistoryEntry pastRun(std::int64_t bytes, std::vector<std::string> titles, int hoursAgo) {
    HistoryEntry entry;
    entry.date = historyDate(std::chrono::sys_days(std::chrono::year(2024) / 5 / 14) +
                             std::chrono::hours(17 - hoursAgo) + std::chrono::minutes(22));
    entry.bytes = bytes;
    entry.titles = std::move(titles);
    return entry;
}

std::vector<HistoryEntry> everyKindOfRun() {
    HistoryEntry preview = pastRun(61 * gigabyte, {"App caches", "Old crash reports"}, 0);
    preview.preview = true;
    HistoryEntry real = pastRun(18'400 * megabyte, {"App caches"}, 3);
    real.moves = {{"/Users/robin/Library/Caches/a", "/Users/robin/.Trash/a", gigabyte}};
    HistoryEntry restored = pastRun(7 * gigabyte, {"Dormant AI models", "Old phone backups"}, 30);
    restored.undone = true;
    HistoryEntry snapshots = pastRun(420 * megabyte, {"Old crash reports", "Time Machine snapshots"}, 50);
    snapshots.snapshotsRemoved = 4;
    HistoryEntry one = pastRun(0, {"Time Machine snapshots"}, 80);
    one.snapshotsRemoved = 1;
    HistoryEntry many = pastRun(95 * gigabyte,
                                {"Downloads older than 60 days", "Idle website project folders", "Video editing caches",
                                 "Old iPhone and iPad device files", "Old Xcode build leftovers", "Package caches",
                                 "Virtual machine disks", "Support folders of removed apps", "Old Python environments"},
                                200);
    return {preview, real, restored, snapshots, one, many};
}

Card longNamedCard() {
    Card card = stagedCard("long", Bucket::smart, 9'123'000'000'000'000'000 / 3, 2);
    card.title = "Support folders of applications with exceptionally long and hardly ever abbreviated names";
    card.summary =
        "Everything that was left behind by programs that are no longer here, as far as it can be told from names that "
        "nobody thought would ever be shown to anyone in a list as narrow as this one.";
    for (Entry& entry : card.entries) {
        entry.name = "com.example.an-identifier-that-goes-on-and-on.and-on.and-on.helper.Helper.Renderer";
    }
    card.why += " " + card.why + " " + card.why + " " + card.why;
    return card;
}

// Names that would reach beyond their rows, turn round what stands beside them, or look like others.
Card oddlyNamedCard() {
    Card card = stagedCard("odd", Bucket::smart, 3 * gigabyte, 6);
    card.title = "Downloads older than 60 days";
    std::string tower = "tower";
    for (int i = 0; i < 40; ++i) {
        tower += "\xCC\x81\xCC\xA3";  // an acute accent above and a dot below
    }
    const std::string names[] = {"Invoice.pdf",
                                 tower,
                                 "photo\xE2\x80\xAEgpj.exe",
                                 "two\nlines and\x1B[31m red",
                                 "in\xE2\x80\x8Bvisible\xEF\xBB\xBF",
                                 "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x94\xA7.txt"};
    for (std::size_t i = 0; i < card.entries.size(); ++i) {
        card.entries[i].name = names[i];
    }
    return card;
}

void addScanScenes(std::vector<Scene>& scenes) {
    scenes.push_back(scanningScene("scanning-0", 0, 0));
    scenes.push_back(scanningScene("scanning-half", 5, 12'345 * megabyte));
    scenes.push_back(scene("empty", [] { return sourcesOf({}); }));

    Scene picked = scene("results-some-ticked", results, [](VeskApp& app) {
        app.store().setSelected(QStringLiteral("video"), true);
        app.store().setSelected(QStringLiteral("ai"), true);
    });
    picked.main = true;
    scenes.push_back(std::move(picked));
    Scene found = scene("results", results);
    found.main = true;
    scenes.push_back(std::move(found));
    scenes.push_back(scene("results-all-ticked", results, [](VeskApp& app) { setAll(app.store(), true); }));
    scenes.push_back(scene("results-none-ticked", results, [](VeskApp& app) { setAll(app.store(), false); }));
    scenes.push_back(scene("results-preview", results, [](VeskApp& app) { app.store().setPreviewOnly(true); }));
    scenes.push_back(scene("blocked", [] {
        return sourcesOf({staged(foundCards(realistic)), refused("App caches"), refused("Old downloads"),
                          refused("Phone and tablet files")});
    }));
    scenes.push_back(scene("blocked-and-empty", [] { return sourcesOf({refused("App caches")}); }));
    scenes.push_back(scene("long-names", [] {
        std::vector<Card> cards = threeCards();
        cards.insert(cards.begin(), longNamedCard());
        cards.push_back(stagedCard("tiny", Bucket::safe, 1, 1));
        return sourcesOf({staged(cards)});
    }));
    scenes.push_back(scene("500-cards", [] {
        std::vector<Card> cards;
        for (int number = 1; number <= 500; ++number) {
            const Bucket bucket = number % 3 == 0 ? Bucket::smart : Bucket::safe;
            cards.push_back(stagedCard("card-" + std::to_string(number), bucket, (501 - number) * megabyte, 1));
            cards.back().title += " " + std::to_string(number);
        }
        return sourcesOf({staged(cards)});
    }));
}

void addDialogScenes(std::vector<Scene>& scenes) {
    const auto withSnapshots = [] {
        std::vector<Card> cards = threeCards();
        cards.push_back(snapshotCard(2));
        return sourcesOf({staged(cards)});
    };
    const auto confirm = [](VeskApp& app) { app.store().setShowConfirm(true); };
    Scene confirmScene = scene("confirm", results, confirm);
    confirmScene.main = true;
    scenes.push_back(std::move(confirmScene));
    scenes.push_back(scene("confirm-snapshots", withSnapshots, confirm));
    scenes.push_back(scene("confirm-preview", withSnapshots, [](VeskApp& app) {
        app.store().setPreviewOnly(true);
        app.store().setShowConfirm(true);
    }));
    scenes.push_back(scene("alert-all-back", results,
                           [](VeskApp& app) { app.store().setNotice("All 3 items are back where they were."); }));
    scenes.push_back(scene("alert-some-back", results, [](VeskApp& app) {
        app.store().setNotice("Put back 1 of 3 items. The rest are no longer in the Trash (maybe it was emptied).");
    }));
    scenes.push_back(scene("cleaning", results, [](VeskApp& app) {
        app.store().setPreviewOnly(true);
        app.store().performClean();  // a preview takes its time, which is when the picture is taken
    }));
}

void addDetailScenes(std::vector<Scene>& scenes) {
    const auto with = [](const std::vector<Card>& cards) { return [cards] { return sourcesOf({staged(cards)}); }; };
    const auto open = [](const std::string& id) { return [id](VeskApp& app) { openDetail(app, id); }; };
    for (const std::size_t entries : {std::size_t{8}, std::size_t{9}, std::size_t{500}}) {
        const std::string name = "detail-" + std::to_string(entries) + "-entries";
        scenes.push_back(scene(
            name,
            [entries] { return sourcesOf({staged({stagedCard("caches", Bucket::safe, 18'400 * megabyte, entries)})}); },
            open("caches")));
    }
    scenes.back().main = true;
    scenes.push_back(scene("detail-smart", with({stagedCard("ai", Bucket::smart, 36 * gigabyte, 2)}), open("ai")));
    scenes.push_back(scene("detail-personal", with({stagedCard("f", Bucket::personal, gigabyte, 1)}), open("f")));
    scenes.push_back(scene("detail-snapshots", with({snapshotCard(3)}), open("snapshots")));
    scenes.push_back(scene("detail-long-names", with({longNamedCard()}), open("long")));
    scenes.push_back(scene("detail-odd-names", with({oddlyNamedCard()}), open("odd")));
    scenes.push_back(scene("detail-gone", results, open("no such card")));
}

void addHistoryScenes(std::vector<Scene>& scenes) {
    scenes.push_back(scene("history-empty", results, showHistory));
    Scene kinds = scene("history", results, showHistory);
    kinds.history = everyKindOfRun();
    kinds.main = true;
    scenes.push_back(std::move(kinds));
    scenes.push_back(scene(
        "history-details",
        [] { return sourcesOf({staged({stagedCard("caches", Bucket::safe, 18'400 * megabyte, 9)})}); }, undoPartly));
    Scene scanning = scanningScene("history-while-scanning", 3, gigabyte);
    scanning.history = everyKindOfRun();
    scanning.act = [act = scanning.act](VeskApp& app) {
        act(app);
        showHistory(app);
    };
    scanning.settle = [](VeskApp&) { runFor(1'600); };  // the switch springs
    scenes.push_back(std::move(scanning));
}

void addCelebrationScenes(std::vector<Scene>& scenes) {
    const auto celebration = [&](std::string name, std::function<Store::Sources()> sources, bool preview = false) {
        Scene result = scene(std::move(name), std::move(sources), [preview](VeskApp& app) {
            app.store().setPreviewOnly(preview);
            cleanAndWait(app);
        });
        result.moving = true;
        result.settle = untilConfettiIsHalfDown;
        scenes.push_back(std::move(result));
    };
    celebration("celebration", [] { return sourcesOf({staged(threeCards())}); });
    scenes.back().main = true;
    celebration(
        "celebration-preview", [] { return sourcesOf({staged(threeCards())}); }, true);
    celebration("celebration-snapshot-and-failures", [] {
        Card card = stagedCard("caches", Bucket::safe, 18'400 * megabyte);
        card.entries.push_back(stagedEntry("missing/one", megabyte, OnDisk::missing));
        card.entries.push_back(stagedEntry("missing/two", megabyte, OnDisk::missing));
        return sourcesOf({staged({card, snapshotCard(1)})});
    });
    celebration("celebration-nothing-freed",
                [] { return sourcesOf({staged({snapshotCard(2)})}, BackupTool::refusesAll); });
}

}  // namespace

bool runUntil(const std::function<bool()>& done) {
    constexpr int patienceMilliseconds = 10'000;
    QElapsedTimer timer;
    timer.start();
    while (!done() && timer.elapsed() < patienceMilliseconds) {
        runFor(10);
    }
    return done();
}

void runFor(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

std::vector<Scene> allScenes() {
    std::vector<Scene> scenes;
    addScanScenes(scenes);
    addDialogScenes(scenes);
    addDetailScenes(scenes);
    addHistoryScenes(scenes);
    addCelebrationScenes(scenes);
    return scenes;
}

}  // namespace vesk
