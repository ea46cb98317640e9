#pragma once

#include "ImportProgress.h"
#include "MetadataIndex.h"
#include "XPFileDescriptor.h"
#include "XPMutex.h"

#include <QObject>
#include <QThreadPool>
#include <QTimer>
#include <memory>

class QSocketNotifier;

// The metadata index as the window sees it: what it does, what is degraded, what it covers.
//
// Looks a few times in a second while the index is at work, after each change, and for a while
// after volumes came or went; the timer stands still when nothing happens. Where another process
// keeps the index, that one is asked, on a thread of this object's. Threads: main. Ownership: the
// index must outlive it.
class KPIndexMonitor : public QObject
{
    Q_OBJECT

public:
    explicit KPIndexMonitor(MetadataIndex &index, QObject *parent = nullptr);
    ~KPIndexMonitor() override;

    // As it was when last looked at.
    const IndexStatus &status() const { return m_status; }
    // In the user's language; empty when everything is up to date.
    QString activity() const;
    // What is degraded, in the user's language.
    QStringList problems() const;
    // The folders were all read once.
    bool isSettled() const;

    bool isIndexed(const QString &folder) const;
    // Has a folder indexed from now on, and at later starts.
    void addFolder(const QString &folder);
    // After other changes of the index's settings: tells whoever keeps it.
    void settingsChanged();

Q_SIGNALS:
    void changed();
    void itemsChanged(QPrivateSignal); // from the index's thread
    void answered(QPrivateSignal);     // from m_asker's

private:
    void watchMounts();
    void look();
    void ask();
    void takeAnswer();
    void take(const IndexStatus &status);

    MetadataIndex &m_index;
    IndexStatus m_status;
    ImportProgress m_progress;
    QTimer m_timer;
    XPFileDescriptor m_mountTable;
    std::unique_ptr<QSocketNotifier> m_mounts;
    int m_looksAhead = 0; // after a change of the mount table, which the index hears of in its time
    int m_listener;
    bool m_isAsking = false;
    std::atomic<bool> m_isEnding = false;
    XPMutex m_mutex;
    IndexStatus m_answer XP_GUARDED_BY(m_mutex);
    QThreadPool m_asker; // one thread
};
