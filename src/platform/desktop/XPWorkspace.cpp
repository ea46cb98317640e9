#include "XPWorkspace.h"

#include "XPFileUrls.h"
#include "XPLog.h"
#include "XPPath.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>

std::optional<XPError> XPWorkspace::open(const QString &path)
{
    if (QDesktopServices::openUrl(XPFileUrls::url(path)))
        return {};
    return XPError::make(XPError::Kind::Unsupported,
                         QStringLiteral("no program to open files with was found"), path);
}

static void openFolderOf(const QString &path)
{
    if (const auto error = XPWorkspace::open(XPPath::folder(path)))
        qCWarning(xpLog).noquote() << error->message;
}

void XPWorkspace::reveal(const QStringList &paths)
{
    if (paths.isEmpty())
        return;
    QStringList urls;
    for (const QString &path : paths)
        urls.append(QString::fromLatin1(XPFileUrls::encoded(path)));
    auto message = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.FileManager1"),
                                                  QStringLiteral("/org/freedesktop/FileManager1"),
                                                  QStringLiteral("org.freedesktop.FileManager1"),
                                                  QStringLiteral("ShowItems"));
    message << urls << QString();
    auto *watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [watcher, first = paths.first()] {
                         if (watcher->isError())
                             openFolderOf(first);
                         watcher->deleteLater();
                     });
}
