#include "IndexRequests.h"

#include "XPPath.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

static constexpr size_t largestMessage = 128 * 1024;
static constexpr size_t mostConnections = 64;

// An address is short, the path of a home may be long: the folder goes by its descriptor.
static bool fillAddress(const QString &storePath, XPFileDescriptor &folder, sockaddr_un &address)
{
    folder = XPFileDescriptor(
        ::open(XPPath::encode(XPPath::folder(storePath)).constData(), O_PATH | O_CLOEXEC));
    const QByteArray name = "/proc/self/fd/" + QByteArray::number(folder.get()) + '/' +
                            XPPath::encode(XPPath::fileName(storePath)) + ".socket";
    address = {};
    address.sun_family = AF_UNIX;
    if (!folder.isOpen() || static_cast<size_t>(name.size()) >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, name.constData(), static_cast<size_t>(name.size()));
    return true;
}

// --- Who keeps the index

IndexRequests::IndexRequests(const QString &storePath, Handler handler)
    : m_storePath(storePath), m_handler(std::move(handler)),
      m_socket(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)),
      m_stop(::eventfd(0, EFD_CLOEXEC))
{
    XPFileDescriptor folder;
    sockaddr_un address = {};
    if (!m_socket.isOpen() || !fillAddress(storePath, folder, address)) {
        m_error = XPError::fromErrno(errno, storePath);
        return;
    }
    // Under its name only when somebody listens: it is waited for (Arrival). What was left there by
    // a process that was killed is replaced.
    const QByteArray name(address.sun_path);
    const QByteArray fresh = name + ".new";
    if (static_cast<size_t>(fresh.size()) >= sizeof address.sun_path) {
        m_error = XPError::fromErrno(ENAMETOOLONG, storePath);
        return;
    }
    std::memcpy(address.sun_path, fresh.constData(), static_cast<size_t>(fresh.size()));
    ::unlink(address.sun_path);
    ::fchmod(m_socket.get(), 0600);
    const auto *generic = reinterpret_cast<const sockaddr *>(&address);
    if (::bind(m_socket.get(), generic, sizeof address) != 0 || ::listen(m_socket.get(), 16) != 0 ||
        ::chmod(address.sun_path, 0600) != 0 ||
        ::rename(fresh.constData(), name.constData()) != 0) {
        m_error = XPError::fromErrno(errno, storePath);
        return;
    }
    m_thread = std::thread([this] { loop(); });
}

IndexRequests::~IndexRequests()
{
    if (!m_thread.joinable())
        return;
    const quint64 one = 1;
    (void)!::write(m_stop.get(), &one, sizeof one);
    m_thread.join();
    // The lock is still held, so it is ours.
    ::unlink(XPPath::encode(m_storePath + QStringLiteral(".socket")).constData());
}

void IndexRequests::loop()
{
    for (;;) {
        std::vector<pollfd> waiting{{m_stop.get(), POLLIN, 0}, {m_socket.get(), POLLIN, 0}};
        for (const auto &[descriptor, connection] : m_connections)
            waiting.push_back({descriptor, POLLIN, 0});
        if (::poll(waiting.data(), waiting.size(), -1) < 0 && errno != EINTR)
            return;
        if (waiting[0].revents)
            return;
        for (size_t i = 2; i < waiting.size(); ++i) {
            const auto connection = m_connections.find(waiting[i].fd);
            if (waiting[i].revents && !receive(connection->second))
                m_connections.erase(connection);
        }
        if (waiting[1].revents)
            accept();
    }
}

