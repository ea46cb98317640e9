#pragma once

#include <QString>

// Keeps other threads, and other processes of the same user, from changing one file's attributes
// while it lives: for "read, change, write". The file itself is not touched or opened.
//
// It is a lock on one byte of a lock file, its place a hash of the file's device and inode: any
// path to the file, one lock. The lock file's place depends on the user alone and not on the
// environment, which cron, su and a session set differently. Byte locks end with their process,
// however it dies. Two files of one hash wait for each other; a hanging file keeps only its own
// callers. Where no lock file can be had only the threads of this process exclude each other; a
// file that does not exist has no lock, as it has no attributes either. A file that is replaced
// between the look at its inode and the write is not covered. Never ask the user anything while it
// lives. Threads: any; lock and release on one thread. Not for nesting on one file.
class KarvexFileLock
{
public:
    explicit KarvexFileLock(const QString &path);
    // A thing that is no file: the same lock for the same name.
    static KarvexFileLock named(const QString &name);
    ~KarvexFileLock();
    KarvexFileLock(const KarvexFileLock &) = delete;
    KarvexFileLock &operator=(const KarvexFileLock &) = delete;

    // Whether this thread is in the middle of changing some file.
    static bool isHeldByThisThread();
    // The lock file. It may be deleted at any time: who holds a lock of it then and who takes one
    // after that do not exclude each other this once.
    static QString path();

private:
    explicit KarvexFileLock(quint64 hash);
    void lock(quint64 hash);

    qint64 m_offset = -1; // -1: nothing is held
};
