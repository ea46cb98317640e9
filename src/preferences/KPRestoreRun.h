#pragma once

#include "KarvexRestore.h"
#include "XPMutex.h"

#include <QObject>
#include <memory>
#include <thread>

// A run over a backup off the main thread: what a restore would change, or the restore of it.
//
// The destructor asks a run to stop and waits for it, but not for a file call that hangs.
// Threads: main. Ownership: the index's source outlives it. Nobody is asked for an administrator's
// rights: what needs them is among the failures.
class KPRestoreRun : public QObject
{
    Q_OBJECT

public:
    explicit KPRestoreRun(IndexSource &source, QObject *parent = nullptr);
    ~KPRestoreRun() override;

    // Looks what would change. A run at work is stopped and forgotten.
    void preview(const QString &backup);
    // Changes the files that have these paths in the backup.
    void restore(const QString &backup, const QSet<QString> &only);
    void stop();
    bool isRunning() const { return m_state != nullptr; }

Q_SIGNALS:
    void progressed(qsizetype done, qsizetype total);
    void finished(const KarvexRestore::Result &result, bool wasPreview);

private:
    struct State;

    void start(const QString &backup, KarvexRestore::Options options);
    void leave();
    void take(const std::shared_ptr<State> &state);

    IndexSource &m_source;
    std::shared_ptr<State> m_state; // of the run at work
    std::thread m_thread;
};
