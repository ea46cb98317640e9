#include "XPAuthorisation.h"

#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPrograms.h"
#include "writer/AttributeWriterProtocol.h"

#include <QCoreApplication>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using Kind = XPError::Kind;

// How pkexec says that the user dismissed its dialog (its manual page).
static constexpr int dismissed = 126;
static constexpr std::chrono::seconds quietTime(20);

static bool receiveAll(int socket, void *buffer, size_t size)
{
    ssize_t count = 0;
    do
        count = ::recv(socket, buffer, size, MSG_WAITALL);
    while (count < 0 && errno == EINTR);
    return count == static_cast<ssize_t>(size);
}

static bool sendAll(int socket, const QByteArray &bytes)
{
    qsizetype sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count = ::send(socket, bytes.constData() + sent,
                                     static_cast<size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR)
            return false;
        sent += std::max<ssize_t>(count, 0);
    }
    return true;
}

static QByteArray frame(const QByteArray &name, const QByteArray &path,
                        const std::optional<QByteArray> &value)
{
    using namespace AttributeWriter;
    const Request request = {value ? Operation::Write : Operation::Remove,
                             static_cast<std::uint32_t>(name.size()),
                             static_cast<std::uint32_t>(path.size()),
                             static_cast<std::uint32_t>(value ? value->size() : 0)};
    QByteArray bytes(reinterpret_cast<const char *>(&request), sizeof request);
    return bytes + name + path + value.value_or(QByteArray());
}

static XPError refused(const QString &path)
{
    return XPError::make(Kind::InvalidArgument, qtTrId("XPWriterRefuses"), path);
}

XPAuthorisation::Programs XPAuthorisation::systemPrograms()
{
    return {"/usr/bin/pkexec", XPPrograms::helper("murn-attribute-writer")};
}

XPAuthorisation::XPAuthorisation(Programs programs, Clock clock)
    : m_programs(std::move(programs)), m_clock(std::move(clock))
{
}

XPAuthorisation::~XPAuthorisation()
{
    const XPLocker locker(m_mutex);
    stop(m_writer);
}

static std::unique_ptr<XPAuthorisation> &sharedAuthorisation()
{
    static auto authorisation = std::make_unique<XPAuthorisation>();
    return authorisation;
}

XPAuthorisation &XPAuthorisation::shared()
{
    return *sharedAuthorisation();
}

void XPAuthorisation::installShared(std::unique_ptr<XPAuthorisation> authorisation)
{
    sharedAuthorisation() = std::move(authorisation);
}

std::optional<XPError> XPAuthorisation::obtain(const QString &reason)
{
    {
        XPLocker locker(m_mutex);
        while (m_isAsking)
            m_answered.wait(locker);
        if (m_writer.socket >= 0)
            return {};
        if (auto error = mayAsk())
            return error;
        m_isAsking = true;
    }
    qCInfo(xpLog).noquote() << "asking for administrator's rights:" << reason;
    const auto writer = ask({AttributeWriter::sessionArgument});
    const XPLocker locker(m_mutex);
    endAsking(writer);
    if (!writer)
        return writer.error();
    m_writer = *writer;
    return {};
}

void XPAuthorisation::endAsking(const XPResult<Writer> &writer)
{
    m_isAsking = false;
    m_answered.notify_all();
    // A wrong password too: the next file of the batch must not ask at once again.
    if (!writer)
        m_quietUntil = m_clock() + quietTime;
}

std::optional<XPError> XPAuthorisation::writeAttribute(const QString &path, const QString &name,
                                                       const std::optional<QByteArray> &value,
                                                       const QString &reason)
{
    return write(path, name, value, reason);
}

std::optional<XPError>
XPAuthorisation::writeAttributeWithoutAsking(const QString &path, const QString &name,
                                             const std::optional<QByteArray> &value)
{
    return write(path, name, value, {});
}

std::optional<XPError> XPAuthorisation::write(const QString &path, const QString &name,
                                              const std::optional<QByteArray> &value,
                                              const std::optional<QString> &reasonToAsk)
{
    const QByteArray nameBytes = XPExtendedAttributes::nameOnDisk(name);
    const QByteArray pathBytes = XPPath::encode(path);
    if (nameBytes.size() > AttributeWriter::maximumNameSize ||
        pathBytes.size() > AttributeWriter::maximumPathSize ||
        (value && value->size() > AttributeWriter::maximumValueSize))
        return refused(path);
    const QByteArray bytes = frame(nameBytes, pathBytes, value);
    std::optional<qint32> status;
    // Twice, as a writer that idled too long ends just when it is wanted. Writing the same value
    // again does no harm.
    for (int attempt = 0; attempt < 2 && !status; ++attempt) {
        if (reasonToAsk) {
            if (auto error = obtain(*reasonToAsk))
                return error;
        }
        const XPLocker locker(m_mutex);
        if (m_writer.socket < 0 && !reasonToAsk)
            return XPError::make(Kind::Cancelled,
                                 QStringLiteral("there are no administrator's rights"), path);
        status = request(m_writer, bytes);
        if (!status)
            stop(m_writer);
    }
    if (!status)
        return XPError::make(Kind::Io, qtTrId("XPWriterSilent"), path);
    if (*status < 0)
        return refused(path);
    if (*status == 0 || (*status == ENODATA && !value))
        return {};
    return XPError::fromErrno(*status, path);
}

