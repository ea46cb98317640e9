#include "KPDocPrefs.h"

#include "XPAtomicFile.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <algorithm>
#include <vector>

static const QString lastUsedKey = QStringLiteral("LastUsed");

// Above this, the oldest go until one less than this is left.
static constexpr qsizetype mostDocuments = 250;

KPDocPrefs &KPDocPrefs::prefs()
{
    static auto *const shared = new KPDocPrefs(filePath());
    return *shared;
}

QString KPDocPrefs::filePath()
{
    return XPFolders::ourApplicationSupport() + QStringLiteral("/docPrefs.plist");
}

std::optional<XPError> KPDocPrefs::saveState()
{
    return prefs().writeToFile();
}

// A name on disk that is no text cannot be a key of a property list.
static QString storableKey(const QString &docKey)
{
    return docKey.isValidUtf16() ? docKey : XPPath::printable(docKey);
}

void KPDocPrefs::setPref(const QString &docKey, const PropertyValue &toObject,
                         const QString &forKey)
{
    const XPLocker lock(m_mutex);
    readIfNeeded();
    PropertyValue &entry = m_docs[storableKey(docKey)];
    PropertyValue::Dictionary preferences = entry.dictionary();
    if (toObject.isNull())
        preferences.remove(forKey);
    else
        preferences[forKey] = toObject;
    preferences[lastUsedKey] = PropertyValue::Date::now();
    entry = preferences;
    m_isChanged = true;
}

PropertyValue KPDocPrefs::getPref(const QString &docKey, const QString &forKey)
{
    const XPLocker lock(m_mutex);
    readIfNeeded();
    return m_docs.value(storableKey(docKey)).dictionary().value(forKey);
}

std::optional<XPError> KPDocPrefs::writeToFile()
{
    const XPLocker lock(m_mutex);
    if (!m_isChanged)
        return {};
    if (!m_mayWrite)
        return XPError::make(XPError::Kind::Io,
                             QStringLiteral("not written, as it could not be read"), m_path);
    dropOldest();
    const auto bytes = XPPropertyList::writeBinary(m_docs);
    if (!bytes)
        return bytes.error();
    auto error = XPAtomicFile::write(m_path, *bytes);
    m_isChanged = error.has_value();
    return error;
}

// What could not be read is never written over: what is malformed is set aside first.
void KPDocPrefs::readIfNeeded()
{
    if (std::exchange(m_isRead, true))
        return;
    const auto bytes = XPAtomicFile::read(m_path);
    if (!bytes) {
        m_mayWrite = bytes.error().kind == XPError::Kind::NotFound;
        if (!m_mayWrite)
            qCWarning(xpLog).noquote() << XPPath::printable(m_path) << bytes.error().message;
        return;
    }
    const auto value = XPPropertyList::read(*bytes);
    if (value && value->isDictionary()) {
        m_docs = value->dictionary();
        return;
    }
    const auto aside = XPAtomicFile::setAside(m_path);
    m_mayWrite = aside.hasValue();
    qCWarning(xpLog).noquote() << XPPath::printable(m_path)
                               << QStringLiteral("is damaged and was set aside");
}

void KPDocPrefs::dropOldest()
{
    const qsizetype count = m_docs.size();
    if (count <= mostDocuments)
        return;
    std::vector<std::pair<double, QString>> byUse;
    for (auto it = m_docs.cbegin(); it != m_docs.cend(); ++it)
        byUse.emplace_back(it->dictionary().value(lastUsedKey).date().secondsSince2001, it.key());
    std::sort(byUse.begin(), byUse.end());
    byUse.resize(static_cast<size_t>(count + 1 - mostDocuments));
    for (const auto &[time, key] : byUse)
        m_docs.remove(key);
}
