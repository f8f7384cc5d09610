// Registers the types of the application's state with QML.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

#include "state/card_list.h"
#include "state/history_list.h"
#include "state/store.h"

namespace vesk {

struct ForeignStore {
    Q_GADGET
    QML_FOREIGN(vesk::Store)
    QML_NAMED_ELEMENT(Store)
    QML_UNCREATABLE("The application makes the one store and hands it to its window.")
};

struct ForeignCardList {
    Q_GADGET
    QML_FOREIGN(vesk::CardList)
    QML_NAMED_ELEMENT(CardList)
    QML_UNCREATABLE("The cards of a store.")
};

struct ForeignHistoryList {
    Q_GADGET
    QML_FOREIGN(vesk::HistoryList)
    QML_NAMED_ELEMENT(HistoryList)
    QML_UNCREATABLE("The history of a store.")
};

// Counts of bytes and files.
struct ForeignCount {
    Q_GADGET
    QML_FOREIGN(qlonglong)
    QML_ANONYMOUS
};

}  // namespace vesk