void IndexRequests::accept()
{
    const int socket = ::accept4(m_socket.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (socket < 0)
        return;
    const auto connection = std::make_shared<Connection>(socket);
    ucred peer = {};
    socklen_t size = sizeof peer;
    const bool ours =
        ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == ::geteuid();
    if (ours && m_connections.size() < mostConnections)
        m_connections.emplace(socket, connection);
}

bool IndexRequests::receive(const std::shared_ptr<Connection> &connection)
{
    QByteArray message(largestMessage, Qt::Uninitialized);
    const ssize_t got =
        ::recv(connection->descriptor.get(), message.data(), largestMessage, MSG_DONTWAIT);
    if (got < 0)
        return errno == EAGAIN || errno == EINTR;
    if (got == 0)
        return false;
    message.truncate(got);
    m_handler(Kind{message.front()}, message.mid(1), [connection](const QByteArray &answer) {
        // Never empty on the wire, as that would look like the end.
        const QByteArray bytes = '=' + answer;
        (void)!::send(connection->descriptor.get(), bytes.constData(),
                      static_cast<size_t>(bytes.size()), MSG_NOSIGNAL | MSG_DONTWAIT);
    });
    return true;
}

// --- Who asks

IndexRequests::Arrival::Arrival(const QString &storePath)
    : m_inotify(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    ::inotify_add_watch(m_inotify.get(), XPPath::encode(XPPath::folder(storePath)).constData(),
                        IN_MOVED_TO | IN_ONLYDIR);
}

bool IndexRequests::Arrival::wait(std::chrono::steady_clock::time_point deadline,
                                  const std::function<bool()> &stop)
{
    using namespace std::chrono;
    for (;;) {
        const auto left = duration_cast<milliseconds>(deadline - steady_clock::now());
        if (left <= milliseconds::zero() || (stop && stop()))
            return false;
        pollfd waiting = {m_inotify.get(), POLLIN, 0};
        const auto most = stop ? std::min(left, milliseconds(50)) : left;
        if (::poll(&waiting, 1, static_cast<int>(most.count())) <= 0)
            continue;
        char events[4096];
        while (::read(m_inotify.get(), events, sizeof events) > 0)
            continue;
        return true;
    }
}

// `patience`: while the other process has too much to do; 0: none.
static XPResult<XPFileDescriptor> sendRequest(const QString &storePath, IndexRequests::Kind kind,
                                              const QByteArray &request,
                                              std::chrono::seconds patience)
{
    const int wait = patience > std::chrono::seconds::zero() ? 0 : SOCK_NONBLOCK;
    XPFileDescriptor socket(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | wait, 0));
    const timeval most = {static_cast<time_t>(patience.count()), 0};
    ::setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &most, sizeof most);
    XPFileDescriptor folder;
    sockaddr_un address = {};
    const QByteArray message = static_cast<char>(kind) + request;
    if (socket.isOpen() && fillAddress(storePath, folder, address) &&
        ::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) ==
            0 &&
        ::send(socket.get(), message.constData(), static_cast<size_t>(message.size()),
               MSG_NOSIGNAL) == message.size())
        return XPResult<XPFileDescriptor>(std::move(socket));
    XPError error = XPError::fromErrno(errno, storePath);
    error.message =
        QStringLiteral("the process that keeps the index does not answer: ") + error.message;
    return error;
}

std::optional<XPError> IndexRequests::tell(const QString &storePath, Kind kind,
                                           const QByteArray &request)
{
    const auto sent = sendRequest(storePath, kind, request, {});
    return sent ? std::nullopt : std::optional(sent.error());
}

XPResult<QByteArray> IndexRequests::ask(const QString &storePath, Kind kind,
                                        const QByteArray &request,
                                        const std::function<bool()> &stop)
{
    const auto socket = sendRequest(storePath, kind, request, std::chrono::seconds(2));
    if (!socket)
        return socket.error();
    for (;;) {
        pollfd waiting = {socket->get(), POLLIN, 0};
        const int ready = ::poll(&waiting, 1, stop ? 50 : -1);
        if (ready <= 0) {
            if (stop && stop())
                return XPError::make(XPError::Kind::Cancelled, QStringLiteral("stopped"));
            continue;
        }
        QByteArray answer(largestMessage, Qt::Uninitialized);
        const ssize_t got = ::recv(socket->get(), answer.data(), largestMessage, 0);
        if (got <= 0)
            return XPError::make(XPError::Kind::Io,
                                 QStringLiteral("the process that keeps the index ended"),
                                 storePath);
        return answer.mid(1, got - 1);
    }
}
