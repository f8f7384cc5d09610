// The published cards, as rows that views show. Lives on the main thread.
#pragma once

#include <QAbstractListModel>
#include <vector>

#include "core/card.h"

namespace vesk {

class CardList : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    /// What a view can ask of a row; the names in QML are those in `roleNames`.
    enum Role {
        CardIdRole = Qt::UserRole,
        TitleRole,
        SymbolRole,
        BucketRole,
        SummaryRole,
        SizeTextRole,
        SnapshotCountRole,
        SelectedRole,
    };

    using QAbstractListModel::QAbstractListModel;

    const std::vector<Card>& cards() const { return cards_; }
    int count() const { return static_cast<int>(cards_.size()); }

    /// Replaces the cards, telling the views of the rows that went, came, moved or changed, never of a reset.
    void replace(std::vector<Card> cards);

    /// The row of the first ticked card; -1 when none is ticked.
    Q_INVOKABLE int firstSelected() const;

    /// Ticks or unticks the card in a row, which is told as one changed row.
    void setSelected(std::size_t row, bool value);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    struct RowSteps;
    std::vector<Card> cards_;
};

}  // namespace vesk
