// Gives the tests of the views real stores over a made-up home, with cards that a test describes.
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

    /// A fresh store; the one before it is gone. A card is a map of any of: id, title, symbol, bucket, summary, why,
    /// dormancyDays, selected, entries (sizes in bytes; missing ones have no file), names (of the entries), snapshots
    /// (their number), missing. Options: blocked (labels of refused rules), capacity and free (bytes), hold (a number
    /// of rules that wait until `release`), holdBytes (what they have measured), history (maps of bytes, preview,
    /// titles, snapshotsRemoved, undone, moves (their number)), toolFails.
    Q_INVOKABLE vesk::Store* open(const QVariantList& cards = {}, const QVariantMap& options = {});
    /// What the next scan of the store in use finds.
    Q_INVOKABLE void find(const QVariantList& cards);
    /// Puts a file in the place of a card's entry, by its number from 1.
    Q_INVOKABLE static void occupy(const QString& cardID, int entry);
    /// Empties the Trash.
    Q_INVOKABLE static void emptyTrash();
    /// Lets waiting rules end.
    Q_INVOKABLE void release();
    /// Types of the controls and figures in an item that assistive technology sees without a name.
    Q_INVOKABLE static QStringList nameless(QQuickItem* item);
    /// Names of all that assistive technology finds in an item, also out of sight.
    Q_INVOKABLE static QStringList readable(QQuickItem* item);

private:
    std::unique_ptr<Store> store_;
    std::vector<Card> cards_;
    std::shared_ptr<std::latch> latch_;
};

}  // namespace vesk
