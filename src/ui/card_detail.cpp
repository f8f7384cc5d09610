#include "ui/card_detail.h"

#include <algorithm>
#include <limits>

#include "core/byte_count.h"
#include "platform/text.h"

namespace vesk {

void EntryList::show(const std::vector<Entry>& entries) {
    const auto end = entries.begin() + static_cast<std::ptrdiff_t>(std::min(entries.size(), limit));
    if (std::equal(entries.begin(), end, entries_.begin(), entries_.end())) {
        return;
    }
    beginResetModel();
    entries_.assign(entries.begin(), end);
    endResetModel();
}

int EntryList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant EntryList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Entry& entry = entries_[static_cast<std::size_t>(index.row())];
    switch (role) {
        case EntryIdRole:
            return QString::fromStdString(entry.id.text());
        case Qt::DisplayRole:
        case NameRole:
            return QString::fromStdString(showable(entry.name));
        case SizeTextRole:
            return QString::fromStdString(byteCountText(entry.size));
        default:
            return {};
    }
}

QHash<int, QByteArray> EntryList::roleNames() const {
    return {{EntryIdRole, "entryId"}, {NameRole, "name"}, {SizeTextRole, "sizeText"}};
}

void CardDetail::setStore(Store* store) {
    if (store == store_) {
        return;
    }
    if (store_ != nullptr) {
        store_->disconnect(this);
    }
    store_ = store;
    if (store_ != nullptr) {
        connect(store_, &Store::cardsChanged, this, &CardDetail::lookUp);
        connect(store_, &QObject::destroyed, this, [this] { setStore(nullptr); });
    }
    Q_EMIT storeChanged();
    lookUp();
}

void CardDetail::setCardID(const QString& id) {
    if (id != cardID_) {
        cardID_ = id;
        Q_EMIT cardIDChanged();
        lookUp();
    }
}

void CardDetail::lookUp() {
    card_ = store_ == nullptr ? std::nullopt : store_->card(cardID_.toStdString());
    entries_.show(card_ ? card_->entries : std::vector<Entry>());
    Q_EMIT changed();
}

QString CardDetail::title() const {
    return card_ ? QString::fromStdString(card_->title) : QString();
}

QString CardDetail::symbol() const {
    return card_ ? QString::fromStdString(card_->symbol) : QString();
}

QString CardDetail::bucket() const {
    return card_ ? QString::fromLatin1(rawValue(card_->bucket).data()) : QString();
}

QString CardDetail::sizeText() const {
    return card_ ? QString::fromStdString(byteCountText(card_->size())) : QString();
}

int CardDetail::snapshotCount() const {
    return card_ ? static_cast<int>(card_->snapshotIDs.size()) : 0;
}

int CardDetail::moreCount() const {
    return card_ && card_->entries.size() > EntryList::limit
               ? static_cast<int>(card_->entries.size() - EntryList::limit)
               : 0;
}

QString CardDetail::why() const {
    return card_ ? QString::fromStdString(card_->why) : QString();
}

int CardDetail::dormancyDays() const {
    constexpr double most = std::numeric_limits<int>::max();
    return card_ ? static_cast<int>(std::min(card_->dormancyDays, most)) : 0;
}

bool CardDetail::selected() const {
    return card_ && card_->selected;
}

}  // namespace vesk
