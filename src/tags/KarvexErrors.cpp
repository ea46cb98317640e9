#include "KarvexErrors.h"

using Kind = XPError::Kind;

static XPError make(Kind kind, qint64 code, const QString &message, const QString &path)
{
    return {kind, XPError::karvexDomain, code, message, path, {}};
}

XPError KarvexErrors::parameter(const QString &path)
{
    return make(Kind::InvalidArgument, -1, QStringLiteral("Kar Vex parameter error"), path);
}

XPError KarvexErrors::syncParameter(const QString &path)
{
    return make(Kind::InvalidArgument, -1, QStringLiteral("Kar Vex SYNC parameter error"), path);
}

XPError KarvexErrors::permissions(const QString &path)
{
    return make(Kind::NotPermitted, -4,
                QStringLiteral("Karvex can't set the meta data, likely a permissions problem"),
                path);
}

XPError KarvexErrors::tooBig(const QString &path)
{
    return make(Kind::TooLarge, -5,
                QStringLiteral("Meta data is too big - size as binary plist must be less than "
                               "(perhaps 4k?) some number of bytes"),
                path);
}

XPError KarvexErrors::wrongKind(const QString &path)
{
    return make(Kind::Malformed, -2, QStringLiteral("the stored value is of an unexpected kind"),
                path);
}

XPError KarvexErrors::propertyList(XPError error, const QString &path)
{
    error.domain = XPError::karvexDomain;
    error.code = -2;
    error.path = path;
    return error;
}
