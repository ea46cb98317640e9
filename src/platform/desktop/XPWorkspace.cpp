#include "XPWorkspace.h"

#include "XPApplications.h"
#include "XPFileUrls.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPRecentFiles.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <gio/gdesktopappinfo.h>
#include <memory>

std::optional<XPError> XPWorkspace::open(const QString &path)
{
    if (QDesktopServices::openUrl(XPFileUrls::url(path))) {
        XPRecentFiles::note({path});
        return {};
    }
    return XPError::make(XPError::Kind::Unsupported, qtTrId("KPNoProgramToOpen"), path);
}

std::optional<XPError> XPWorkspace::openWith(const QStringList &paths, const QString &desktopEntry)
{
    const auto unreference = [](GDesktopAppInfo *info) { g_object_unref(info); };
    const std::unique_ptr<GDesktopAppInfo, decltype(unreference)> program(
        g_desktop_app_info_new(desktopEntry.toUtf8().constData()), unreference);
    if (!program)
        return XPError::make(XPError::Kind::NotFound,
                             qtTrId("KPNoSuchProgram").arg(XPPath::printable(desktopEntry)));
    GList *urls = nullptr;
    for (const QString &path : paths)
        urls = g_list_append(urls, g_strdup(XPFileUrls::encoded(path).constData()));
    GError *error = nullptr;
    const bool isLaunched =
        g_app_info_launch_uris(G_APP_INFO(program.get()), urls, nullptr, &error) != FALSE;
    g_list_free_full(urls, g_free);
    if (isLaunched) {
        XPRecentFiles::note(paths);
        return {};
    }
    const std::unique_ptr<GError, decltype(&g_error_free)> owned(error, &g_error_free);
    return XPError::make(XPError::Kind::Io, QString::fromUtf8(error->message), paths.value(0));
}

static void openFolderOf(const QString &path)
{
    if (XPWorkspace::open(XPPath::folder(path)))
        XPPrompts::current().alert(
            qtTrId("KPCannotReveal").arg(XPPath::printable(XPPath::fileName(path))),
            qtTrId("KPNoFileManager"));
}

static QDBusMessage showItems(const QStringList &paths)
{
    QStringList urls;
    for (const QString &path : paths)
        urls.append(QString::fromLatin1(XPFileUrls::encoded(path)));
    auto message = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.FileManager1"),
                                                  QStringLiteral("/org/freedesktop/FileManager1"),
                                                  QStringLiteral("org.freedesktop.FileManager1"),
                                                  QStringLiteral("ShowItems"));
    message << urls << QString();
    return message;
}

std::optional<XPError> XPWorkspace::revealAndWait(const QStringList &paths)
{
    const QDBusMessage answer = QDBusConnection::sessionBus().call(showItems(paths));
    if (answer.type() != QDBusMessage::ErrorMessage)
        return {};
    const QString folder = XPPath::folder(paths.first());
    const auto programs = XPApplications::forFolders();
    if (programs.isEmpty())
        return XPError::make(XPError::Kind::Unsupported, qtTrId("KPNoFileManager"), folder);
    return openWith({folder}, programs.first().desktopEntry);
}

void XPWorkspace::reveal(const QStringList &paths)
{
    if (paths.isEmpty())
        return;
    auto *watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(showItems(paths)));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [watcher, first = paths.first()] {
                         if (watcher->isError())
                             openFolderOf(first);
                         watcher->deleteLater();
                     });
}
