#pragma once

#include "XPError.h"
#include "XPFileDescriptor.h"

#include <QByteArray>
#include <chrono>
#include <memory>
#include <sys/types.h>

// One running murn-importer, from outside: its socket, its clock, its end.
//
// It gets an environment of a few harmless words, no descriptor but its socket, and a process group
// of its own, so that an interrupt on the terminal does not reach it. It dies with the thread that
// started it.
// Threads: one at a time.
class ImportProcess
{
public:
    // `idle`: at idle priority for processor and disk.
    static XPResult<std::unique_ptr<ImportProcess>> start(const QByteArray &program, bool idle);
    ~ImportProcess(); // killed and waited for
    ImportProcess(const ImportProcess &) = delete;
    ImportProcess &operator=(const ImportProcess &) = delete;

    int socket() const { return m_socket.get(); } // never waits: non-blocking
    pid_t id() const { return m_id; }
    // What it has used so far, all its threads together.
    std::chrono::milliseconds processorTime() const;
    // It neither computes, nor wants to, nor waits for a disk.
    bool isAsleep() const;
    void hold(); // stands still in the middle of whatever it does
    void carryOn();
    // Kills it, if it lives, and says how it ended: "killed by signal 11 (Segmentation fault)".
    QString end();

private:
    ImportProcess(pid_t id, XPFileDescriptor socket) : m_id(id), m_socket(std::move(socket)) {}

    pid_t m_id; // 0: ended
    XPFileDescriptor m_socket;
};
