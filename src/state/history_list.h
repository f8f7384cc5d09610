// The history, newest first, as rows that views show. Lives on the main thread.
#pragma once

#include <QAbstractListModel>
#include <cstddef>
#include <memory>
#include <vector>

#include "state/history_entry.h"

namespace vesk {

class HistoryList : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    /// What a view can ask of a row; the names in QML are those in `roleNames`.
    enum Role {
        EntryIdRole = Qt::UserRole,
        BytesTextRole,
        PreviewRole,
        TitlesRole,
        DateTextRole,
        SnapshotsRemovedRole,
        UndoneRole,
        MoveCountRole,
    };

    using QAbstractListModel::QAbstractListModel;

    const std::vector<HistoryEntry>& entries() const { return *entries_; }
    int count() const { return static_cast<int>(entries_->size()); }
    /// The entries as they are now, which stay as they are: another thread may read them. A change meanwhile costs a
    /// copy of all.
    std::shared_ptr<const std::vector<HistoryEntry>> snapshot() const { return entries_; }

    /// Puts entries after all others.
    void append(std::vector<HistoryEntry> entries);
    /// Takes over what has been stored elsewhere: entries that are not here yet, each before the first one that is
    /// older, and whether the others are undone, but for those in `decidedHere`. Entries beyond the first `most` are
    /// not looked at.
    void merge(std::vector<HistoryEntry> stored, const std::vector<Uuid>& decidedHere, std::size_t most);
    /// Puts an entry before all others.
    void prepend(HistoryEntry entry);
    /// Drops the oldest entries beyond the first `kept`.
    void trim(std::size_t kept);
    /// Marks the entry in a row as undone, or not, in two steps: what is noted can be stored before it is told.
    void noteUndone(std::size_t row, bool undone);
    void tellUndone(std::size_t row);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    void insert(std::size_t row, HistoryEntry entry);
    void setUndone(std::size_t row, bool undone);
    void ownEntries();

    std::shared_ptr<std::vector<HistoryEntry>> entries_ = std::make_shared<std::vector<HistoryEntry>>();
};

}  // namespace vesk
