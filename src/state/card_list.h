// The published cards as a list model for the views. Lives on the main thread.
#pragma once

#include <QAbstractListModel>
#include <vector>

#include "core/card.h"

namespace vesk {

class CardList : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    /// The roles of a row; `roleNames` has their names in QML.
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

    /// Replaces the cards. Notifies the views of rows removed, inserted, moved or changed; never resets the model.
    void replace(std::vector<Card> cards);

    /// The row of the first ticked card; -1 if none is ticked.
    Q_INVOKABLE int firstSelected() const;

    /// Ticks or unticks the card in a row, and notifies the views of that row only.
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
