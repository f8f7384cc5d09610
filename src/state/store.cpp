#include "state/store.h"

#include <QTimer>
#include <algorithm>
#include <utility>

#include "core/byte_count.h"
#include "core/checked_sum.h"
#include "platform/system/desktop.h"
#include "platform/world.h"
#include "rules/catalogue.h"
#include "rules/run_tool.h"
#include "state/scan_run.h"

namespace vesk {

namespace {

constexpr std::string_view previewKey = "vesk.preview";

std::optional<std::string> presentText(const QString& text) {
    return text.isEmpty() ? std::nullopt : std::optional(text.toStdString());
}

}  // namespace

Store::Sources::Sources()
    : catalogue(Scanner::specs),
      volume([] { return readVolumeFigures(world().root); }),
      runTool([](const std::string& path, const std::vector<std::string>& arguments) {
          return vesk::runTool(path, arguments).status;
      }),
      lookAtUse(lookingAtProcesses()) {
}

Store::Store(Sources sources, QObject* parent)
    : QObject(parent), sources_(std::move(sources)), poller_(new QTimer(this)), previewPause_(new QTimer(this)) {
    // Restarted after each poll, so that two polls are never closer than this.
    constexpr int pollMilliseconds = 100;
    poller_->setInterval(pollMilliseconds);
    poller_->setSingleShot(true);
    poller_->setTimerType(Qt::PreciseTimer);
    connect(poller_, &QTimer::timeout, this, &Store::publishCounts);
    previewPause_->setSingleShot(true);
    previewPause_->setTimerType(Qt::PreciseTimer);
    connect(previewPause_, &QTimer::timeout, this, &Store::finishPreview);
    connect(this, &Store::cardsChanged, this, &Store::totalsChanged);
    connect(this, &Store::capacityChanged, this, &Store::totalsChanged);
    connect(this, &Store::freeChanged, this, &Store::totalsChanged);
    connect(this, &Store::phaseChanged, this, &Store::busyChanged);
    connect(this, &Store::cleaningChanged, this, &Store::busyChanged);

    previewOnly_ = preferences_.boolean(previewKey).value_or(false);
    readVolume();
}

Store::~Store() {
    finish();
}

void Store::setShowConfirm(bool value) {
    publish(showConfirm_, value, &Store::showConfirmChanged);
}

void Store::setDetailID(std::optional<std::string> id) {
    publish(detailID_, std::move(id), &Store::detailIDChanged);
}

void Store::setNotice(std::optional<std::string> text) {
    publish(notice_, std::move(text), &Store::noticeChanged);
}

void Store::setPreviewOnly(bool value) {
    inTurn([&] { publish(previewOnly_, value, &Store::previewOnlyChanged); },
           [&] { preferences_.setBoolean(previewKey, value); });
}

void Store::setPhase(Phase phase) {
    publish(phase_, phase, &Store::phaseChanged);
}

void Store::setCleaning(bool value) {
    publish(cleaning_, value, &Store::cleaningChanged);
}

void Store::setCelebration(std::optional<Celebration> celebration) {
    publish(celebration_, celebration, &Store::celebrationChanged);
}

void Store::dismissCelebration() {
    setCelebration(std::nullopt);
}

QVariant Store::celebrationFields() const {
    if (!celebration_) {
        return QVariant::fromValue(nullptr);
    }
    return QVariantMap{
        {QStringLiteral("id"), QString::fromStdString(celebration_->id.text())},
        {QStringLiteral("bytesText"), QString::fromStdString(byteCountText(celebration_->bytes))},
        {QStringLiteral("preview"), celebration_->preview},
        {QStringLiteral("snapshots"), static_cast<qint64>(celebration_->snapshots)},
        {QStringLiteral("failures"), static_cast<qint64>(celebration_->failures)},
    };
}

QString Store::phaseName() const {
    switch (phase_) {
        case Phase::idle:
            return QStringLiteral("idle");
        case Phase::scanning:
            return QStringLiteral("scanning");
        case Phase::done:
            return QStringLiteral("done");
    }
    return {};
}

QStringList Store::blockedAreaNames() const {
    QStringList names;
    for (const std::string& area : blockedAreas_) {
        names.append(QString::fromStdString(area));
    }
    return names;
}

QString Store::detailIDText() const {
    return QString::fromStdString(detailID_.value_or(""));
}

void Store::setDetailIDText(const QString& text) {
    setDetailID(presentText(text));
}

QString Store::noticeText() const {
    return QString::fromStdString(notice_.value_or(""));
}

void Store::setNoticeText(const QString& text) {
    setNotice(presentText(text));
}

void Store::readVolume() {
    const VolumeFigures figures = sources_.volume();
    inTurn([&] { publish<qint64>(capacity_, figures.totalCapacity.value_or(1), &Store::capacityChanged); },
           [&] { publish<qint64>(free_, figures.availableCapacity.value_or(0), &Store::freeChanged); });
}

std::int64_t Store::bytesIn(Bucket bucket) const {
    std::int64_t total = 0;
    for (const Card& card : cards()) {
        if (card.bucket == bucket) {
            checkedAdd(total, card.size());
        }
    }
    return total;
}

std::int64_t Store::safeBytes() const {
    return bytesIn(Bucket::safe);
}

std::int64_t Store::smartBytes() const {
    return bytesIn(Bucket::smart);
}

std::int64_t Store::personalBytes() const {
    const std::int64_t used = checkedDifference(capacity_, free_);
    return std::max<std::int64_t>(0, checkedDifference(checkedDifference(used, safeBytes()), smartBytes()));
}

std::vector<Card> Store::selectedCards() const {
    std::vector<Card> selected;
    std::copy_if(cards().begin(), cards().end(), std::back_inserter(selected),
                 [](const Card& card) { return card.selected; });
    return selected;
}

std::int64_t Store::selectedBytes() const {
    std::int64_t total = 0;
    for (const Card& card : cards()) {
        if (card.selected) {
            checkedAdd(total, card.size());
        }
    }
    return total;
}

int Store::selectedSnapshots() const {
    std::size_t count = 0;
    for (const Card& card : cards()) {
        count += card.selected ? card.snapshotIDs.size() : 0;
    }
    return static_cast<int>(count);
}

int Store::selectedCount() const {
    return static_cast<int>(
        std::count_if(cards().begin(), cards().end(), [](const Card& card) { return card.selected; }));
}

QStringList Store::selectedTitleNames() const {
    QStringList titles;
    for (const Card& card : cards()) {
        if (card.selected) {
            titles.append(QString::fromStdString(card.title));
        }
    }
    return titles;
}

bool Store::busy() const {
    return phase_ == Phase::scanning || cleaning_;
}

std::optional<Card> Store::card(const std::string& id) const {
    const auto found = std::find_if(cards().begin(), cards().end(), [&](const Card& card) { return card.id == id; });
    return found == cards().end() ? std::nullopt : std::optional(*found);
}

void Store::setSelected(const QString& id, bool value) {
    const std::string wanted = id.toStdString();
    const auto found =
        std::find_if(cards().begin(), cards().end(), [&](const Card& card) { return card.id == wanted; });
    if (found != cards().end()) {
        inTurn([&] { cardList_.setSelected(static_cast<std::size_t>(found - cards().begin()), value); },
               [&] { Q_EMIT cardsChanged(); });
    }
}

void Store::selectSafeOnly() {
    if (cards().empty()) {
        return;
    }
    for (std::size_t row = 0; row < cards().size(); ++row) {
        cardList_.setSelected(row, cards()[row].bucket == Bucket::safe);
    }
    Q_EMIT cardsChanged();
}

void Store::openFullDiskAccess() {
    openFullDiskAccessSettings();
}

}  // namespace vesk
