#include "IndexRowAttributes.h"

#include "KPContentTypes.h"
#include "KPFileType.h"
#include "XPPath.h"

static PropertyValue dateOf(qint64 nanoseconds)
{
    return PropertyValue::Date::fromSecondsSince1970(static_cast<double>(nanoseconds) / 1e9);
}

PropertyValue IndexRowAttributes::value(const IndexCatalog &catalog, IndexSlot slot,
                                        const QString &name)
{
    const IndexChunk &chunk = catalog.chunkOf(slot);
    const quint32 row = IndexCatalog::rowOf(slot);
    if (name == u"kMDItemPath")
        return XPPath::decode(catalog.path(slot));
    if (name == u"kMDItemDisplayName" || name == u"kMDItemFSName")
        return XPPath::fileName(XPPath::decode(chunk.name(row)));
    if (name == u"kMDItemFSSize")
        return PropertyValue::integer(chunk.sizes[row]);
    if (name == u"kMDItemFSContentChangeDate" || name == u"kMDItemContentModificationDate")
        return dateOf(chunk.modified[row]);
    if (name == u"kMDItemContentCreationDate") {
        // Of the document, where it says so; else of its file.
        if (PropertyValue own = catalog.attribute(slot, name); !own.isNull())
            return own;
    }
    if (name == u"kMDItemFSCreationDate" || name == u"kMDItemContentCreationDate")
        return chunk.births[row] ? dateOf(chunk.birth(row)) : PropertyValue();
    if (name == u"kMDItemContentType")
        return catalog.type(slot);
    if (name == u"kMDItemContentTypeTree")
        return KPContentTypes::typeTree(catalog.type(slot));
    if (name == u"kMDItemKind")
        return KPFileType::displayNameForUTI(catalog.type(slot));
    if (name == u"kMDItemSupportFileType")
        return chunk.hasFlag(row, IndexChunk::System)
                   ? PropertyValue(QStringLiteral("MDSystemFile"))
                   : PropertyValue();
    return catalog.attribute(slot, name);
}
