#include "ui/run_detail.h"

#include <algorithm>
#include <functional>
#include <vector>

#include "state/running_work.h"

namespace vesk {

void RunDetail::setStore(Store* store) {
    if (store == store_) {
        return;
    }
    if (store_ != nullptr) {
        store_->disconnect(this);
    }
    store_ = store;
    if (store_ != nullptr) {
        connect(store_, &Store::cleaningChanged, this, &RunDetail::refresh);
    }
    Q_EMIT storeChanged();
    refresh();
}

void RunDetail::setEntryId(const QString& id) {
    if (id != entryId_) {
        entryId_ = id;
        Q_EMIT entryIdChanged();
        clear();
        refresh();
    }
}

void RunDetail::setWanted(bool wanted) {
    if (wanted != wanted_) {
        wanted_ = wanted;
        Q_EMIT wantedChanged();
        clear();
        refresh();
    }
}

const HistoryEntry* RunDetail::entry() const {
    const std::vector<HistoryEntry>& history = store_->history();
    const auto found = std::find_if(history.begin(), history.end(), [this](const HistoryEntry& past) {
        return QString::fromStdString(past.id.text()) == entryId_;
    });
    return found == history.end() ? nullptr : &*found;
}

void RunDetail::refresh() {
    outdated_ = asking_;
    if (asking_ || store_ == nullptr || !wanted_ || store_->cleaning()) {
        return;
    }
    const HistoryEntry* const run = entry();
    if (run == nullptr) {
        return;
    }
    // Where no thread can be had, it is asked again at the next occasion.
    asking_ = question_.start(
        [items = store_->itemsOf(*run), token = takeWorkToken()](DetachedTask<RunReport>::Control& control) {
            return reportOn(items(), [&] { return control.stopRequested(); });
        },
        [this](const RunReport& report) { take(report); });
}

void RunDetail::take(const RunReport& report) {
    asking_ = false;
    if (outdated_) {
        refresh();
        return;
    }
    summary_ = QString::fromStdString(report.summary());
    lines_.clear();
    for (const std::string& line : report.lines) {
        lines_.append(QString::fromStdString(line));
    }
    moreCount_ = static_cast<int>(report.more);
    Q_EMIT changed();
}

void RunDetail::clear() {
    summary_.clear();
    lines_.clear();
    moreCount_ = 0;
    Q_EMIT changed();
}

}  // namespace vesk
