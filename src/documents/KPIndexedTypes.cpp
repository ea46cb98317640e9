#include "KPIndexedTypes.h"

#include "KPFileType.h"
#include "MDItem.h"

KPIndexedTypes::KPIndexedTypes(const IndexSource &source)
{
    KPFileType::setIndexLookup([&source](const QString &path) {
        const auto item = MDItem::create(source, path);
        return item ? item->copyAttribute(QStringLiteral("kMDItemContentType")).string()
                    : QString();
    });
}

KPIndexedTypes::~KPIndexedTypes()
{
    KPFileType::setIndexLookup({});
}
