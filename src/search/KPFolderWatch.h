#pragma once

#include <QByteArray>
#include <vector>

// The kernel's notices about changes in watched folders: an inotify(7) descriptor.
//
// Threads: one at a time. Errors: errno, as of the system calls.
class KPFolderWatch
{
public:
    struct Event
    {
        int watch = -1; // -1: the queue overflowed (IN_Q_OVERFLOW) and notices are lost
        quint32 mask = 0;
        QByteArray name; // empty: about the folder itself
    };

    KPFolderWatch();
    ~KPFolderWatch();
    KPFolderWatch(const KPFolderWatch &) = delete;
    KPFolderWatch &operator=(const KPFolderWatch &) = delete;

    // For poll(2); -1 when the system gave none, and then nothing can be watched.
    int descriptor() const { return m_descriptor; }

    // Watches an open folder and returns the number of the watch, the same for the same folder;
    // -1 with errno.
    int add(int folder);
    void remove(int watch);

    // All that waits, without blocking.
    std::vector<Event> take();

private:
    int m_descriptor;
};
