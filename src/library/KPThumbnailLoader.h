#pragma once

#include "XPMutex.h"

#include <QCache>
#include <QImage>
#include <QObject>
#include <QPixmap>
#include <condition_variable>
#include <deque>
#include <functional>
#include <thread>
#include <vector>

// Pictures and types of the documents in sight, made on threads of its own and remembered while
// there is room.
//
// want() says what is in sight now; what was wanted before and is not begun is dropped, so that
// fast scrolling leaves no queue behind. A file that has no picture is remembered as well.
// Threads: lives on the main thread. The workers are owned here; the destructor stops and joins
//          them, waiting for the picture at hand at most.
class KPThumbnailLoader : public QObject
{
    Q_OBJECT

public:
    struct Request
    {
        QString path;
        qint64 version = 0; // the file's modification time: another one is another picture
        quint32 mode = 0;
        int side = 0; // device pixels
        bool operator==(const Request &) const = default;
    };
    struct Look
    {
        QPixmap picture; // null: there is none
        QString uti;     // the content type; empty: not known yet
        int side = 0;    // what the picture was made for
    };
    using Maker = std::function<QImage(const QString &path, int side)>;

    explicit KPThumbnailLoader(QObject *parent = nullptr);
    KPThumbnailLoader(Maker maker, qsizetype cacheBytes, QObject *parent = nullptr);
    ~KPThumbnailLoader() override;

    // In the order in which they should come.
    void want(const std::vector<Request> &requests) XP_EXCLUDES(m_mutex);

    // What is known of that version of the file; also one made for another size, to show until
    // the right one is there.
    Look look(const QString &path, qint64 version) const;
    bool isBusy() const { return m_outstanding > 0; }

Q_SIGNALS:
    void looksReady(const QStringList &paths);
    void settled(); // everything wanted is there
    void resultsWaiting(QPrivateSignal);

private:
    struct Result
    {
        Request request;
        QImage image;
        QString uti;
    };
    struct Entry
    {
        Look look;
        qint64 version = 0;
    };

    void work() XP_EXCLUDES(m_mutex);
    Result make(const Request &request) const;
    void receive() XP_EXCLUDES(m_mutex);
    void remember(const Result &result);
    bool isKnown(const Request &request) const;

    const Maker m_maker;
    QCache<QString, Entry> m_cache; // cost in bytes; the main thread's alone
    size_t m_outstanding = 0;       // requests without an answer; the main thread's alone
    XPMutex m_mutex;
    std::condition_variable_any m_wake;
    std::deque<Request> m_requests XP_GUARDED_BY(m_mutex);
    std::vector<Request> m_begun XP_GUARDED_BY(m_mutex);
    std::vector<Result> m_results XP_GUARDED_BY(m_mutex);
    bool m_quit XP_GUARDED_BY(m_mutex) = false;
    std::vector<std::thread> m_threads;
};
