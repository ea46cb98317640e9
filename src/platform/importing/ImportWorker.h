#pragma once

#include "ImportManners.h"
#include "ImportMessages.h"
#include "ImportProcess.h"

#include <stop_token>

// A job slot: has documents read by a caged importer, one after the other, and holds it to its
// limits. One that breaks them is killed, and the next job gets a new one.
//
// The time limit is of processor time. By the clock a job may take longer only while the importer
// is kept from working: paused, on a busy machine, or waiting for the disk; twelve times as long
// at most (pauses not counted).
// Threads: one at a time; the pause from any.
class ImportWorker
{
public:
    struct Setup
    {
        QByteArray program;
        bool idle = true;
        std::chrono::milliseconds limit{5000}; // a file, unless it is large (limitFor())
        ImportManners *manners = nullptr;      // when to stand still; outlives the worker
    };
    // The document broke its importer.
    struct Break
    {
        DocumentFailure failure; // Crashed or TimedOut
        QString reason;          // how it ended, for people
    };
    // The answer, what broke, or that nothing can be read at all or `stop` said so (Cancelled).
    using Outcome = std::variant<ImportFrame, Break, XPError>;

    explicit ImportWorker(Setup setup);
    ~ImportWorker();

    // How the importer is caged and what it reads; starts one when none runs.
    XPResult<ImportHello> hello(const std::stop_token &stop = {});
    // `document`: a descriptor opened for reading only. `job.milliseconds` is set here.
    Outcome run(ImportJob job, int document, const std::stop_token &stop = {});

    // Large files may take longer: a second for each 8 MiB beyond the first, up to 30 s.
    static std::chrono::milliseconds limitFor(std::chrono::milliseconds limit, qint64 size);

private:
    using Clock = std::chrono::steady_clock;
    class Watch;
    std::optional<XPError> startProcess(const std::stop_token &stop);
    bool hasUnaskedBytes() const;
    bool send(const ImportFrame &frame, int document) const;
    std::variant<std::monostate, ImportFrame, Break> receive();
    int timeout(std::chrono::milliseconds left) const;
    Outcome wait(std::chrono::milliseconds limit, bool mayPause, const std::stop_token &stop);
    Break broken(DocumentFailure failure, const QString &reason = {});

    const Setup m_setup;
    ImportPause m_noPause;
    ImportPause &m_pause;
    const ImportPause::Listener m_bell; // of the pause, and of `stop`
    std::unique_ptr<ImportProcess> m_process;
    ImportHello m_hello;
    ImportFrameReader m_reader;
    int m_jobs = 0; // of this process
};
