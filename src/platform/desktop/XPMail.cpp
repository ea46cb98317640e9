#include "XPMail.h"

#include "XPFileInfo.h"
#include "XPFileUrls.h"
#include "XPPath.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <cerrno>
#include <fcntl.h>
#undef signals
#include <gio/gdesktopappinfo.h>
#include <memory>

static const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
static const QString portal = QStringLiteral("/org/freedesktop/portal/desktop");

static XPError failure(const QString &words)
{
    return XPError::make(XPError::Kind::Unsupported, words);
}

XPResult<XPMail::Attachment> XPMail::open(const QString &path)
{
    const auto info = XPFileInfo::read(path);
    if (!info)
        return info.error();
    if (!info->isRegular())
        return XPError::make(XPError::Kind::InvalidArgument, qtTrId("KPMailNotAFile"), path);
    XPFileDescriptor opened(
        ::open(XPPath::encode(path).constData(), O_PATH | O_CLOEXEC | O_NOFOLLOW));
    if (!opened.isOpen())
        return XPError::fromErrno(errno, path);
    return Attachment{path, std::move(opened)};
}

// --- The program that the user chose

using Program = std::unique_ptr<GDesktopAppInfo, decltype(&g_object_unref)>;

// Most take the files in the address that opens a message (RFC 6068 with "attach"); one family
// wants them as words of its own.
static bool composeWith(GDesktopAppInfo *program, const QStringList &paths)
{
    const QString executable = QString::fromUtf8(g_app_info_get_executable(G_APP_INFO(program)));
    if (QFileInfo(executable).fileName().contains(u"thunderbird")) {
        QByteArrayList urls;
        for (const QString &path : paths)
            urls.append(XPFileUrls::encoded(path).replace('\'', "%27").replace(',', "%2C"));
        return QProcess::startDetached(
            executable,
            {QStringLiteral("-compose"),
             QStringLiteral("attachment='%1'").arg(QString::fromLatin1(urls.join(',')))});
    }
    QByteArrayList parts;
    for (const QString &path : paths)
        parts.append("attach=" + XPPath::encode(path).toPercentEncoding("/"));
    const QByteArray address = "mailto:?" + parts.join('&');
    GList *addresses = g_list_append(nullptr, const_cast<char *>(address.constData()));
    const bool isLaunched =
        g_app_info_launch_uris(G_APP_INFO(program), addresses, nullptr, nullptr) != FALSE;
    g_list_free(addresses);
    return isLaunched;
}

void XPMail::compose(Attachments attachments, const QString &program, Done done,
                     const QDBusConnection &bus)
{
    auto *mail = new XPMail(std::move(attachments), std::move(done), bus);
    const Program chosen(program.endsWith(u".desktop")
                             ? g_desktop_app_info_new(program.toUtf8().constData())
                             : nullptr,
                         &g_object_unref);
    if (chosen && composeWith(chosen.get(), mail->paths()))
        mail->finish({});
    else
        mail->askPortal();
}

XPMail::XPMail(Attachments attachments, Done done, QDBusConnection bus)
    : m_attachments(std::move(attachments)), m_done(std::move(done)), m_bus(std::move(bus))
{
}

QStringList XPMail::paths() const
{
    QStringList paths;
    for (const Attachment &each : m_attachments)
        paths.append(each.path);
    return paths;
}

void XPMail::finish(const std::optional<XPError> &error)
{
    m_done(error);
    deleteLater();
}

// --- The portal

// It answers by a signal of an object whose path is known before, so that no answer is missed.
void XPMail::askPortal()
{
    static int number = 0;
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
    const QString token = QStringLiteral("murnmail%1").arg(++number);
    QString sender = m_bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    m_bus.connect(service, portal + QStringLiteral("/request/%1/%2").arg(sender, token),
                  QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"),
                  this, SLOT(answered(uint, QVariantMap)));
    QList<QDBusUnixFileDescriptor> descriptors;
    for (const Attachment &each : m_attachments)
        descriptors.append(QDBusUnixFileDescriptor(each.descriptor.get()));
    auto message = QDBusMessage::createMethodCall(service, portal,
                                                  QStringLiteral("org.freedesktop.portal.Email"),
                                                  QStringLiteral("ComposeEmail"));
    message << QString()
            << QVariantMap{{QStringLiteral("handle_token"), token},
                           {QStringLiteral("attachment_fds"), QVariant::fromValue(descriptors)}};
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        if (watcher->isError() && !std::exchange(m_isPortalOver, true))
            askXdgEmail();
    });
}

void XPMail::answered(uint response, const QVariantMap &)
{
    constexpr uint failed = 2; // 0: done, 1: the user thought better of it
    if (std::exchange(m_isPortalOver, true))
        return;
    if (response == failed)
        askXdgEmail();
    else
        finish({});
}

// --- xdg-email

void XPMail::askXdgEmail()
{
    const QString program = QStandardPaths::findExecutable(QStringLiteral("xdg-email"));
    if (program.isEmpty()) {
        finish(failure(qtTrId("KPMailNobody")));
        return;
    }
    QStringList words{QStringLiteral("--utf8")};
    for (const QString &path : paths())
        words << QStringLiteral("--attach") << path;
    auto *process = new QProcess(this);
    connect(process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finish(failure(qtTrId("KPMailNobody")));
    });
    connect(process, &QProcess::finished, this, [this](int status, QProcess::ExitStatus how) {
        finish(status == 0 && how == QProcess::NormalExit
                   ? std::nullopt
                   : std::optional(failure(qtTrId("KPMailRefused"))));
    });
    process->start(program, words);
}
