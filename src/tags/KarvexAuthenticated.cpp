#include "KarvexAuthenticated.h"

#include "Karvex.h"
#include "KarvexErrors.h"
#include "KarvexFileLock.h"
#include "XPAuthorisation.h"
#include "XPExtendedAttributes.h"
#include "XPPropertyList.h"

#include <QCoreApplication>
#include <cerrno>
#include <utility>

std::atomic<bool> gAllowKarvexAuthenticationDialogs = true;

static thread_local bool isThreadSilent = false;

KarvexAuthenticated::NoDialogs::NoDialogs() : m_before(std::exchange(isThreadSilent, true))
{
}

KarvexAuthenticated::NoDialogs::~NoDialogs()
{
    isThreadSilent = m_before;
}

static QString prompt()
{
    //% "You need to authorize to set metadata like tags on some files."
    return qtTrId("KarvexAuthenticationPrompt");
}

XPAuthorisation *KarvexAuthenticated::getAuthenticationPossiblyUsingUI(const QString &prompt)
{
    XPAuthorisation &authorisation = XPAuthorisation::shared();
    return authorisation.obtain(prompt) ? nullptr : &authorisation;
}

std::optional<XPError> KarvexAuthenticated::authenticatedSetXAttr(const PropertyValue &value,
                                                                  const QString &key,
                                                                  const QString &path)
{
    if (key.isEmpty() || path.isEmpty())
        return KarvexErrors::permissions(path);
    if (value.isNull())
        return writeBytes({}, key, path);
    const auto xml = XPPropertyList::writeXml(value);
    if (!xml)
        return KarvexErrors::propertyList(xml.error(), path);
    if (xml->size() > Karvex::maximumValueSize)
        return KarvexErrors::tooBig(path);
    return writeBytes(*xml, key, path);
}

// What the writer reports is believed only as far as one may look.
static bool isStored(const std::optional<QByteArray> &bytes, const QString &key,
                     const QString &path)
{
    const auto stored = XPExtendedAttributes::read(path, key);
    return !stored || *stored == bytes;
}

std::optional<XPError> KarvexAuthenticated::writeBytes(const std::optional<QByteArray> &bytes,
                                                       const QString &key, const QString &path)
{
    XPAuthorisation &authorisation = XPAuthorisation::shared();
    const auto error = KarvexFileLock::isHeldByThisThread()
                           ? authorisation.writeAttributeWithoutAsking(path, key, bytes)
                           : authorisation.writeAttribute(path, key, bytes, prompt());
    if (error || !isStored(bytes, key, path))
        return KarvexErrors::permissions(path);
    return {};
}

bool KarvexAuthenticated::obtainFor(const XPError &error)
{
    return mayRetry(error) && !KarvexFileLock::isHeldByThisThread() &&
           getAuthenticationPossiblyUsingUI(prompt());
}

bool KarvexAuthenticated::mayRetry(const XPError &error)
{
    return error.domain == XPError::posixDomain && error.code == EACCES &&
           gAllowKarvexAuthenticationDialogs && !isThreadSilent;
}
