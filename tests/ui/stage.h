// Gives the view tests real stores on a made-up home, with cards that a test describes.
#pragma once

#include <QObject>
#include <QQuickItem>
#include <QVariant>
#include <latch>
#include <memory>
#include <vector>

#include "core/card.h"
#include "state/store.h"

namespace vesk {

class Stage : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~Stage() override;

    /// A new store, which replaces the previous one. A card is a map of any of: id, title, symbol, bucket, summary,
    /// why, dormancyDays, selected, entries (sizes in bytes; missing ones have no file), names (of the entries),
    /// snapshots (their number), missing. Options: blocked (labels of denied rules), capacity and free (bytes), hold (a
    /// number of rules that wait until `release`), holdBytes (what they have measured), history (maps of bytes,
    /// preview, titles, snapshotsRemoved, undone, moves (their number)), toolFails.
    Q_INVOKABLE vesk::Store* open(const QVariantList& cards = {}, const QVariantMap& options = {});
    /// Sets what the current store's next scan finds.
    Q_INVOKABLE void find(const QVariantList& cards);
    /// Puts a file in the original place of a card's entry, by its number from 1.
    Q_INVOKABLE static void occupy(const QString& cardID, int entry);
    /// Empties the Trash.
    Q_INVOKABLE static void emptyTrash();
    /// Lets waiting rules end.
    Q_INVOKABLE void release();
    /// The types of the accessible controls and figures in an item that have no name.
    Q_INVOKABLE static QStringList nameless(QQuickItem* item);
    /// The names of everything accessible in an item, including what is out of view.
    Q_INVOKABLE static QStringList readable(QQuickItem* item);

private:
    std::unique_ptr<Store> store_;
    std::vector<Card> cards_;
    std::shared_ptr<std::latch> latch_;
};

}  // namespace vesk
