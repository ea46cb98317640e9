#pragma once

#include "ImportMessages.h"
#include "KPSharedThumbnails.h"
#include "XPMutex.h"

#include <QHash>
#include <QImage>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <optional>
#include <stop_token>
#include <thread>
#include <tuple>
#include <vector>

// Gets pictures of documents on threads of its own, each with an importer in a cage: from the
// desktop's shared thumbnails, else drawn.
//
// Of what is wanted, the visible comes first, and a look at the shared thumbnails before anything
// is drawn. What is wanted no more is dropped; when it is being drawn for long already, it is cut
// off. Files of slow volumes (network, FUSE) are not read: for them there are shared thumbnails
// only. A document that crashes its importer is tried once more, at once.
// Threads: the main thread calls; `ready` is called on a thread of this class, where nothing more
// than a wake-up belongs.
class KPPictureMaker
{
public:
    struct Setup
    {
        QByteArray importer;    // the program's path; empty: nothing can be drawn
        QString sharedCache;    // the folder of shared thumbnails
        QString failuresFolder; // the name of ours in its folder of failures
        int slots = 0;          // threads; 0: as many as this machine has processors, up to four
        std::chrono::milliseconds limit{5000}; // of processor time for a document
    };
    struct Request
    {
        QString key; // of the caller's, the same for the same picture
        QString path;
        int page = 1;
        int side = 0; // device pixels of the longer side
        bool isVisible = true;
        std::optional<KPFileOrigin> known; // a picture of this file need not be made again
        qint64 notBefore = 0; // seconds since 1970: shared thumbnails made earlier do not count
    };
    struct Result
    {
        Request request;
        QImage image; // null: none
        QString uti;
        std::optional<DocumentFailure> failure;
        KPFileOrigin origin;
        bool isKnown = false; // still the file that `known` says: no image is given
    };

    KPPictureMaker(Setup setup, std::function<void()> ready);
    ~KPPictureMaker();

    // In the order in which they should come; takes the place of what was wanted before.
    void want(std::vector<Request> requests) XP_EXCLUDES(m_mutex);
    std::vector<Result> take() XP_EXCLUDES(m_mutex);
    // How the importer is caged, or why there is none; nothing: not known yet. `ready` is called
    // when it is.
    std::optional<XPResult<ImportHello>> hello() const XP_EXCLUDES(m_mutex);
    // Ends what has been drawn for a while although nobody wants it any more.
    void cutOffUnwanted() XP_EXCLUDES(m_mutex);
    // Shared thumbnails older than this are made again; whether slow pictures are stored there.
    void setPrefs(std::chrono::seconds lifetime, bool storesSlow) XP_EXCLUDES(m_mutex);

private:
    using Clock = std::chrono::steady_clock;
    struct Prefs
    {
        std::chrono::seconds lifetime{};
        bool storesSlow = true;
    };
    struct Job
    {
        Request request;
        bool isLookedUp = false; // there is no shared thumbnail: it has to be drawn
        int order = 0;

        auto rank() const { return std::tuple(!request.isVisible, isLookedUp, order); }
    };
    struct Begun
    {
        QString key; // empty: no picture, but the start of an importer
        int side;
        Clock::time_point since;
        std::stop_source stop;
    };
    class Slot;

    void work(int number) XP_EXCLUDES(m_mutex);
    bool waitForJob(XPLocker &locker, Slot &slot, bool mayRest) XP_REQUIRES(m_mutex);
    Job takeJob() XP_REQUIRES(m_mutex);
    std::stop_source begin(const QString &key, int side) XP_REQUIRES(m_mutex);
    void end(const std::stop_source &stop) XP_REQUIRES(m_mutex);
    bool isWanted(const QString &key, int side) const XP_REQUIRES(m_mutex);
    bool isBegun(const Request &request) const XP_REQUIRES(m_mutex);
    void deliver(Result result, const std::stop_source &stop) XP_EXCLUDES(m_mutex);

    const Setup m_setup;
    const KPSharedThumbnails m_shared;
    const std::function<void()> m_ready;
    mutable XPMutex m_mutex;
    std::condition_variable_any m_wake;
    std::vector<Job> m_jobs XP_GUARDED_BY(m_mutex);
    std::vector<Begun> m_begun XP_GUARDED_BY(m_mutex);
    QHash<QString, int> m_wanted XP_GUARDED_BY(m_mutex); // key and side
    std::vector<Result> m_results XP_GUARDED_BY(m_mutex);
    std::optional<XPResult<ImportHello>> m_hello XP_GUARDED_BY(m_mutex);
    Prefs m_prefs XP_GUARDED_BY(m_mutex);
    bool m_quit XP_GUARDED_BY(m_mutex) = false;
    std::vector<std::thread> m_threads;
};
