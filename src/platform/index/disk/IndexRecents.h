#pragma once

#include "XPError.h"
#include "XPFileDescriptor.h"

#include <QByteArray>
#include <QHash>
#include <functional>
#include <thread>

// When files were used last, from the desktop's list of recently used files (XBEL,
// "recently-used.xbel" in the user's data folder), which it watches.
//
// The list is somebody else's file: it is only read, up to a size, and one that does not parse
// counts as empty until it is written again.
// Threads: the constructor and destructor on one thread; the callback comes from a thread of its
// own, first soon after construction, then after each change of the list.
class IndexRecents
{
public:
    // Seconds since 1970, by path (bytes).
    using Times = QHash<QByteArray, double>;
    IndexRecents(const QString &file, std::function<void(Times)> changed);
    ~IndexRecents();

    static XPResult<Times> parse(const QByteArray &xbel);

private:
    void loop();
    bool isConcerned() const; // drains the events

    const QByteArray m_file;
    const std::function<void(Times)> m_changed;
    const XPFileDescriptor m_inotify;
    const XPFileDescriptor m_stop; // eventfd
    std::thread m_thread;
};
