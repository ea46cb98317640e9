#include "KPFileTypeGroup.h"

#include "KPBuiltInGroups.h"
#include "KPContentTypes.h"
#include "KPDynamicType.h"
#include "KPFileType.h"
#include "KPFileTypeRegistry.h"
#include "KPPool.h"
#include "XPLog.h"

#include <QCoreApplication>
#include <QFile>
#include <algorithm>

const QString KPFileTypeGroup::displayNameKey = QStringLiteral("KPDisplayName");
const QString KPFileTypeGroup::enabledKey = QStringLiteral("KPEnabled");
const QString KPFileTypeGroup::utisKey = QStringLiteral("KPUTIStringArray");

static const QString extensionPrefix = QStringLiteral("KPExtension:");
static const QString osTypePrefix = QStringLiteral("KPOSType:");
static const QString dynamicSeparator = QStringLiteral("xxDYNxx");
static const QString treePrefix = QStringLiteral("tree_");

KPFileTypeGroup::KPFileTypeGroup(bool enabled, const QString &displayName, bool isBuiltIn)
    : m_displayName(displayName), m_enabled(enabled), m_isBuiltIn(isBuiltIn)
{
}

KPFileTypeGroup::KPFileTypeGroup(const PropertyValue::Dictionary &dictionary)
    : m_displayName(dictionary.value(displayNameKey).string()),
      m_enabled(dictionary.value(enabledKey).boolValue(true))
{
    for (const QString &entry : dictionary.value(utisKey).strings())
        addStored(entry);
    if (m_utis.isEmpty())
        repair();
}

void KPFileTypeGroup::addStored(const QString &entry)
{
    if (entry.startsWith(extensionPrefix)) {
        const QString rest = entry.mid(extensionPrefix.size());
        const qsizetype cut = rest.indexOf(dynamicSeparator);
        const QString extension = cut < 0 ? rest : rest.left(cut);
        if (!extension.isEmpty())
            addUTIsForExtensions({extension});
        if (cut >= 0)
            addUTI(rest.mid(cut + dynamicSeparator.size()));
    } else if (entry.startsWith(osTypePrefix)) {
        addUTI(KPFileType::preferredUTIForOSType(entry.mid(osTypePrefix.size())));
    } else {
        addUTI(entry);
    }
}

void KPFileTypeGroup::repair()
{
    qCWarning(xpLog).noquote() << "No UTIs passed in, for name" << m_displayName;
    if (const auto builtIn = KPBuiltInGroups::groupWithName(m_displayName))
        m_utis = builtIn->utiArray();
    if (m_utis.isEmpty())
        qCWarning(xpLog).noquote() << "repair of file type" << m_displayName << "group FAILED";
    else
        qCInfo(xpLog).noquote() << "repair of file type" << m_displayName << "group worked,"
                                << m_utis.join(u", ") << "are the UTIS";
}

void KPFileTypeGroup::addUTI(const QString &uti)
{
    if (!uti.isEmpty() && !m_utis.contains(uti))
        m_utis.append(uti);
}

void KPFileTypeGroup::addUTIsForExtensions(const QStringList &extensions)
{
    for (const QString &extension : extensions) {
        for (const QString &uti : KPFileType::allUTIsForExtension(extension, false))
            addUTI(uti);
    }
}

void KPFileTypeGroup::removeUTI(const QString &uti)
{
    m_utis.removeAll(uti);
}

static QString entryFor(KPContentTypes::Number type)
{
    for (KPContentTypes::Number other = 1; other <= KPContentTypes::count(); ++other) {
        if (other != type && KPContentTypes::conforms(other, type))
            return treePrefix + KPContentTypes::identifier(type);
    }
    return KPContentTypes::identifier(type);
}

QStringList KPFileTypeGroup::entriesForText(const QString &typed)
{
    const QString text = typed.trimmed();
    const bool isExtension = text.startsWith(u'.');
    if (const auto type = KPContentTypes::numberOf(text); type != KPContentTypes::none)
        return {entryFor(type)};
    for (KPContentTypes::Number type = 1; !isExtension && type <= KPContentTypes::count(); ++type) {
        const QString name = KPFileType::displayNameForUTI(KPContentTypes::identifier(type));
        if (name.compare(text, Qt::CaseInsensitive) == 0)
            return {entryFor(type)};
    }
    const QString extension = isExtension ? text.mid(1) : text;
    const bool isWord = !extension.isEmpty() &&
                        std::none_of(extension.begin(), extension.end(), [](QChar character) {
                            return character.isSpace() || character == u'/' || character == u'.';
                        });
    return isWord ? KPFileType::allUTIsForExtension(extension, false) : QStringList();
}

QString KPFileTypeGroup::nameOfEntry(const QString &entry)
{
    if (!entry.startsWith(treePrefix))
        return KPFileType::displayNameForUTI(entry);
    return qtTrId("KPTypeWithItsKinds")
        .arg(KPFileType::displayNameForUTI(entry.mid(treePrefix.size())));
}

bool KPFileTypeGroup::containsType(const QString &uti) const
{
    const QString type = uti.startsWith(treePrefix) ? uti.mid(treePrefix.size()) : uti;
    return std::any_of(m_utis.begin(), m_utis.end(), [&](const QString &entry) {
        return entry.startsWith(treePrefix)
                   ? KPContentTypes::conformsTo(type, entry.mid(treePrefix.size()))
                   : entry == uti;
    });
}

void KPFileTypeGroup::setTheDisplayName(const QString &name)
{
    if (name == m_displayName)
        return;
    m_displayName = name;
    KPFileTypeRegistry::instance().announceChange();
}

void KPFileTypeGroup::setTheEnabled(bool enabled)
{
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    KPFileTypeRegistry::instance().announceChange();
}

void KPFileTypeGroup::takeFrom(const KPFileTypeGroup &edited)
{
    m_displayName = edited.m_displayName;
    m_enabled = edited.m_enabled;
    m_utis = edited.m_utis;
}

static QString storedForm(const QString &uti)
{
    if (!uti.startsWith(u"dyn."))
        return uti;
    const QString extension = KPDynamicType::extensionOf(uti);
    if (!extension.isEmpty())
        return extensionPrefix + extension + dynamicSeparator + uti;
    const QString code = KPDynamicType::osTypeOf(uti);
    return code.isEmpty() ? uti : osTypePrefix + code;
}

PropertyValue::Dictionary KPFileTypeGroup::dictionary() const
{
    PropertyValue::Array entries;
    for (const QString &uti : m_utis)
        entries.append(KPPool::pooledString(storedForm(uti)).toString());
    return {{displayNameKey, m_displayName},
            {enabledKey, PropertyValue::boolean(m_enabled)},
            {utisKey, entries}};
}

QString KPFileTypeGroup::persistantID() const
{
    return m_displayName + m_utis.join(u'|');
}

QString KPFileTypeGroup::builtinString() const
{
    return m_isBuiltIn ? qtTrId("KPBuiltInString") : QString();
}

QString KPFileTypeGroup::sourceListImage() const
{
    return QStringLiteral(":/icons/documents/%1.svg").arg(KPBuiltInGroups::iconFor(*this));
}

QByteArray KPFileTypeGroup::cgSourceListImageCreate() const
{
    QFile picture(sourceListImage());
    return picture.open(QIODevice::ReadOnly) ? picture.readAll() : QByteArray();
}
