#pragma once

#include "KPFolderNode.h"
#include "KPFolderWatch.h"
#include "KPRequestMatcher.h"
#include "KPWalkReports.h"

#include <QMap>
#include <chrono>
#include <functional>
#include <set>
#include <unordered_map>

class KPFolderListing;

// One walk for one request, on the thread that calls run(): reads every folder once, then follows
// changes by inotify until it is told to stop.
//
// Every notice means only "look at this name again": what is reported is the difference between
// what is there now and what was reported before, so that notices may come late, twice or out
// of order. Folders that cannot be watched, and all of them after lost notices, are read again
// on a timer; without such folders there is no timer.
class KPFolderWalk
{
public:
    struct Options
    {
        bool live = true; // false: run() returns when everything was looked at
        // How often folders that cannot be watched are read again, at the least.
        std::chrono::milliseconds interval{10'000};
    };
    using Deliver = std::function<void(std::vector<KPWalkReport>)>;

    // `wake`: a descriptor that becomes readable when `isStopped` changes.
    KPFolderWalk(const KPSearchRequest &request, const Options &options, int wake,
                 std::function<bool()> isStopped, Deliver deliver);
    ~KPFolderWalk();
    KPFolderWalk(const KPFolderWalk &) = delete;
    KPFolderWalk &operator=(const KPFolderWalk &) = delete;

    void run();

private:
    using Clock = std::chrono::steady_clock;
    struct Visit
    {
        KPFolderNode *node;
        bool deep; // known folders below it too, not only new ones
    };
    // An open folder that names are looked up in.
    struct Place
    {
        KPFolderNode &node;
        int descriptor;
        QString path;       // without a slash at its end
        QString attributes; // the same folder as the attribute calls reach it
        bool deep;
    };

    // KPFolderWalk.cpp: the order of the work.
    void workOff();
    void passFinished();
    void wait();
    void readAgainInTime();
    void push(KPFolderNode &node, bool deep);
    void deliverInTime();
    void deliverNow();

    // KPFolderWalkFolders.cpp: folders and what is known of them.
    void visit(const Visit &visit);
    void cannotOpen(KPFolderNode &node, int number);
    void readNames(const Place &place, KPFolderListing &listing);
    void sweep(const Place &place);
    void seeFolder(const Place &place, const QByteArray &name);
    void dropFolder(KPFolderNode &parent, const QByteArray &name);
    void dropContents(KPFolderNode &node);
    void drop(std::vector<std::unique_ptr<KPFolderNode>> nodes);
    void forgetDocument(KPFolderNode &node, const QString &folder, const QByteArray &name);

    // KPFolderWalkDocuments.cpp: single files.
    Place place(KPFolderNode &node, int descriptor, bool deep) const;
    void look(const Place &place, const QByteArray &name);
    void lookAtDocument(const Place &place, const QByteArray &name, const XPFileInfo &info);
    void setProblem(const QString &path, const QString &message);
    void forgetProblem(const QString &path);
    void forgetProblemsBelow(const QString &folder);
    QStringList problems() const;

    // KPFolderWalkEvents.cpp: notices of the kernel.
    void watch(KPFolderNode &node, int descriptor);
    void release(KPFolderNode &node);
    void takeEvents();
    void takeEvent(const KPFolderWatch::Event &event);
    void lookAgain(KPFolderNode &node, const QByteArray &name, quint32 mask);
    void forEachNode(int watch, const std::function<void(KPFolderNode &)> &action);

    const KPRequestMatcher m_matcher;
    const Options m_options;
    const int m_wake;
    const std::function<bool()> m_isStopped;
    const Deliver m_deliver;

    std::vector<std::unique_ptr<KPFolderNode>> m_roots;
    std::set<QByteArray> m_rootPaths;
    KPFolderOpener m_opener;
    std::vector<Visit> m_visits; // a stack

    std::unique_ptr<KPFolderWatch> m_watch; // none: not live
    std::unordered_multimap<int, KPFolderNode *> m_nodesByWatch;
    std::map<std::pair<int, QByteArray>, quint32> m_looks; // names to look at again: their masks
    std::set<KPFolderNode *> m_unwatched;                  // to be read on the timer
    bool m_lostEvents = false;
    std::optional<Clock::time_point> m_againAt;    // when the timer reads next; none: no timer
    std::optional<Clock::time_point> m_againBegan; // while it does
    Clock::duration m_againTook{};

    KPWalkReports m_reports;
    Clock::time_point m_delivered;
    QMap<QString, QString> m_problems; // message by path
    std::optional<QStringList> m_reportedProblems;
};
