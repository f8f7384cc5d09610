// How the items of one past run stand, as its row in the history tells when it is opened. The disk is asked on another
// thread, when the row is opened and again after anything that may have changed the answer. Made by a view, on the main
// thread.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include "state/detached_task.h"
#include "state/run_report.h"
#include "state/store.h"

namespace vesk {

class RunDetail : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(vesk::Store* store READ store WRITE setStore NOTIFY storeChanged)
    Q_PROPERTY(QString entryId READ entryId WRITE setEntryId NOTIFY entryIdChanged)
    /// Whether the answer is wanted.
    Q_PROPERTY(bool wanted READ wanted WRITE setWanted NOTIFY wantedChanged)
    /// Empty until the answer is there, and while none is wanted.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    /// "NAME: why", for the first of the items that are not back.
    Q_PROPERTY(QStringList lines READ lines NOTIFY changed)
    /// How many such items `lines` leaves out.
    Q_PROPERTY(int moreCount READ moreCount NOTIFY changed)

public:
    using QObject::QObject;

    Store* store() const { return store_; }
    void setStore(Store* store);
    const QString& entryId() const { return entryId_; }
    void setEntryId(const QString& id);
    bool wanted() const { return wanted_; }
    void setWanted(bool wanted);

    const QString& summary() const { return summary_; }
    const QStringList& lines() const { return lines_; }
    int moreCount() const { return moreCount_; }

    /// Asks the disk again, if the answer is wanted. While items move, it waits for their end.
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    void storeChanged();
    void entryIdChanged();
    void wantedChanged();
    void changed();

private:
    const HistoryEntry* entry() const;
    void take(const RunReport& report);
    void clear();

    QPointer<Store> store_;
    QString entryId_;
    bool wanted_ = false;
    QString summary_;
    QStringList lines_;
    int moreCount_ = 0;
    // Whether a question is under way, and whether its answer will be out of date. One at a time: a disk that hangs
    // must not gather threads.
    bool asking_ = false;
    bool outdated_ = false;
    DetachedTask<RunReport> question_;
};

}  // namespace vesk
