// The observable state of the application. The application creates one at start and passes it to every view. It is read
// and written on the main thread only; other threads deliver their results to that thread first.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "core/card.h"
#include "core/spec.h"
#include "core/tracker.h"
#include "platform/system/open_files.h"
#include "platform/system/preferences.h"
#include "platform/system/volume.h"
#include "state/card_list.h"
#include "state/celebration.h"
#include "state/cleaning_log.h"
#include "state/detached_task.h"
#include "state/history.h"
#include "state/seen_items.h"

class QTimer;

namespace vesk {

class ScanRun;
struct ScanResult;

class Store : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString phase READ phaseName NOTIFY phaseChanged)
    Q_PROPERTY(vesk::CardList* cards READ cardList CONSTANT)
    Q_PROPERTY(QStringList blockedAreas READ blockedAreaNames NOTIFY blockedAreasChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(qint64 foundBytes READ foundBytes NOTIFY foundBytesChanged)
    Q_PROPERTY(qint64 filesSeen READ filesSeen NOTIFY filesSeenChanged)
    Q_PROPERTY(qint64 capacity READ capacity NOTIFY capacityChanged)
    Q_PROPERTY(qint64 free READ free NOTIFY freeChanged)
    Q_PROPERTY(bool cleaning READ cleaning NOTIFY cleaningChanged)
    Q_PROPERTY(bool showConfirm READ showConfirm WRITE setShowConfirm NOTIFY showConfirmChanged)
    Q_PROPERTY(QVariant celebration READ celebrationFields NOTIFY celebrationChanged)
    Q_PROPERTY(QString detailID READ detailIDText WRITE setDetailIDText NOTIFY detailIDChanged)
    Q_PROPERTY(QString notice READ noticeText WRITE setNoticeText NOTIFY noticeChanged)
    Q_PROPERTY(vesk::HistoryList* history READ historyList CONSTANT)
    Q_PROPERTY(bool previewOnly READ previewOnly WRITE setPreviewOnly NOTIFY previewOnlyChanged)
    Q_PROPERTY(qint64 safeBytes READ safeBytes NOTIFY totalsChanged)
    Q_PROPERTY(qint64 smartBytes READ smartBytes NOTIFY totalsChanged)
    Q_PROPERTY(qint64 personalBytes READ personalBytes NOTIFY totalsChanged)
    Q_PROPERTY(qint64 selectedBytes READ selectedBytes NOTIFY totalsChanged)
    Q_PROPERTY(int selectedSnapshots READ selectedSnapshots NOTIFY totalsChanged)
    Q_PROPERTY(int selectedCount READ selectedCount NOTIFY totalsChanged)
    Q_PROPERTY(QStringList selectedTitles READ selectedTitleNames NOTIFY totalsChanged)
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)

