#pragma once

#include "KPFolderWalk.h"
#include "XPMutex.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <thread>

// Search results from a walk through the requested folders, kept up to date by inotify.
//
// Reads nothing but the file system, and all of it anew for each request. Documents are the
// regular files; hidden files and folders are left out, links are not followed.
// Threads: lives on the main thread. The walk runs on m_thread, owned here; the destructor stops
//          and joins it, waiting for one file call at the most.
// Order:   reports queue up under the mutex and are delivered one (at most 1000 documents) in
//          each turn of the event loop; a new request throws away those that wait.
class KPFolderWalker : public KPResultSource
{
    Q_OBJECT

public:
    explicit KPFolderWalker(QObject *parent = nullptr);
    explicit KPFolderWalker(const KPFolderWalk::Options &options, QObject *parent = nullptr);
    ~KPFolderWalker() override;

    void setRequest(const KPSearchRequest &request) override XP_EXCLUDES(m_mutex);
    void stop() override XP_EXCLUDES(m_mutex);

Q_SIGNALS:
    void reportsWaiting(QPrivateSignal);

private:
    void supersede(const std::optional<KPSearchRequest> &request) XP_EXCLUDES(m_mutex);
    void loop() XP_EXCLUDES(m_mutex);
    void receive(std::vector<KPWalkReport> reports, quint64 generation) XP_EXCLUDES(m_mutex);
    void deliverNext() XP_EXCLUDES(m_mutex);
    void deliver(const KPWalkReport &report);

    const KPFolderWalk::Options m_options;
    const int m_wake; // an eventfd: ends a walk's waiting
    XPMutex m_mutex;
    std::condition_variable_any m_changed;
    std::optional<KPSearchRequest> m_request XP_GUARDED_BY(m_mutex); // to be started
    std::deque<KPWalkReport> m_reports XP_GUARDED_BY(m_mutex);
    bool m_quit XP_GUARDED_BY(m_mutex) = false;
    std::atomic<quint64> m_generation = 0; // of the request; changed under the mutex
    std::thread m_thread;
};
