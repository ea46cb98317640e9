#include "KarvexTimeStamp.h"

#include "Karvex.h"
#include "KarvexAuthenticated.h"
#include "XPExtendedAttributes.h"
#include "XPLog.h"
#include "XPPath.h"

#include <cerrno>

void KarvexTimeStamp::putBack(const std::optional<QByteArray> &bytes, const QString &name,
                              const QString &path)
{
    auto error = bytes ? XPExtendedAttributes::write(path, name, *bytes)
                       : XPExtendedAttributes::remove(path, name);
    if (error && KarvexAuthenticated::mayRetry(*error))
        error = KarvexAuthenticated::writeBytes(bytes, name, path);
    if (error)
        qCWarning(xpLog).noquote()
            << "an attribute could not be put back:" << error->message << XPPath::printable(path);
}

std::optional<XPError>
KarvexTimeStamp::writeWith(const QString &timeKey, PropertyValue::Date time, const QString &path,
                           const std::function<std::optional<XPError>()> &write)
{
    const QString name = Karvex::spotlightKey(timeKey);
    const auto old = XPExtendedAttributes::read(path, name);
    const bool stamped = !Karvex::setXAttr(time, name, path);
    auto error = write();
    if (error && stamped && old)
        putBack(*old, name, path);
    return error;
}
