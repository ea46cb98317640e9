#include "KPRestoreRun.h"

#include "KarvexAuthenticated.h"
#include "XPMainThread.h"
#include "XPStrandedThreads.h"

#include <QPointer>
#include <atomic>
#include <chrono>
#include <semaphore>

static constexpr std::chrono::seconds patience(2);

// Shared with the thread, which may outlive the run.
struct KPRestoreRun::State
{
    std::atomic<bool> isStopping = false;
    std::atomic<bool> hasEnded = false;
    std::binary_semaphore end{0};
    std::atomic<qsizetype> told = -1; // hundredths of the way that were told of
    bool isPreview = false;
    QPointer<KPRestoreRun> run; // looked at on the main thread alone
    XPMutex mutex;
    KarvexRestore::Result result XP_GUARDED_BY(mutex);
};

KPRestoreRun::KPRestoreRun(IndexSource &source, QObject *parent) : QObject(parent), m_source(source)
{
}

// A run that was told to stop asks the index nothing more after the query that it is at, which is
// waited for; only a file call can take longer.
KPRestoreRun::~KPRestoreRun()
{
    stop();
    if (m_state)
        (void)m_state->end.try_acquire_for(patience);
    leave();
}

void KPRestoreRun::leave()
{
    if (m_state)
        m_state->isStopping = true;
    if (m_thread.joinable())
        XPStrandedThreads::adopt(std::move(m_thread),
                                 [state = m_state] { return !state || state->hasEnded; });
    m_state.reset();
}

void KPRestoreRun::preview(const QString &backup)
{
    start(backup, {.dryRun = true});
}

void KPRestoreRun::restore(const QString &backup, const QSet<QString> &only)
{
    start(backup, {.only = only});
}

void KPRestoreRun::stop()
{
    if (m_state)
        m_state->isStopping = true;
}

void KPRestoreRun::start(const QString &backup, KarvexRestore::Options options)
{
    leave();
    auto state = std::make_shared<State>();
    m_state = state;
    state->isPreview = options.dryRun;
    state->run = this;
    options.progress.stop = [state] { return state->isStopping.load(); };
    options.progress.show = [state](qsizetype done, qsizetype total) {
        const qsizetype hundredth = total > 0 ? done * 100 / total : 0;
        if (state->told.exchange(hundredth) == hundredth)
            return;
        xpOnMainThread([state, done, total] {
            if (state->run && state->run->m_state == state)
                Q_EMIT state->run->progressed(done, total);
        });
    };
    m_thread = std::thread([state, backup, options, &source = m_source] {
        const KarvexAuthenticated::NoDialogs nobodyIsAsked;
        auto result = KarvexRestore(source, options).readSingleFile(backup);
        {
            const XPLocker locker(state->mutex);
            state->result = std::move(result);
        }
        xpOnMainThread([state] {
            if (state->run)
                state->run->take(state);
        });
        state->hasEnded = true;
        state->end.release();
    });
}

void KPRestoreRun::take(const std::shared_ptr<State> &state)
{
    if (m_state != state)
        return;
    m_thread.join();
    m_state.reset();
    KarvexRestore::Result result;
    {
        const XPLocker locker(state->mutex);
        result = std::move(state->result);
    }
    Q_EMIT finished(result, state->isPreview);
}
