// The history, newest first, as a list model for the views. Lives on the main thread.
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
    /// Whether there is more to come: `finishLoading` has not been called since `beginLoading`.
    Q_PROPERTY(bool loading READ isLoading NOTIFY countChanged)

public:
    /// The roles of a row; `roleNames` has their names in QML.
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
    /// The entries as they are now, unaffected by later changes, for use on any thread. While a snapshot exists, the
    /// next change copies all entries.
    std::shared_ptr<const std::vector<HistoryEntry>> snapshot() const { return entries_; }

    bool isLoading() const { return isLoading_; }
    void beginLoading() { isLoading_ = true; }
    /// Adds what was loaded.
    void finishLoading(std::vector<HistoryEntry> entries);
    /// Adds entries at the end.
    void append(std::vector<HistoryEntry> entries);
    /// Merges the first `most` entries of what another program has stored. New entries go before the first older one;
    /// of those already here only `undone` is taken over, except for those in `decidedHere`.
    void merge(std::vector<HistoryEntry> stored, const std::vector<Uuid>& decidedHere, std::size_t most);
    /// Adds an entry at the front.
    void prepend(HistoryEntry entry);
    /// Drops the oldest entries beyond the first `kept`.
    void trim(std::size_t kept);
    /// Sets whether the entry in a row is undone, in two steps: it can be stored after the first, before `tellUndone`
    /// notifies the views.
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

    bool isLoading_ = false;
    std::shared_ptr<std::vector<HistoryEntry>> entries_ = std::make_shared<std::vector<HistoryEntry>>();
};

}  // namespace vesk
