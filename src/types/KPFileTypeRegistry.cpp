#include "KPFileTypeRegistry.h"

#include "KPBuiltInGroups.h"
#include "XPAtomicFile.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <algorithm>

const QString KPFileTypeRegistry::changedNotification = QStringLiteral("fileTypeGroupsArray");

static const QString builtInKey = QStringLiteral("KPBuiltIn"); // beside the keys of a group

KPFileTypeRegistry::KPFileTypeRegistry() : m_groups(KPBuiltInGroups::groups())
{
}

KPFileTypeRegistry &KPFileTypeRegistry::instance()
{
    static KPFileTypeRegistry registry;
    return registry;
}

QString KPFileTypeRegistry::filePath()
{
    return XPFolders::ourApplicationSupport() + QStringLiteral("/fileTypes.plist");
}

static bool setAside(const QString &path)
{
    const auto moved = XPAtomicFile::setAside(path);
    if (moved)
        qCWarning(xpLog).noquote()
            << "The file-type groups could not be read and start anew; the old file is"
            << XPPath::printable(*moved);
    else
        qCWarning(xpLog).noquote() << "The file-type groups can neither be read nor set aside, and "
                                      "are not saved:"
                                   << moved.error().message << XPPath::printable(path);
    return moved.hasValue();
}

void KPFileTypeRegistry::readFileTypesPlist()
{
    m_groups = KPBuiltInGroups::groups();
    m_isChanged = false;
    m_mayWrite = true;
    const QString path = filePath();
    const auto bytes = XPAtomicFile::read(path);
    if (!bytes) {
        m_mayWrite = bytes.error().kind == XPError::Kind::NotFound;
        if (!m_mayWrite)
            qCWarning(xpLog).noquote() << "The file-type groups:" << bytes.error().message;
        return;
    }
    const auto value = XPPropertyList::read(*bytes);
    // A list whose every entry is a group; anything else is not ours to overwrite.
    const bool isOurs =
        value && value->isArray() &&
        std::all_of(value->array().begin(), value->array().end(), [](const PropertyValue &entry) {
            return entry.dictionary().contains(KPFileTypeGroup::displayNameKey);
        });
    if (isOurs) {
        take(value->array());
        return;
    }
    m_mayWrite = setAside(path);
}

void KPFileTypeRegistry::take(const PropertyValue::Array &stored)
{
    for (const PropertyValue &entry : stored) {
        const PropertyValue::Dictionary &dictionary = entry.dictionary();
        const QString name = dictionary.value(builtInKey).string();
        const auto group = std::make_shared<KPFileTypeGroup>(dictionary);
        const auto builtIn = std::find_if(m_groups.begin(), m_groups.end(), [&](const auto &each) {
            return each->isBuiltIn() && each->builtInName() == name;
        });
        if (name.isEmpty() || builtIn == m_groups.end())
            m_groups.append(group);
        else
            (*builtIn)->takeFrom(*group);
    }
}

std::optional<XPError> KPFileTypeRegistry::writeFileTypesPlist()
{
    if (!m_isChanged || !m_mayWrite)
        return {};
    PropertyValue::Array stored;
    for (const auto &group : m_groups) {
        PropertyValue::Dictionary dictionary = group->dictionary();
        if (group->isBuiltIn())
            dictionary.insert(builtInKey, group->builtInName());
        stored.append(dictionary);
    }
    const auto bytes = XPPropertyList::writeXml(stored);
    if (!bytes)
        return bytes.error();
    if (auto error = XPAtomicFile::write(filePath(), *bytes))
        return error;
    m_isChanged = false;
    return {};
}

void KPFileTypeRegistry::setFileTypeGroupsArray(const Groups &groups)
{
    m_groups = groups;
    announceChange();
}

void KPFileTypeRegistry::addGroup(const std::shared_ptr<KPFileTypeGroup> &group)
{
    m_groups.append(group);
    announceChange();
}

bool KPFileTypeRegistry::removeGroup(const std::shared_ptr<KPFileTypeGroup> &group)
{
    if (group->isBuiltIn() || m_groups.removeAll(group) == 0)
        return false;
    announceChange();
    return true;
}

std::shared_ptr<KPFileTypeGroup>
KPFileTypeRegistry::fileTypeGroupWithName(const QString &name) const
{
    return KPBuiltInGroups::groupWithName(name);
}

QStringList KPFileTypeRegistry::trackingUTIs() const
{
    QStringList utis;
    for (const auto &group : m_groups) {
        if (group->enabled())
            utis += group->utiArray();
    }
    utis.removeDuplicates();
    return utis;
}

void KPFileTypeRegistry::announceChange()
{
    m_isChanged = true;
    XPNotificationCenter::instance().post(changedNotification);
}
