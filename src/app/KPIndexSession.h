#pragma once

#include "ImportManners.h"
#include "KPIndexMonitor.h"
#include "KPIndexedTypes.h"
#include "KPTagHealer.h"
#include "KPTagMirror.h"
#include "MetadataIndex.h"
#include "XPNotificationCenter.h"

#include <QObject>
#include <memory>

// The metadata index for as long as the application runs, with what follows it: the reading of
// documents, the healing of lost tags, the mirror of the desktop's, the types and the search
// folders. Threads: main. It opens at once and loads behind the user's back.
class KPIndexSession : public QObject
{
    Q_OBJECT

public:
    KPIndexSession() XP_REQUIRES(xpGuiThread);
    ~KPIndexSession() override;

    IndexSource &source() { return m_index->source(); }
    KPIndexMonitor &monitor() { return *m_monitor; }
    ImportPause &importPause() { return m_manners.pause(); }
    // The user's folders are asked of the index no more; before the searchers end.
    void stopFollowing();

private:
    // In the order in which they are made; taken down the other way.
    ImportManners m_manners;
    XPObservation m_pause;
    std::unique_ptr<MetadataIndex> m_index;
    std::unique_ptr<KPTagHealer> m_healer;
    std::unique_ptr<KPTagMirror> m_mirror;
    std::unique_ptr<KPIndexedTypes> m_types;
    std::unique_ptr<KPIndexMonitor> m_monitor;
};