public:
    /// `idle`: nothing scanned yet. `scanning`: a scan is running. `done`: `cards` has the last scan's result.
    enum class Phase { idle, scanning, done };

    /// What the store uses from outside. The defaults are the application's; tests replace them.
    struct Sources {
        /// The rules; called at the start of each scan.
        std::function<std::vector<Spec>()> catalogue;
        /// The start-up volume's capacity and free space.
        std::function<VolumeFigures()> volume;
        /// Runs the backup tool and returns its exit status. Called on another thread.
        std::function<int(const std::string& path, const std::vector<std::string>& arguments)> runTool;
        /// Returns the files that programs have in use now. Called several times during a clean, on another thread.
        std::function<OpenFiles()> lookAtUse;
        /// Whether a clean notices what programs open after such a look.
        bool watchesOpening = true;
        /// How long a preview takes: if it ended at once, it would look as if nothing had been computed.
        std::chrono::milliseconds previewPause{900};
        Sources();
    };

    /// Reads the preview switch and the volume's figures, and the history or, if it is large, begins to. Does not start
    /// a scan.
    explicit Store(Sources sources = Sources(), QObject* parent = nullptr);
    /// Calls `finish`.
    ~Store() override;

    Phase phase() const { return phase_; }
    /// The result of the last finished scan, in display order.
    const std::vector<Card>& cards() const { return cardList_.cards(); }
    /// Labels of the rules that were denied permission in the last finished scan, sorted.
    const std::vector<std::string>& blockedAreas() const { return blockedAreas_; }
    /// Fraction of the rules finished in the running scan, 0 to 1.
    double progress() const { return progress_; }
    /// Bytes and regular files measured so far in the running scan, updated every 100 ms.
    qint64 foundBytes() const { return foundBytes_; }
    qint64 filesSeen() const { return filesSeen_; }
    /// Total capacity of the start-up volume in bytes; 1 if unknown, so that dividing by it is safe.
    qint64 capacity() const { return capacity_; }
    /// Bytes available on the start-up volume for important use; 0 if unknown.
    qint64 free() const { return free_; }
    bool cleaning() const { return cleaning_; }
    bool showConfirm() const { return showConfirm_; }
    /// The result of the last clean, until the user dismisses it; absent if there is nothing to show.
    const std::optional<Celebration>& celebration() const { return celebration_; }
    /// Id of the card whose detail sheet is open; absent if none is.
    const std::optional<std::string>& detailID() const { return detailID_; }
    /// A one-line message to the user; absent if there is none.
    const std::optional<std::string>& notice() const { return notice_; }
    /// Past cleanups, newest first. Waits until they are loaded, which the property `history` does not, and then emits
    /// that list's signals.
    const std::vector<HistoryEntry>& history() { return history_.entries(); }
    bool previewOnly() const { return previewOnly_; }

    void setShowConfirm(bool value);
    void setDetailID(std::optional<std::string> id);
    void setNotice(std::optional<std::string> text);
    /// Sets the switch and writes it to the preferences, even if it stays the same.
    void setPreviewOnly(bool value);

    /// Bytes of all cards in the bucket, ticked or not.
    std::int64_t safeBytes() const;
    std::int64_t smartBytes() const;
    /// Everything else in use on the volume, at least 0: computed from its capacity, not from cards.
    std::int64_t personalBytes() const;
    std::vector<Card> selectedCards() const;
    std::int64_t selectedBytes() const;
    int selectedSnapshots() const;
    int selectedCount() const;
    /// Whether a scan, a clean, a preview or an undo is running. This is what prevents overlapping work.
    bool busy() const;

    /// The first card with this id; absent if there is none.
    std::optional<Card> card(const std::string& id) const;

    /// The current totals of the last scan's tracker; `foundBytes` and `filesSeen` may be behind.
    Tracker::Counts trackerCounts() const;

    /// Runs every rule, then publishes the cards in order of priority. Does nothing while `busy`.
    Q_INVOKABLE void scan();

    /// Moves the entries of the ticked cards to the Trash, except those that have changed or are in use, and deletes
    /// their snapshots. Then records the run in the history, publishes a celebration and scans again. With
    /// `previewOnly`, nothing is moved and no scan follows. Does nothing while `busy` or if no card is ticked. If no
    /// thread can be started, nothing changes and `notice` says so.
    Q_INVOKABLE void performClean();
    /// Ends the celebration.
    Q_INVOKABLE void dismissCelebration();

    /// Restores the items of the entry with this id from the Trash, says in `notice` how many are back, and scans
    /// again. Does nothing while `busy` or for an unknown id. If no thread can be started, `notice` says so.
    void undo(const Uuid& id);
    /// The same for an id given as text.
    Q_INVOKABLE void undo(const QString& id);
    /// See History::itemsOf. The function may be called even after the store is gone.
    std::function<std::vector<TrashedItem>()> itemsOf(const HistoryEntry& entry) const {
        return history_.itemsOf(entry);
    }
    /// Drops all but the 50 newest entries and stores the history. If that fails, what was stored before stays, and the
    /// next change or `finish` tries again.
    void saveHistory() { history_.save(); }

    /// Ends a running clean, preview or undo, for a program that is quitting: finishes the current item, records what
    /// was done, and starts no scan. Waits a little more than a second for the item; one that takes longer is not
    /// recorded. Then waits until the history is saved.
    void finish();

    /// Stops all signals. For when the views still exist but can no longer respond.
    void stopTelling();

    /// Ticks or unticks the first card with this id; does nothing if there is none.
    Q_INVOKABLE void setSelected(const QString& id, bool value);
    /// Ticks the safe cards and unticks all others.
    Q_INVOKABLE void selectSafeOnly();
    /// Opens the system's privacy settings at Full Disk Access, if the system has them.
    Q_INVOKABLE void openFullDiskAccess();

