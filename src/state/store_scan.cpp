// The scan of Store, step by step.

#include <QTimer>
#include <utility>

#include "state/scan_run.h"
#include "state/store.h"

namespace vesk {

void Store::scan() {
    if (busy()) {
        return;
    }

    // The previous cards and blocked areas stay until this scan's replace them.
    progress_ = 0.0;
    foundBytes_ = 0;
    filesSeen_ = 0;
    inTurn([&] { setPhase(Phase::scanning); }, [&] { Q_EMIT progressChanged(); }, [&] { Q_EMIT foundBytesChanged(); },
           [&] { Q_EMIT filesSeenChanged(); }, [&] { readVolume(); },
           [&] {
               scanRun_ = std::make_unique<ScanRun>(
                   sources_.catalogue(),
                   [this](double fraction) { publish(progress_, fraction, &Store::progressChanged); },
                   [this](ScanResult result) { finishScan(std::move(result)); });
               publishCounts();
           },
           [&] { scanRun_->start(); });
}

void Store::publishCounts() {
    const Tracker::Counts counts = scanRun_->counts();
    inTurn([&] { publish<qint64>(foundBytes_, counts.bytes, &Store::foundBytesChanged); },
           [&] { publish<qint64>(filesSeen_, counts.files, &Store::filesSeenChanged); },
           [&] {
               if (phase_ == Phase::scanning) {
                   poller_->start();
               }
           });
}

void Store::finishScan(ScanResult result) {
    poller_->stop();

    seenItems_ = std::make_shared<const SeenItems>(std::move(result.seen));
    inTurn([&] { cardList_.replace(std::move(result.cards)); }, [&] { Q_EMIT cardsChanged(); },
           [&] { publish(blockedAreas_, std::move(result.blockedAreas), &Store::blockedAreasChanged); },
           [&] { setPhase(Phase::done); }, [&] { readVolume(); });
}

Tracker::Counts Store::trackerCounts() const {
    return scanRun_ ? scanRun_->counts() : Tracker::Counts{};
}

}  // namespace vesk
