#include "KPItemArchive.h"

#include "KPDateBasedItem.h"
#include "KPFileTypeItems.h"
#include "KPFilesAndFoldersItem.h"
#include "KPLastImportItem.h"
#include "KPLibraryItems.h"
#include "KPLocationItem.h"
#include "KPSpotlightItem.h"
#include "XPPath.h"

PropertyValue KPItemArchive::savedPath(const QString &path)
{
    return path.isValidUtf16() ? PropertyValue(path) : PropertyValue(XPPath::encode(path));
}

QString KPItemArchive::pathOf(const PropertyValue &saved)
{
    return saved.isString() ? saved.string() : XPPath::decode(saved.data());
}

PropertyValue KPItemArchive::savedPaths(const QStringList &paths)
{
    PropertyValue::Array saved;
    for (const QString &path : paths)
        saved.append(savedPath(path));
    return saved;
}

QStringList KPItemArchive::pathsOf(const PropertyValue &saved)
{
    QStringList paths;
    for (const PropertyValue &entry : saved.array()) {
        if (const QString path = pathOf(entry); !path.isEmpty())
            paths.append(path);
    }
    return paths;
}

using namespace KPItemArchive;
using Archive = KPBaseItem::Archive;

static KPBaseItem::Ptr dateItem(const Archive &archive)
{
    const auto days = [&archive](const QString &key) -> std::optional<double> {
        if (!archive.contains(key))
            return {};
        return archive.value(key).doubleValue();
    };
    QString key = archive.value(dateStringKey).string();
    if (key.isEmpty())
        key = KPSearchState::relativeDaysToDateString(days(relativeStartKey), days(relativeEndKey));
    return std::make_shared<KPDateBasedItem>(key);
}

static KPBaseItem::Ptr lastImportItem(const Archive &archive)
{
    const PropertyValue state = archive.value(searchStateKey);
    return std::make_shared<KPLastImportItem>(
        state.isDictionary() ? KPSearchState::searchStateWithDictionary(state.dictionary())
                             : nullptr);
}

static KPBaseItem::Ptr locationItem(const Archive &archive)
{
    return std::make_shared<KPLocationItem>(pathsOf(archive.value(foldersKey)),
                                            archive.value(displayNameKey).string());
}

template <typename Item>
static KPBaseItem::Ptr plain(const Archive &)
{
    return std::make_shared<Item>();
}

using Maker = KPBaseItem::Ptr (*)(const Archive &);

static const QHash<QString, Maker> &makers()
{
    static const QHash<QString, Maker> known = {
        {QStringLiteral("KPBaseItem"),
         [](const Archive &archive) {
             return std::make_shared<KPBaseItem>(archive.value(titleKey).string());
         }},
        {QStringLiteral("KPAllDocumentsItem"), plain<KPAllDocumentsItem>},
        {QStringLiteral("KPTaggedItem"), plain<KPTaggedItem>},
        {QStringLiteral("KPUntaggedItem"), plain<KPUntaggedItem>},
        {QStringLiteral("KPManagedItem"), plain<KPManagedItem>},
        {QStringLiteral("KPFlagItem"), plain<KPFlagItem>},
        {QStringLiteral("KPHiddenItem"), plain<KPHiddenItem>},
        {QStringLiteral("KPStandardFileTypesItem"), plain<KPStandardFileTypesItem>},
        {QStringLiteral("KPAllFileTypesItem"), plain<KPAllFileTypesItem>},
        {QStringLiteral("KPFileTypesItem"),
         [](const Archive &archive) -> KPBaseItem::Ptr {
             return std::make_shared<KPFileTypesItem>(archive.value(displayNameKey).string(),
                                                      archive.value(typesKey).strings());
         }},
        {QStringLiteral("KPSpotlightItem"),
         [](const Archive &archive) -> KPBaseItem::Ptr {
             return std::make_shared<KPSpotlightItem>(archive.value(displayNameKey).string());
         }},
        {QStringLiteral("KPDateBasedItem"), dateItem},
        {QStringLiteral("KPLastImportItem"), lastImportItem},
        {QStringLiteral("KPFilesAndFoldersItem"),
         [](const Archive &archive) -> KPBaseItem::Ptr {
             return std::make_shared<KPFilesAndFoldersItem>(archive.value(goDeepKey).boolValue());
         }},
        {QStringLiteral("KPLocationItem"), locationItem},
    };
    return known;
}

// NOLINTNEXTLINE(misc-no-recursion): a property list's depth is limited
KPBaseItem::Ptr KPBaseItem::unarchived(const Archive &archive)
{
    const Maker maker = makers().value(archive.value(classKey).string());
    if (!maker)
        return nullptr;
    Ptr item = maker(archive);
    if (const PropertyValue parent = archive.value(parentKey); parent.isDictionary())
        item->setParentFolder(unarchived(parent.dictionary()));
    return item;
}