Q_SIGNALS:
    void phaseChanged();
    void cardsChanged();
    void blockedAreasChanged();
    void progressChanged();
    void foundBytesChanged();
    void filesSeenChanged();
    void capacityChanged();
    void freeChanged();
    void cleaningChanged();
    void showConfirmChanged();
    void celebrationChanged();
    void detailIDChanged();
    void noticeChanged();
    void previewOnlyChanged();
    /// Any figure computed from the cards and the volume may have changed.
    void totalsChanged();
    void busyChanged();

private:
    /// Sets a field and emits its signal, even if the value stays the same.
    template <typename Value>
    void publish(Value& field, Value value, void (Store::*changed)()) {
        field = std::move(value);
        Q_EMIT(this->*changed)();
    }

    /// Runs steps one after another. A step's signal may lead to the store's destruction: the rest is skipped then.
    template <typename... Steps>
    void inTurn(const Steps&... steps) {
        const QPointer<const Store> self(this);
        static_cast<void>(((steps(), !self.isNull()) && ...));
    }

    QString phaseName() const;
    /// Titles of the ticked cards in display order.
    QStringList selectedTitleNames() const;
    CardList* cardList() { return &cardList_; }
    QStringList blockedAreaNames() const;
    QString detailIDText() const;
    void setDetailIDText(const QString& text);
    QString noticeText() const;
    void setNoticeText(const QString& text);

    QVariant celebrationFields() const;
    HistoryList* historyList() { return &history_.list(); }

    void setPhase(Phase phase);
    void setCleaning(bool value);
    void setCelebration(std::optional<Celebration> celebration);
    void readVolume();
    std::int64_t bytesIn(Bucket bucket) const;

    void publishCounts();
    void finishScan(ScanResult result);

    void startClean(std::vector<SeenItem> workList, std::vector<std::string> snapshotIDs);
    void failToStart(const char* what);
    void finishClean();
    void finishPreview();
    void recordClean(HistoryEntry entry, std::int64_t failures);
    void rescan();

    void startUndo(const Uuid& id);
    void finishUndo(const Uuid& id, std::size_t restored, std::size_t wanted);

    Sources sources_;
    Preferences preferences_;

    Phase phase_ = Phase::idle;
    CardList cardList_;
    std::vector<std::string> blockedAreas_;
    double progress_ = 0.0;
    qint64 foundBytes_ = 0;
    qint64 filesSeen_ = 0;
    qint64 capacity_ = 1;
    qint64 free_ = 0;
    bool cleaning_ = false;
    bool showConfirm_ = false;
    std::optional<Celebration> celebration_;
    std::optional<std::string> detailID_;
    std::optional<std::string> notice_;
    History history_{preferences_};
    bool previewOnly_ = false;

    // What the scan recorded about the entries of `cards`.
    std::shared_ptr<const SeenItems> seenItems_ = std::make_shared<SeenItems>();
    std::unique_ptr<ScanRun> scanRun_;
    QTimer* poller_ = nullptr;

    // The running clean or preview.
    Uuid cleaningRun_;
    std::vector<std::string> cleaningTitles_;
    std::int64_t previewBytes_ = 0;
    QTimer* previewPause_ = nullptr;
    bool finishing_ = false;
    // The running clean's; null if none is running.
    std::shared_ptr<CleaningLog> cleaningLog_;
    // Declared last, so that they are destroyed before what they use.
    DetachedTask<std::monostate> cleaningTask_;
    DetachedTask<std::size_t> restoreTask_;
};

}  // namespace vesk
