// One card as its detail sheet shows it, looked up in the store by its id whenever the cards change. Created by a view,
// on the main thread.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>
#include <QString>
#include <optional>

#include "core/card.h"
#include "state/store.h"

namespace vesk {

/// The first few of the card's entries as a list model.
class EntryList : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS

public:
    enum Role { EntryIdRole = Qt::UserRole, NameRole, SizeTextRole };
    /// The most entries listed.
    static constexpr std::size_t limit = 8;

    using QAbstractListModel::QAbstractListModel;

    /// Shows the first entries of `entries`.
    void show(const std::vector<Entry>& entries);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<Entry> entries_;
};

class CardDetail : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(vesk::Store* store READ store WRITE setStore NOTIFY storeChanged)
    Q_PROPERTY(QString cardID READ cardID WRITE setCardID NOTIFY cardIDChanged)
    /// Whether the store has this card; if not, everything below is empty.
    Q_PROPERTY(bool found READ found NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(QString bucket READ bucket NOTIFY changed)
    Q_PROPERTY(QString sizeText READ sizeText NOTIFY changed)
    Q_PROPERTY(int snapshotCount READ snapshotCount NOTIFY changed)
    Q_PROPERTY(vesk::EntryList* entries READ entries CONSTANT)
    /// How many of the card's entries are not in `entries`.
    Q_PROPERTY(int moreCount READ moreCount NOTIFY changed)
    Q_PROPERTY(QString why READ why NOTIFY changed)
    /// Whole days since the card was last used.
    Q_PROPERTY(int dormancyDays READ dormancyDays NOTIFY changed)
    Q_PROPERTY(bool selected READ selected NOTIFY changed)

public:
    using QObject::QObject;

    Store* store() const { return store_; }
    void setStore(Store* store);
    const QString& cardID() const { return cardID_; }
    void setCardID(const QString& id);

    bool found() const { return card_.has_value(); }
    QString title() const;
    QString symbol() const;
    QString bucket() const;
    QString sizeText() const;
    int snapshotCount() const;
    EntryList* entries() { return &entries_; }
    int moreCount() const;
    QString why() const;
    int dormancyDays() const;
    bool selected() const;

Q_SIGNALS:
    void storeChanged();
    void cardIDChanged();
    void changed();

private:
    void lookUp();

    Store* store_ = nullptr;
    QString cardID_;
    std::optional<Card> card_;
    EntryList entries_;
};

}  // namespace vesk
