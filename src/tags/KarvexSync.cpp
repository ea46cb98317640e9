#include "KarvexSync.h"

#include "Karvex.h"
#include "KarvexBackup.h"
#include "KarvexRestore.h"
#include "XPNotificationCenter.h"

#include <QThreadPool>

const QString KarvexSync::doneNotification = QStringLiteral("KarvexSyncDone");
const QString KarvexSync::kindKey = QStringLiteral("kind");

static constexpr int patienceMs = 5000; // with a file call, at the end

namespace {

struct Queue
{
    Queue() { pool.setMaxThreadCount(1); }

    QThreadPool pool;
    std::atomic<int> operations = 0; // waiting or running
    std::atomic<int> round = 0;      // those of an earlier one are to end
};

// Never destroyed: a thread may be left behind in it.
Queue &singleFileQueue()
{
    static auto &queue = *new Queue;
    return queue;
}

} // namespace

static void post(const QString &name, const PropertyValue::Dictionary &information)
{
    XPNotificationCenter::instance().post(name, {}, information);
}

static void restore(IndexSource &source, const QString &file, const KarvexProgress &progress)
{
    const auto result = KarvexRestore(source, {.progress = progress}).readSingleFile(file);
    post(QStringLiteral("TagSyncDoneAgressive"),
         {{QStringLiteral("numDone"), PropertyValue::integer(result.changes.size())},
          {QStringLiteral("status"), result.status}});
}

static void run(IndexSource &source, const QStringList &files, bool aggressiveRestore, int round)
{
    KarvexProgress progress;
    progress.stop = [round] { return singleFileQueue().round != round; };
    if (progress.stop())
        return;
    const bool allowed = gAllowKarvexAuthenticationDialogs.exchange(false);
    if (aggressiveRestore && !files.isEmpty())
        restore(source, files.first(), progress);
    KarvexBackup::Result result;
    if (!progress.stop())
        result = KarvexBackup::writeSingleFile(source, files, progress);
    gAllowKarvexAuthenticationDialogs = allowed;
    PropertyValue::Dictionary information = {
        {QStringLiteral("status"), result.status},
        {QStringLiteral("worked"), PropertyValue::boolean(result.worked)},
        {QStringLiteral("itemCount"), PropertyValue::integer(result.itemCount)}};
    if (!result.worked)
        information.insert(KarvexSync::kindKey,
                           PropertyValue::integer(static_cast<qint64>(result.failure)));
    post(KarvexSync::doneNotification, information);
}

bool KarvexSync::syncWithFiles(IndexSource &source, const QStringList &files,
                               bool aggressiveRestore)
{
    Queue &queue = singleFileQueue();
    if (!aggressiveRestore && queue.operations > 1)
        return false;
    ++queue.operations;
    queue.pool.start([&source, files, aggressiveRestore, round = queue.round.load()] {
        run(source, files, aggressiveRestore, round);
        --singleFileQueue().operations;
    });
    return true;
}

void KarvexSync::stop()
{
    Queue &queue = singleFileQueue();
    ++queue.round;
    queue.pool.waitForDone(patienceMs);
}
