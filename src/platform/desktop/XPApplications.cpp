#include "XPApplications.h"

#include "XPPath.h"

#undef signals
#include <gio/gio.h>

static XPApplications::Application application(GAppInfo *info)
{
    return {QString::fromUtf8(g_app_info_get_display_name(info)),
            QString::fromUtf8(g_app_info_get_id(info))};
}

QList<XPApplications::Application> XPApplications::forFile(const QString &path)
{
    const QByteArray name = XPPath::encode(XPPath::fileName(path));
    char *type = g_content_type_guess(name.constData(), nullptr, 0, nullptr);
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
    g_free(type);
    return result;
}
