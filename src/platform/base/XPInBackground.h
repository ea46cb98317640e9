#pragma once

#include "XPStrandedThreads.h"

#include <QCoreApplication>
#include <QPointer>
#include <atomic>
#include <memory>
#include <thread>

// Work that may block for long, as a file call on a disk that is gone does, on a thread of its own.
// `done` gets the answer on the main thread, unless the receiver is gone by then. Nobody waits for
// the thread: what it needs, `work` holds.
// Threads: main, where the receiver lives.
template <typename Work, typename Done>
void xpInBackground(QObject *receiver, Work work, Done done)
{
    auto hasEnded = std::make_shared<std::atomic<bool>>(false);
    std::thread thread([receiver = QPointer(receiver), work = std::move(work),
                        done = std::move(done), hasEnded]() mutable {
        auto answer = work();
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [receiver, done = std::move(done), answer = std::move(answer)] {
                if (receiver)
                    done(answer);
            },
            Qt::QueuedConnection);
        *hasEnded = true;
    });
    XPStrandedThreads::adopt(std::move(thread), [hasEnded] { return hasEnded->load(); });
}
