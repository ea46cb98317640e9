// KPDocCache: what it hears of changed documents, on the main thread.
#include "KPDocCache.h"

#include "XPAttributeCache.h"
#include "XPNotificationCenter.h"

#include <vector>

// A renamed file is the same file: nothing need be read from it again.
static void takePath(KPDoc *doc, const QString &path)
{
    const XPFileInfo facts = doc->facts();
    doc->setFilePath(path, &facts);
    doc->dataChanged();
}

static void itemChanging(const MDItem &item)
{
    const auto known = XPAttributeCache::cachedMDITemGetPathIfExists(item);
    KPDoc *doc = known ? KPDocCache::docAtPathIfExists(*known) : nullptr;
    if (doc == nullptr)
        return;
    const QString path = item.path();
    if (path.isEmpty())
        takePath(doc, KPDoc::gonePath().toString());
    else if (path == doc->filePath())
        doc->dataChanged();
    else
        takePath(doc, path);
}

static void documentChanging(const XPNotification &notification)
{
    if (const auto *path = std::get_if<QString>(&notification.object)) {
        if (KPDoc *doc = KPDocCache::docAtPathIfExists(*path))
            doc->dataChanged();
        return;
    }
    const auto *object = std::get_if<std::shared_ptr<XPNotificationObject>>(&notification.object);
    if (const auto *item = object ? dynamic_cast<const MDItem *>(object->get()) : nullptr)
        itemChanging(*item);
}

// Filing posts the two paths as the object, everybody else as the user information.
static void documentPathChanged(const XPNotification &notification)
{
    const auto *object = std::get_if<PropertyValue>(&notification.object);
    const PropertyValue::Dictionary paths = object ? object->dictionary() : notification.userInfo;
    const QString oldPath = paths[QStringLiteral("oldPath")].string();
    const QString newPath = paths[QStringLiteral("newPath")].string();
    KPDoc *doc = KPDocCache::docAtPathIfExists(oldPath);
    if (doc == nullptr || oldPath == newPath)
        return;
    if (!newPath.isEmpty()) {
        takePath(doc, newPath);
        return;
    }
    const auto there = XPFileInfo::read(oldPath);
    if (!there && there.error().kind == XPError::Kind::NotFound)
        takePath(doc, KPDoc::gonePath().toString());
}

static void refresh(KPDocMetaData::Attribute attribute, const XPNotification &notification)
{
    if (const auto *path = std::get_if<QString>(&notification.object))
        KPDocMetaData::updateCacheForFilePaths(attribute, {*path});
    else if (const auto *paths = std::get_if<PropertyValue>(&notification.object))
        KPDocMetaData::updateCacheForFilePaths(attribute, paths->strings());
}

void KPDocCache::intializeGlobals()
{
    static std::vector<XPObservation> observations;
    if (!observations.empty())
        return;
    const auto observe = [](const QString &name, const XPNotificationCenter::Observer &observer) {
        observations.push_back(XPNotificationCenter::instance().addObserver(name, observer));
    };
    observe(KPDoc::changingNotification, documentChanging);
    observe(KPDoc::pathChangedNotification, documentPathChanged);
    observe(QStringLiteral("documentsChangingTags"),
            [](const XPNotification &each) { refresh(KPDocMetaData::UserTags, each); });
    observe(QStringLiteral("documentsChangingRatings"),
            [](const XPNotification &each) { refresh(KPDocMetaData::Rating, each); });
}
