#include "XPError.h"

#include <cerrno>
#include <system_error>

const QString XPError::posixDomain = QStringLiteral("posix");
const QString XPError::karvexDomain = QStringLiteral("karvex");
const QString XPError::murnDomain = QStringLiteral("murn");

static XPError::Kind kindOfErrno(int number)
{
    using Kind = XPError::Kind;
    switch (number) {
    case ENOENT:
    case ENOTDIR:
        return Kind::NotFound;
    case EACCES:
    case EPERM:
        return Kind::NotPermitted;
    case EROFS:
        return Kind::ReadOnly;
    case ENOSPC:
    case EDQUOT:
        return Kind::NoSpace;
    case E2BIG:
    case ERANGE:
    case ENAMETOOLONG:
    case EFBIG:
        return Kind::TooLarge;
    case ENOTSUP:
    case ENOSYS:
        return Kind::Unsupported;
    case EINVAL:
        return Kind::InvalidArgument;
    default:
        return Kind::Io;
    }
}

static QString systemText(int number)
{
    return QString::fromStdString(std::generic_category().message(number));
}

QString xpErrnoString(int number)
{
    return QStringLiteral("errno error: %1, %2").arg(number).arg(systemText(number));
}

QString XPError::reason() const
{
    return domain == posixDomain ? systemText(static_cast<int>(code)) : message;
}

XPError XPError::fromErrno(int number, const QString &path)
{
    return {kindOfErrno(number), posixDomain, number, xpErrnoString(number), path, {}};
}

XPError XPError::malformed(const QString &message, std::optional<qint64> offset)
{
    return {Kind::Malformed, murnDomain, 0, message, {}, offset};
}

XPError XPError::make(Kind kind, const QString &message, const QString &path)
{
    return {kind, murnDomain, 0, message, path, {}};
}
