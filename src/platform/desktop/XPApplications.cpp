#include "XPApplications.h"

#include "XPPath.h"

#include <QCollator>
#include <algorithm>
#undef signals
#include <gio/gdesktopappinfo.h>

using XPApplications::Application;

static Application application(GAppInfo *info)
{
    GIcon *icon = g_app_info_get_icon(info);
    char *iconName = icon ? g_icon_to_string(icon) : nullptr;
    Application made{QString::fromUtf8(g_app_info_get_display_name(info)),
                     QString::fromUtf8(g_app_info_get_id(info)), QString::fromUtf8(iconName)};
    g_free(iconName);
    return made;
}

static QList<Application> forType(const char *type)
{
    QList<Application> result;
    const auto append = [&](GAppInfo *info) {
        const Application each = application(info);
        const auto isSame = [&](const Application &other) {
            return other.desktopEntry == each.desktopEntry;
        };
        if (!each.desktopEntry.isEmpty() && std::none_of(result.begin(), result.end(), isSame))
            result.append(each);
    };
    if (GAppInfo *usual = g_app_info_get_default_for_type(type, FALSE)) {
        append(usual);
        g_object_unref(usual);
    }
    GList *all = g_app_info_get_all_for_type(type);
    for (const GList *each = all; each; each = each->next)
        append(static_cast<GAppInfo *>(each->data));
    g_list_free_full(all, g_object_unref);
    return result;
}

QList<Application> XPApplications::forFile(const QString &path)
{
    const QByteArray name = XPPath::encode(XPPath::fileName(path));
    char *type = g_content_type_guess(name.constData(), nullptr, 0, nullptr);
    QList<Application> result = forType(type);
    g_free(type);
    return result;
}

QList<Application> XPApplications::forFolders()
{
    return forType("inode/directory");
}

QList<Application> XPApplications::all()
{
    QList<Application> result;
    GList *every = g_app_info_get_all();
    for (const GList *each = every; each; each = each->next) {
        auto *info = static_cast<GAppInfo *>(each->data);
        const bool takesFiles =
            g_app_info_supports_files(info) != FALSE || g_app_info_supports_uris(info) != FALSE;
        if (takesFiles && g_app_info_should_show(info) != FALSE)
            result.append(application(info));
    }
    g_list_free_full(every, g_object_unref);
    const QCollator collator;
    std::sort(result.begin(), result.end(), [&](const Application &a, const Application &b) {
        return collator.compare(a.name, b.name) < 0;
    });
    return result;
}

bool XPApplications::isInstalled(const QString &desktopEntry)
{
    GDesktopAppInfo *info = g_desktop_app_info_new(desktopEntry.toUtf8().constData());
    if (info)
        g_object_unref(info);
    return info != nullptr;
}

bool XPApplications::takesMany(const QString &desktopEntry)
{
    GDesktopAppInfo *info = g_desktop_app_info_new(desktopEntry.toUtf8().constData());
    if (!info)
        return true;
    const QByteArray words = g_app_info_get_commandline(G_APP_INFO(info));
    const bool isAsked = g_desktop_app_info_get_boolean(info, "DBusActivatable") != FALSE;
    g_object_unref(info);
    return isAsked || words.contains("%F") || words.contains("%U");
}
