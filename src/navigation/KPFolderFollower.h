#pragma once

#include "KPSearchState.h"
#include "XPNotificationCenter.h"

#include <QObject>
#include <QTimer>
#include <vector>

class KPBookmarks;
class KPCrumbController;

// Follows folders that are renamed or moved: those of saved searches and of recent places are
// remembered by what they are, and a search in one that is no longer at its path goes on where it
// is now. One that is nowhere to be found keeps its path: its volume may come back.
// Threads: main; the disk is looked at on threads of its own. Ownership: both must outlive it.
class KPFolderFollower : public QObject
{
    Q_OBJECT

public:
    KPFolderFollower(KPCrumbController &controller, const KPBookmarks &bookmarks,
                     QObject *parent = nullptr);
    ~KPFolderFollower() override;

    // The state as it is now: in the folders where they are. Looks at the disk; any thread.
    static KPSearchState::Ptr stateNow(const KPSearchState::Ptr &state);

private:
    void remember();
    void follow();
    void moved(const QStringList &before, const QStringList &now);

    KPCrumbController &m_controller;
    const KPBookmarks &m_bookmarks;
    QTimer m_remember;
    QTimer m_follow;
    std::vector<XPObservation> m_observations;
};
