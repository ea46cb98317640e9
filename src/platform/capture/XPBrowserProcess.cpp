#include "XPBrowserProcess.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

static constexpr std::array programs = {
    "chromium",      "chromium-browser",      "google-chrome-stable",
    "google-chrome", "microsoft-edge-stable", "brave-browser"};
static constexpr qsizetype longestMessage = 64 << 20; // a piece of a document and then some
static constexpr int patienceAtEndMs = 3000;

XPBrowserProcess::XPBrowserProcess()
{
    connect(&m_process, &QProcess::finished, this, [this] {
        if (!m_isEnding)
            Q_EMIT lost(
                qtTrId("XPBrowserEnded")
                    .arg(QString::fromLocal8Bit(m_process.readAllStandardError()).right(400)));
    });
}

XPBrowserProcess::~XPBrowserProcess()
{
    m_isEnding = true;
    delete m_notifier; // before what it watches
    m_socket = {};
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate(); // so that it ends its own processes
    if (!m_process.waitForFinished(patienceAtEndMs))
        m_process.kill();
    m_process.waitForFinished(patienceAtEndMs);
}

std::optional<QString> XPBrowserProcess::findProgram()
{
    for (const char *name : programs) {
        const QString path = QStandardPaths::findExecutable(QString::fromLatin1(name));
        if (!path.isEmpty())
            return path;
    }
    return {};
}

QString XPBrowserProcess::whatToInstall()
{
    return qtTrId("KPCaptureNoBrowser");
}

// A number that the child does not give to something else before it has its own.
static bool makeSocket(XPFileDescriptor &ours, XPFileDescriptor &theirs)
{
    constexpr int aboveOthers = 10;
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return false;
    ours = XPFileDescriptor(ends[0]);
    const XPFileDescriptor other(ends[1]);
    theirs = XPFileDescriptor(::fcntl(other.get(), F_DUPFD_CLOEXEC, aboveOthers));
    return theirs.isOpen();
}

static QStringList arguments(const QString &profile)
{
    QStringList words = {QStringLiteral("--headless"),
                         QStringLiteral("--remote-debugging-pipe"),
                         QStringLiteral("--user-data-dir=") + profile,
                         QStringLiteral("--no-first-run"),
                         QStringLiteral("--no-default-browser-check"),
                         QStringLiteral("--disable-extensions"),
                         QStringLiteral("--disable-sync"),
                         QStringLiteral("--disable-background-networking"),
                         QStringLiteral("--disable-component-update"),
                         QStringLiteral("--disable-default-apps"),
                         QStringLiteral("--disable-gpu"),
                         QStringLiteral("--hide-scrollbars"),
                         QStringLiteral("--mute-audio"),
                         QStringLiteral("--password-store=basic")};
    if (::geteuid() == 0) // it cannot shut itself in for root, and would not start
        words.append(QStringLiteral("--no-sandbox"));
    words.append(QStringLiteral("about:blank"));
    return words;
}

std::optional<XPError> XPBrowserProcess::start(const QString &program)
{
    XPFileDescriptor theirs;
    if (!m_profile.isValid() || !makeSocket(m_socket, theirs))
        return XPError::fromErrno(errno);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.setChildProcessModifier([socket = theirs.get()] {
        constexpr int commands = 3; // as the browser expects them
        constexpr int messages = 4;
        if (::dup2(socket, commands) < 0 || ::dup2(socket, messages) < 0)
            ::_exit(1);
    });
    m_process.start(program, arguments(m_profile.path()));
    if (!m_process.waitForStarted())
        return XPError::make(XPError::Kind::Io, m_process.errorString(), program);
    m_notifier = new QSocketNotifier(m_socket.get(), QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &XPBrowserProcess::read);
    return {};
}

void XPBrowserProcess::ask(const QString &method, const QJsonObject &parameters,
                           const QString &session, const Answer &answer)
{
    QJsonObject message = {{QStringLiteral("id"), ++m_lastId},
                           {QStringLiteral("method"), method},
                           {QStringLiteral("params"), parameters}};
    if (!session.isEmpty())
        message.insert(QStringLiteral("sessionId"), session);
    m_answers.insert(m_lastId, answer);
    // With the NUL that ends each message. They are short, and the browser reads all the time.
    QByteArray bytes = QJsonDocument(message).toJson(QJsonDocument::Compact);
    bytes.append('\0');
    QByteArrayView left = bytes;
    while (!left.isEmpty()) {
        const ssize_t done =
            ::send(m_socket.get(), left.data(), static_cast<size_t>(left.size()), MSG_NOSIGNAL);
        if (done < 0 && errno != EINTR)
            return; // it ended, which is told
        if (done > 0)
            left = left.sliced(done);
    }
}

void XPBrowserProcess::read()
{
    constexpr qsizetype step = 256 << 10;
    QByteArray bytes(step, Qt::Uninitialized);
    const ssize_t got = ::recv(m_socket.get(), bytes.data(), step, MSG_DONTWAIT);
    if (got < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (got <= 0) {
        m_notifier->setEnabled(false);
        return;
    }
    qsizetype from = m_unread.size();
    m_unread += QByteArrayView(bytes).first(got);
    qsizetype begin = 0;
    for (qsizetype end = m_unread.indexOf('\0', from); end >= 0;
         end = m_unread.indexOf('\0', begin)) {
        take(m_unread.sliced(begin, end - begin));
        begin = end + 1;
    }
    m_unread.remove(0, begin);
    if (m_unread.size() > longestMessage) {
        m_notifier->setEnabled(false);
        Q_EMIT lost(qtTrId("XPBrowserTooMuch"));
    }
}

void XPBrowserProcess::take(const QByteArray &message)
{
    const QJsonObject object = QJsonDocument::fromJson(message).object();
    const int id = object[QStringLiteral("id")].toInt();
    if (id == 0) {
        Q_EMIT told(object[QStringLiteral("method")].toString(),
                    object[QStringLiteral("params")].toObject());
        return;
    }
    if (const Answer answer = m_answers.take(id))
        answer(object[QStringLiteral("result")].toObject(),
               object[QStringLiteral("error")][QStringLiteral("message")].toString());
}
