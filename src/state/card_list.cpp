#include "state/card_list.h"

#include <QString>
#include <algorithm>

#include "core/byte_count.h"
#include "state/list_diff.h"

namespace vesk {

struct CardList::RowSteps {
    CardList& list;

    void beginRemove(std::size_t row) { list.beginRemoveRows({}, static_cast<int>(row), static_cast<int>(row)); }
    void endRemove() { list.endRemoveRows(); }
    void beginInsert(std::size_t row) { list.beginInsertRows({}, static_cast<int>(row), static_cast<int>(row)); }
    void endInsert() { list.endInsertRows(); }
    void beginMove(std::size_t from, std::size_t to) {
        list.beginMoveRows({}, static_cast<int>(from), static_cast<int>(from), {}, static_cast<int>(to));
    }
    void endMove() { list.endMoveRows(); }
    void rowChanged(std::size_t row) {
        const QModelIndex changed = list.index(static_cast<int>(row));
        Q_EMIT list.dataChanged(changed, changed);
    }
};

void CardList::replace(std::vector<Card> cards) {
    const std::size_t before = cards_.size();
    RowSteps steps{*this};
    applyListDiff(steps, cards_, std::move(cards), [](const Card& card) -> const std::string& { return card.id; });
    if (cards_.size() != before) {
        Q_EMIT countChanged();
    }
}

int CardList::firstSelected() const {
    const auto found = std::find_if(cards_.begin(), cards_.end(), [](const Card& card) { return card.selected; });
    return found == cards_.end() ? -1 : static_cast<int>(found - cards_.begin());
}

void CardList::setSelected(std::size_t row, bool value) {
    cards_[row].selected = value;
    const QModelIndex changed = index(static_cast<int>(row));
    Q_EMIT dataChanged(changed, changed, {SelectedRole});
}

int CardList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant CardList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Card& card = cards_[static_cast<std::size_t>(index.row())];
    switch (role) {
        case CardIdRole:
            return QString::fromStdString(card.id);
        case Qt::DisplayRole:
        case TitleRole:
            return QString::fromStdString(card.title);
        case SymbolRole:
            return QString::fromStdString(card.symbol);
        case BucketRole:
            return QString::fromLatin1(rawValue(card.bucket).data());
        case SummaryRole:
            return QString::fromStdString(card.summary);
        case SizeTextRole:
            return QString::fromStdString(byteCountText(card.size()));
        case SnapshotCountRole:
            return static_cast<int>(card.snapshotIDs.size());
        case SelectedRole:
            return card.selected;
        default:
            return {};
    }
}

QHash<int, QByteArray> CardList::roleNames() const {
    return {
        {CardIdRole, "cardId"},
        {TitleRole, "title"},
        {SymbolRole, "symbol"},
        {BucketRole, "bucket"},
        {SummaryRole, "summary"},
        {SizeTextRole, "sizeText"},
        {SnapshotCountRole, "snapshotCount"},
        {SelectedRole, "selected"},
    };
}

}  // namespace vesk
