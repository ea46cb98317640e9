#pragma once

#include "IndexAttributesChange.h"
#include "KarvexFacts.h"
#include "XPMutex.h"
#include "XPNotificationCenter.h"

#include <QHash>
#include <condition_variable>
#include <thread>

class MetadataIndex;

// Takes over what other programs change of the tags, ratings and comments that the desktop keeps,
// and writes there what other programs of the convention change of ours (KarvexMirror).
//
// Whoever keeps the index hears of such a file and what both sides said before, waits a moment for
// the writer to be done, and merges the two. A change is answered at most once: what is written
// makes both sides agree, and files whose sides agree are passed over. When the user switches the
// mirror on, everything that the index holds is brought in line. Threads: construct and destroy on
// the main one. The work is done on a thread of its own, which the destructor joins after what was
// heard of is done. Ownership: the index must outlive it.
class KPTagMirror
{
public:
    explicit KPTagMirror(MetadataIndex &index);
    ~KPTagMirror();
    KPTagMirror(const KPTagMirror &) = delete;
    KPTagMirror &operator=(const KPTagMirror &) = delete;

private:
    using Files = QHash<QByteArray, KarvexFacts::Pair>; // paths, with the last agreement

    void take(const IndexAttributesChange &change) XP_EXCLUDES(m_mutex);
    void switchedOn() XP_EXCLUDES(m_mutex);
    void loop() XP_EXCLUDES(m_mutex);
    bool wait(Files &files, bool &everything) XP_EXCLUDES(m_mutex);

    MetadataIndex &m_index;
    XPMutex m_mutex;
    std::condition_variable_any m_wake;
    Files m_files XP_GUARDED_BY(m_mutex);
    bool m_everything XP_GUARDED_BY(m_mutex) = false;
    std::atomic<bool> m_stopping = false;
    bool m_wasOn; // the main thread's
    XPObservation m_observation;
    std::thread m_thread; // last
};
