#pragma once

#include "XPFilePromise.h"
#include "XPMutex.h"
#include "XPPasteboard.h"
#include "XPProgress.h"
#include "XPSelectionOffer.h"

#include <QObject>
#include <QTimer>
#include <atomic>
#include <functional>
#include <thread>

// Fetches what another program offers, on a thread of its own, so that no window waits for the
// other program; shown while it takes long, with a way to stop it. A promised file is waited for.
//
// Deletes itself after `done`. Deleted before, by its parent, it stops and tells nothing.
// Threads: main.
class KPPasteboardFetch : public QObject
{
    Q_OBJECT

public:
    struct Fetched
    {
        XPPasteboard pb;
        std::shared_ptr<XPFilePromise> promise; // kept: to be taken
        std::optional<XPError> failure;         // nothing came
    };
    using Done = std::function<void(const Fetched &)>;

    // What is in this process already, or can only be asked for from here.
    static Fetched now(const QMimeData *data);

    // `folder`: where a promised file is to go; empty: today's.
    KPPasteboardFetch(std::unique_ptr<XPSelectionOffer> offer, const QString &folder, Done done,
                      QObject *parent);
    ~KPPasteboardFetch() override;

    // Until the source is needed no more, as it may forget what it dragged when the drop has been
    // answered. Painting and timers go on, what the user does waits.
    void waitForSource();

Q_SIGNALS:
    void sourceFinished(QPrivateSignal); // to the main thread
    void finished(QPrivateSignal);

private:
    void fetch();
    void tell();

    const std::unique_ptr<XPSelectionOffer> m_offer;
    const QString m_folder;
    const Done m_done;
    const XPProgress::Task m_task;
    QTimer m_look; // at whether to stop
    std::atomic<bool> m_isStopped = false;
    std::atomic<bool> m_isSourceFinished = false;
    XPMutex m_mutex;
    Fetched m_fetched XP_GUARDED_BY(m_mutex);
    std::thread m_thread;
};
