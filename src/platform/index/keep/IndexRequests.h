#pragma once

#include "XPError.h"
#include "XPFileDescriptor.h"
#include "XPMutex.h"

#include <QByteArray>
#include <QString>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <thread>

// What other processes of this user ask of the one that keeps the index: a Unix socket beside
// the store (0600), one message a request and one an answer. The connection ends with the process
// that keeps the index, so nobody waits for an answer that cannot come.
// Threads: the constructor and destructor on one thread; the handler is called on a thread of
// this object's own and may answer later, from any thread. The static functions from any.
class IndexRequests
{
public:
    enum class Kind : char {
        Import = 'i',   // a path (bytes) to be read again; not answered
        Sync = 's',     // "1": contents too; answered (empty) when all is in the journal
        Status = 't',   // answered with IndexStatus as bytes
        Settings = 'c', // roots or rules were changed; not answered
        Damage = 'd',   // the inode of a damaged index of contents; not answered
    };
    using Answer = std::function<void(const QByteArray &)>;
    using Handler = std::function<void(Kind, const QByteArray &, const Answer &)>;

    IndexRequests(const QString &storePath, Handler handler);
    ~IndexRequests();
    // Why nobody can ask anything; none: they can.
    const std::optional<XPError> &error() const { return m_error; }

    // Without waiting; an error when nobody keeps the index or it has too much to do.
    static std::optional<XPError> tell(const QString &storePath, Kind kind,
                                       const QByteArray &request);
    // The answer; Cancelled when `stop` said so before.
    static XPResult<QByteArray> ask(const QString &storePath, Kind kind, const QByteArray &request,
                                    const std::function<bool()> &stop = {});

    // A process that begins to keep the index begins to listen, and is noticed by those who wait.
    class Arrival
    {
    public:
        explicit Arrival(const QString &storePath);
        // Returns true when one has come since the object was made or last returned; false at the
        // deadline, or when `stop` said so.
        bool wait(std::chrono::steady_clock::time_point deadline,
                  const std::function<bool()> &stop);

    private:
        XPFileDescriptor m_inotify;
    };

private:
    struct Connection
    {
        explicit Connection(int socket) : descriptor(socket) {}
        const XPFileDescriptor descriptor;
    };
    void loop();
    void accept();
    bool receive(const std::shared_ptr<Connection> &connection);

    const QString m_storePath;
    const Handler m_handler;
    std::optional<XPError> m_error;
    XPFileDescriptor m_socket;
    XPFileDescriptor m_stop;                                  // eventfd
    std::map<int, std::shared_ptr<Connection>> m_connections; // the thread's
    std::thread m_thread;
};
