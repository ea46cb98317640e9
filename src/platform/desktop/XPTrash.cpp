#include "XPTrash.h"

#include "XPPath.h"

#include <gio/gio.h>
#include <memory>

namespace {

struct Unreference
{
    void operator()(gpointer object) const { g_object_unref(object); }
};

} // namespace

static XPError::Kind kindOf(const GError &error)
{
    using Kind = XPError::Kind;
    switch (error.code) {
    case G_IO_ERROR_NOT_FOUND:
        return Kind::NotFound;
    case G_IO_ERROR_PERMISSION_DENIED:
        return Kind::NotPermitted;
    case G_IO_ERROR_READ_ONLY:
        return Kind::ReadOnly;
    case G_IO_ERROR_NO_SPACE:
        return Kind::NoSpace;
    case G_IO_ERROR_NOT_SUPPORTED:
        return Kind::Unsupported;
    default:
        return Kind::Io;
    }
}

std::optional<XPError> XPTrash::move(const QString &path)
{
    const QByteArray bytes = XPPath::encode(path);
    if (!bytes.startsWith('/'))
        return XPError::make(XPError::Kind::InvalidArgument, QStringLiteral("not a usable path"),
                             path);
    const std::unique_ptr<GFile, Unreference> file(g_file_new_for_path(bytes.constData()));
    GError *error = nullptr;
    if (g_file_trash(file.get(), nullptr, &error))
        return {};
    const std::unique_ptr<GError, decltype(&g_error_free)> owned(error, &g_error_free);
    return XPError::make(kindOf(*error), QString::fromUtf8(error->message), path);
}
