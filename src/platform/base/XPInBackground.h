#pragma once

#include "XPMainThread.h"
#include "XPMutex.h"
#include "XPStrandedThreads.h"

#include <QPointer>
#include <memory>
#include <optional>
#include <thread>

// Work that may block for long, as a file call on a disk that is gone does, on a thread of its own.
// `done` gets the answer on the main thread, unless the receiver is gone by then. Nobody waits for
// the thread: what it needs, `work` holds.
// Threads: main, where the receiver lives.
template <typename Work, typename Done>
void xpInBackground(QObject *receiver, Work work, Done done)
{
    struct Box
    {
        Box(QObject *object, Done then) : receiver(object), done(std::move(then)) {}
        const QPointer<QObject> receiver;
        const Done done;
        XPMutex mutex;
        std::optional<decltype(work())> answer XP_GUARDED_BY(mutex);
        bool hasEnded XP_GUARDED_BY(mutex) = false;
    };
    auto box = std::make_shared<Box>(receiver, std::move(done));
    std::thread thread([box, work = std::move(work)]() mutable {
        auto answer = work();
        {
            const XPLocker locker(box->mutex);
            box->answer = std::move(answer);
        }
        xpOnMainThread([box] {
            const auto taken = [&] {
                const XPLocker locker(box->mutex);
                return std::move(box->answer);
            }();
            if (box->receiver && taken)
                box->done(*taken);
        });
        const XPLocker locker(box->mutex);
        box->hasEnded = true;
    });
    XPStrandedThreads::adopt(std::move(thread), [box] {
        const XPLocker locker(box->mutex);
        return box->hasEnded;
    });
}
