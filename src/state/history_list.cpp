#include "state/history_list.h"

#include <QDateTime>
#include <QLocale>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>
#include <utility>

#include "core/byte_count.h"
#include "platform/text.h"

namespace vesk {

namespace {

QString joinedTitles(const HistoryEntry& entry) {
    QStringList titles;
    for (const std::string& title : entry.titles) {
        titles.append(QString::fromStdString(showable(title)));
    }
    return titles.join(QStringLiteral(", "));
}

// "Feb 22, 2022 at 2:22 AM" in any locale: all of Vesk's texts are in English. A stored date may be beyond what Qt can
// show.
QString dateText(double date) {
    constexpr double furthest = 8e15;  // milliseconds from 1970: a quarter of a million years
    const double milliseconds = std::floor((date + static_cast<double>(historyEpoch)) * 1000);
    if (std::abs(milliseconds) > furthest) {
        return QStringLiteral("Unknown date");
    }
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(milliseconds));
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(local, QStringLiteral("MMM d, yyyy 'at' h:mm AP"));
}

}  // namespace

void HistoryList::finishLoading(std::vector<HistoryEntry> entries) {
    isLoading_ = false;
    if (entries.empty()) {
        Q_EMIT countChanged();
    } else {
        append(std::move(entries));
    }
}

void HistoryList::append(std::vector<HistoryEntry> entries) {
    if (entries.empty()) {
        return;
    }
    ownEntries();
    beginInsertRows({}, count(), count() + static_cast<int>(entries.size()) - 1);
    entries_->insert(entries_->end(), std::make_move_iterator(entries.begin()), std::make_move_iterator(entries.end()));
    endInsertRows();
    Q_EMIT countChanged();
}

void HistoryList::merge(std::vector<HistoryEntry> stored, const std::vector<Uuid>& decidedHere, std::size_t most) {
    stored.resize(std::min(stored.size(), most));
    for (HistoryEntry& entry : stored) {
        const auto same = std::find_if(entries_->begin(), entries_->end(),
                                       [&](const HistoryEntry& known) { return known.id == entry.id; });
        if (same == entries_->end()) {
            const auto older = std::find_if(entries_->begin(), entries_->end(),
                                            [&](const HistoryEntry& known) { return known.date < entry.date; });
            insert(static_cast<std::size_t>(older - entries_->begin()), std::move(entry));
        } else if (same->undone != entry.undone &&
                   std::find(decidedHere.begin(), decidedHere.end(), entry.id) == decidedHere.end()) {
            setUndone(static_cast<std::size_t>(same - entries_->begin()), entry.undone);
        }
    }
}

void HistoryList::prepend(HistoryEntry entry) {
    insert(0, std::move(entry));
}

void HistoryList::insert(std::size_t row, HistoryEntry entry) {
    const int number = static_cast<int>(row);
    ownEntries();
    beginInsertRows({}, number, number);
    entries_->insert(entries_->begin() + number, std::move(entry));
    endInsertRows();
    Q_EMIT countChanged();
}

void HistoryList::trim(std::size_t kept) {
    if (entries_->size() <= kept) {
        return;
    }
    ownEntries();
    beginRemoveRows({}, static_cast<int>(kept), count() - 1);
    entries_->resize(kept);
    endRemoveRows();
    Q_EMIT countChanged();
}

void HistoryList::setUndone(std::size_t row, bool undone) {
    noteUndone(row, undone);
    tellUndone(row);
}

void HistoryList::noteUndone(std::size_t row, bool undone) {
    ownEntries();
    (*entries_)[row].undone = undone;
}

void HistoryList::tellUndone(std::size_t row) {
    const QModelIndex changed = index(static_cast<int>(row));
    Q_EMIT dataChanged(changed, changed, {UndoneRole});
}

void HistoryList::ownEntries() {
    if (entries_.use_count() > 1) {
        entries_ = std::make_shared<std::vector<HistoryEntry>>(*entries_);
    }
}

int HistoryList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant HistoryList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const HistoryEntry& entry = (*entries_)[static_cast<std::size_t>(index.row())];
    switch (role) {
        case EntryIdRole:
            return QString::fromStdString(entry.id.text());
        case BytesTextRole:
            return QString::fromStdString(byteCountText(entry.bytes));
        case PreviewRole:
            return entry.preview;
        case Qt::DisplayRole:
        case TitlesRole:
            return joinedTitles(entry);
        case DateTextRole:
            return dateText(entry.date);
        case SnapshotsRemovedRole:
            return static_cast<qint64>(entry.snapshotsRemoved);
        case UndoneRole:
            return entry.undone;
        case MoveCountRole:
            return static_cast<qint64>(entry.moves.size());
        default:
            return {};
    }
}

QHash<int, QByteArray> HistoryList::roleNames() const {
    return {
        {EntryIdRole, "entryId"}, {BytesTextRole, "bytesText"}, {PreviewRole, "preview"},
        {TitlesRole, "titles"},   {DateTextRole, "dateText"},   {SnapshotsRemovedRole, "snapshotsRemoved"},
        {UndoneRole, "undone"},   {MoveCountRole, "moveCount"},
    };
}

}  // namespace vesk