std::optional<XPError> XPAuthorisation::mayAsk() const
{
    if (m_quietUntil && m_clock() < *m_quietUntil)
        return XPError::make(Kind::Cancelled,
                             QStringLiteral("administrator's rights were refused a moment ago"));
    if (m_programs.writer.isEmpty() || ::access(m_programs.writer.constData(), X_OK) != 0 ||
        ::access(m_programs.launcher.constData(), X_OK) != 0)
        return XPError::make(Kind::Unsupported, qtTrId("XPNoWayToAuthorise"));
    return {};
}

XPResult<XPAuthorisation::Writer> XPAuthorisation::ask(const QByteArrayList &words) const
{
    auto writer = launch(words);
    char greeting[sizeof AttributeWriter::greeting] = {};
    if (writer && receiveAll(writer->socket, greeting, sizeof greeting) &&
        std::memcmp(greeting, AttributeWriter::greeting, sizeof greeting) == 0)
        return *writer;
    const int status = writer ? stop(*writer) : 0;
    if (WIFEXITED(status) && WEXITSTATUS(status) == dismissed)
        return XPError::make(Kind::Cancelled,
                             QStringLiteral("the user gave no administrator's rights"));
    return XPError::make(Kind::NotPermitted, qtTrId("XPNotAuthorised"));
}

// What pkexec shows and logs is plain text, whatever bytes a name has.
static QByteArray plain(const QString &path)
{
    return XPPath::encode(path).toPercentEncoding("/._-", "~");
}

// The path with no link on its way, as the writer wants it.
static XPResult<QString> withoutLinks(const QString &path)
{
    const auto folder = XPFolders::realFolder(XPPath::folder(path));
    if (!folder)
        return folder.error();
    return *folder + u'/' + XPPath::fileName(path);
}

std::optional<XPError> XPAuthorisation::runOnce(const QString &path, const XPFileInfo &confirmed,
                                                const QByteArray &verb,
                                                const QByteArrayList &arguments,
                                                const QString &reason)
{
    const auto real = withoutLinks(path);
    if (!real)
        return real.error();
    // As stat() gives a device's number, which XPFileInfo keeps in two halves.
    const auto device = makedev(static_cast<unsigned>(confirmed.device >> 32),
                                static_cast<unsigned>(confirmed.device));
    const QByteArrayList words = {verb, QByteArray::number(quint64{device}),
                                  QByteArray::number(confirmed.inode), plain(*real)};
    {
        XPLocker locker(m_mutex);
        while (m_isAsking)
            m_answered.wait(locker);
        if (auto error = mayAsk())
            return error;
        m_isAsking = true;
    }
    qCInfo(xpLog).noquote() << "asking for administrator's rights:" << reason;
    const auto asked = ask(words + arguments);
    {
        const XPLocker locker(m_mutex);
        endAsking(asked);
    }
    if (!asked)
        return asked.error();
    Writer writer = *asked;
    qint32 status = 0;
    const bool isAnswered = receiveAll(writer.socket, &status, sizeof status);
    stop(writer);
    if (!isAnswered)
        return XPError::make(Kind::Io, qtTrId("XPWriterSilent"), path);
    if (status < 0)
        return refused(path);
    return status == 0 ? std::nullopt : std::optional(XPError::fromErrno(status, path));
}

std::optional<XPError> XPAuthorisation::moveToTrash(const QString &path,
                                                    const XPFileInfo &confirmed,
                                                    const QString &trashFiles, const QString &name,
                                                    const QString &reason)
{
    const auto trash = XPFolders::realFolder(trashFiles);
    if (!trash)
        return trash.error();
    return runOnce(path, confirmed, "move-to-trash", {plain(*trash), plain(name)}, reason);
}

std::optional<XPError> XPAuthorisation::remove(const QString &path, const XPFileInfo &confirmed,
                                               const QString &reason)
{
    return runOnce(path, confirmed, "remove", {}, reason);
}

// Starts the launcher with one socket as standard input and output: unlike a pipe, a socket can
// be written without the risk of SIGPIPE to the whole process.
std::optional<XPAuthorisation::Writer> XPAuthorisation::launch(const QByteArrayList &words) const
{
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return {};
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawnattr_t attributes; // a background thread's blocked signals are not the child's
    ::posix_spawnattr_init(&attributes);
    sigset_t none;
    ::sigemptyset(&none);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    QByteArrayList texts = QByteArrayList{m_programs.launcher, m_programs.writer} + words;
    std::vector<char *> arguments;
    for (QByteArray &text : texts)
        arguments.push_back(text.data());
    arguments.push_back(nullptr);
    Writer started{ends[0], -1};
    const int failure = ::posix_spawn(&started.process, m_programs.launcher.constData(), &actions,
                                      &attributes, arguments.data(), environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    if (failure != 0) {
        ::close(ends[0]);
        return {};
    }
    return started;
}

// Closes the writer's input, which ends it, and waits for that. The answer is its wait status.
int XPAuthorisation::stop(Writer &writer)
{
    if (writer.socket >= 0)
        ::close(writer.socket);
    int status = 0;
    if (writer.process > 0) {
        while (::waitpid(writer.process, &status, 0) < 0 && errno == EINTR) {
        }
    }
    writer = {};
    return status;
}

std::optional<qint32> XPAuthorisation::request(const Writer &writer, const QByteArray &frame)
{
    qint32 status = 0;
    if (!sendAll(writer.socket, frame) || !receiveAll(writer.socket, &status, sizeof status))
        return {};
    return status;
}
