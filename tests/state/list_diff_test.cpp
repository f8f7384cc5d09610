// What a list that views show becomes when it is replaced, and what the views are told of it.

#include "state/list_diff.h"

#include <gmock/gmock.h>

#include <random>

#include "state/card_list.h"
#include "state/plain_cards.h"

namespace vesk {
namespace {

std::vector<std::string> titlesOf(const std::vector<Card>& cards) {
    std::vector<std::string> titles;
    for (const Card& card : cards) {
        titles.push_back(card.id + " " + card.title);
    }
    return titles;
}

// The rows as a view knows them from what it was told. A row is read again when it was inserted or has changed.
class View {
public:
    explicit View(const CardList& list) : list_(list) {
        QObject::connect(&list, &CardList::rowsRemoved, [this](const QModelIndex&, int first, int last) {
            rows_.erase(rows_.begin() + first, rows_.begin() + last + 1);
        });
        QObject::connect(&list, &CardList::rowsInserted, [this](const QModelIndex&, int first, int last) {
            for (int row = first; row <= last; ++row) {
                rows_.insert(rows_.begin() + row, read(row));
            }
        });
        QObject::connect(&list, &CardList::rowsMoved,
                         [this](const QModelIndex&, int from, int, const QModelIndex&, int to) {
                             std::rotate(rows_.begin() + to, rows_.begin() + from, rows_.begin() + from + 1);
                         });
        QObject::connect(&list, &CardList::dataChanged, [this](const QModelIndex& first, const QModelIndex& last) {
            for (int row = first.row(); row <= last.row(); ++row) {
                rows_[static_cast<std::size_t>(row)] = read(row);
            }
        });
        QObject::connect(&list, &CardList::countChanged, [this] { count_ = list_.count(); });
    }

    const std::vector<std::string>& rows() const { return rows_; }
    int count() const { return count_; }

private:
    std::string read(int row) const {
        const auto text = [&](CardList::Role role) {
            return list_.data(list_.index(row), role).toString().toStdString();
        };
        return text(CardList::CardIdRole) + " " + text(CardList::TitleRole);
    }

    const CardList& list_;
    std::vector<std::string> rows_;
    int count_ = 0;
};

std::vector<Card> cardsWith(const std::vector<std::string>& ids) {
    std::vector<Card> cards;
    for (const std::string& id : ids) {
        cards.push_back(testing::plainCard(id));
        cards.back().title = "card " + std::to_string(cards.size());
    }
    return cards;
}

TEST(CardListTest, IdsThatRepeatAndBecomeFewerLeaveNoGhosts) {
    CardList list;
    list.replace(cardsWith({"a", "a", "b"}));
    list.replace(cardsWith({"a", "b"}));
    EXPECT_THAT(titlesOf(list.cards()), ::testing::ElementsAre("a card 1", "b card 2"));
}

TEST(CardListTest, IsWhatItWasGivenWhateverTheIds) {
    std::mt19937 random{20261122};  // NOLINT(cert-msc51-cpp): the same lists at each run
    CardList list;
    const View view(list);
    for (int round = 0; round < 2'000; ++round) {
        std::vector<std::string> ids(std::uniform_int_distribution<std::size_t>(0, 8)(random));
        for (std::string& id : ids) {
            id = std::string(1, static_cast<char>(std::uniform_int_distribution<int>('a', 'e')(random)));
        }
        const std::vector<Card> given = cardsWith(ids);
        list.replace(given);
        ASSERT_EQ(titlesOf(list.cards()), titlesOf(given)) << "in round " << round;
        ASSERT_EQ(view.rows(), titlesOf(given)) << "as told to a view, in round " << round;
        ASSERT_EQ(view.count(), static_cast<int>(given.size()));
    }
}

}  // namespace
}  // namespace vesk
