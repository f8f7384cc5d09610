#include "ui/stage.h"

#include <QAccessible>
#include <QJSEngine>
#include <QQuickItem>
#include <filesystem>
#include <string>
#include <system_error>

#include "core/probe.h"
#include "platform/system/preferences.h"
#include "platform/world.h"
#include "state/history_codec.h"
#include "support/staged_cards.h"

namespace vesk {

namespace {

Card cardOf(const QVariantMap& fields) {
    const auto text = [&](const char* key, const char* otherwise) {
        return fields.value(QLatin1String(key), QLatin1String(otherwise)).toString().toStdString();
    };
    Card card;
    card.id = text("id", "card");
    card.title = text("title", "App caches");
    card.symbol = text("symbol", "internaldrive");
    card.bucket = bucketFromRawValue(text("bucket", "safe")).value_or(Bucket::safe);
    card.confidence = 1;
    card.risk = 1;
    card.summary = text("summary", "Temporary files.");
    card.why = text("why", "Apps make these again.");
    card.dormancyDays = fields.value(QStringLiteral("dormancyDays"), 30.0).toDouble();
    card.selected = fields.value(QStringLiteral("selected"), card.bucket == Bucket::safe).toBool();
    const OnDisk onDisk = fields.value(QStringLiteral("missing")).toBool() ? OnDisk::missing : OnDisk::present;
    const QStringList names = fields.value(QStringLiteral("names")).toStringList();
    int number = 0;
    for (const QVariant& size : fields.value(QStringLiteral("entries")).toList()) {
        card.entries.push_back(stagedEntry(card.id + "/Item " + std::to_string(++number), size.toLongLong(), onDisk));
        if (number <= names.size()) {
            card.entries.back().name = names[number - 1].toStdString();
        }
    }
    for (int count = fields.value(QStringLiteral("snapshots")).toInt(); count > 0; --count) {
        card.snapshotIDs.push_back("2024-05-01-10150" + std::to_string(count % 10));
    }
    return card;
}

std::vector<Card> cardsOf(const QVariantList& descriptions) {
    std::vector<Card> cards;
    for (const QVariant& description : descriptions) {
        cards.push_back(cardOf(description.toMap()));
    }
    return cards;
}

std::vector<HistoryEntry> historyOf(const QVariantList& descriptions) {
    std::vector<HistoryEntry> history;
    for (const QVariant& description : descriptions) {
        const QVariantMap fields = description.toMap();
        HistoryEntry entry;
        entry.bytes = fields.value(QStringLiteral("bytes")).toLongLong();
        entry.preview = fields.value(QStringLiteral("preview")).toBool();
        for (const QString& title : fields.value(QStringLiteral("titles")).toStringList()) {
            entry.titles.push_back(title.toStdString());
        }
        entry.snapshotsRemoved = fields.value(QStringLiteral("snapshotsRemoved")).toLongLong();
        entry.undone = fields.value(QStringLiteral("undone")).toBool();
        for (int move = fields.value(QStringLiteral("moves")).toInt(); move > 0; --move) {
            const std::string name = "Item " + std::to_string(move);
            entry.moves.push_back({world().home / "Staged" / name, world().home / ".Trash" / name, 1000});
        }
        history.push_back(std::move(entry));
    }
    return history;
}

// Controls and figures; what only groups others needs no name.
bool needsName(const QAccessibleInterface& item) {
    const QAccessible::Role role = item.role();
    return role != QAccessible::Client && role != QAccessible::Window && role != QAccessible::NoRole;
}

// Everything accessible that is in an item, from the top; what only groups others is no part of it.
QList<QAccessibleInterface*> accessibleIn(QQuickItem* item) {
    QList<QAccessibleInterface*> found;
    if (QAccessibleInterface* const own = QAccessible::queryAccessibleInterface(item)) {
        found.append(own);
        for (qsizetype next = 0; next < found.size(); ++next) {
            for (int place = 0; place < found.at(next)->childCount(); ++place) {
                found.append(found.at(next)->child(place));
            }
        }
        return found;
    }
    for (QQuickItem* const child : item->childItems()) {
        found += accessibleIn(child);
    }
    return found;
}

}  // namespace

Stage::~Stage() {
    release();
}

Store* Stage::open(const QVariantList& cards, const QVariantMap& options) {
    release();
    store_.reset();
    std::error_code ignored;
    std::filesystem::remove_all(world().home, ignored);
    std::filesystem::create_directories(world().home, ignored);
    Preferences().setData("vesk.history", encodeHistory(historyOf(options.value(QStringLiteral("history")).toList())));

    cards_ = cardsOf(cards);
    latch_ = std::make_shared<std::latch>(1);
    std::vector<Spec> others;
    for (const QString& label : options.value(QStringLiteral("blocked")).toStringList()) {
        others.push_back(refused(label.toStdString()));
    }
    for (int held = options.value(QStringLiteral("hold")).toInt(); held > 0; --held) {
        others.push_back(waiting(options.value(QStringLiteral("holdBytes")).toLongLong(), latch_));
    }
    Store::Sources sources =
        sourcesOf({}, options.value(QStringLiteral("toolFails")).toBool() ? BackupTool::refusesAll : BackupTool::works);
    sources.catalogue = [this, others] {
        std::vector<Spec> rules = others;
        rules.push_back(staged(cards_));
        return rules;
    };
    const std::int64_t capacity = options.value(QStringLiteral("capacity"), 1'000'000'000).toLongLong();
    const std::int64_t free = options.value(QStringLiteral("free"), 400'000'000).toLongLong();
    sources.volume = [=] { return VolumeFigures{capacity, free}; };
    store_ = std::make_unique<Store>(sources);
    // What a method returns belongs to the scripts otherwise.
    QJSEngine::setObjectOwnership(store_.get(), QJSEngine::CppOwnership);
    return store_.get();
}

void Stage::find(const QVariantList& cards) {
    cards_ = cardsOf(cards);
}

void Stage::occupy(const QString& cardID, int entry) {
    stagedEntry(cardID.toStdString() + "/Item " + std::to_string(entry), 0, OnDisk::present);
}

void Stage::emptyTrash() {
    std::error_code ignored;
    std::filesystem::remove_all(world().dataHome / "Trash", ignored);
}

void Stage::release() {
    if (latch_ && !latch_->try_wait()) {
        latch_->count_down();
    }
}

QStringList Stage::readable(QQuickItem* item) {
    QStringList names;
    for (const QAccessibleInterface* const found : accessibleIn(item)) {
        names.append(found->text(QAccessible::Name));
    }
    return names;
}

QStringList Stage::nameless(QQuickItem* item) {
    QStringList classes;
    for (const QAccessibleInterface* const found : accessibleIn(item)) {
        if (!found->state().invisible && needsName(*found) && found->text(QAccessible::Name).isEmpty()) {
            classes.append(QString::fromLatin1(found->object()->metaObject()->className()));
        }
    }
    return classes;
}

}  // namespace vesk
