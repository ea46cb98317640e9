#pragma once

#include "IndexCatalog.h"

// A small catalog with what is odd in real ones: names that are no UTF-8, marks in both forms,
// a hidden folder, many-valued and contradictory attributes, items that are gone.
inline IndexBatch fuzzBatch()
{
    IndexBatch batch;
    const auto put = [&](IndexItem item, IndexItem parent, const char *name, const char *type,
                         quint32 mode) -> IndexRecord & {
        IndexChange &change = batch.emplace_back();
        change.record.item = item;
        change.record.parent = parent;
        change.record.name = name;
        change.record.type = QString::fromLatin1(type);
        change.record.info.mode = mode;
        change.record.info.size = qint64{item} * 1000;
        change.record.info.modified = qint64{1'700'000'000 + item * 86400} * 1'000'000'000;
        change.record.info.inode = item;
        return change.record;
    };
    const auto file = [&](IndexItem item, IndexItem parent, const char *name,
                          const char *type) -> IndexRecord & {
        return put(item, parent, name, type, S_IFREG | 0644);
    };
    put(1, 0, "/home/u", "public.folder", S_IFDIR | 0755);
    put(2, 1, ".hidden", "public.folder", S_IFDIR | 0755);
    put(3, 1, "Ordner \xC3\xA4", "public.folder", S_IFDIR | 0755);
    file(4, 3, "a", "public.plain-text");
    file(5, 3, "a\xCC\x88.pdf", "com.adobe.pdf");
    file(6, 3, "\xC3\xA4.PDF", "com.adobe.pdf");
    file(7, 2, "\xFF\xFE not text", "public.data");
    file(8, 1,
         "STRASSE stra\xC3\x9F"
         "e *?\\\".txt",
         "public.plain-text");
    file(9, 1, "\xF0\x9F\x98\x80 \xE2\x80\x8F.md", "net.daringfireball.markdown");
    file(10, 1, "\xE6\x97\xA5\xE6\x9C\xAC.jpg", "public.jpeg");
    for (IndexItem item = 11; item < 40; ++item) {
        const QByteArray name = "n" + QByteArray::number(item) + ".x";
        IndexRecord &record = file(item, item % 2 ? 1 : 3, name.constData(), "public.data");
        const auto tag = [&](const char *key, const PropertyValue &value) {
            record.attributes.insert(QString::fromLatin1(key), value);
        };
        if (item % 3 == 0)
            tag("kMDItemKXUserTags",
                QStringList{QStringLiteral("Work"), QStringLiteral("w\u00F6rk %1").arg(item % 5)});
        if (item % 4 == 0)
            tag("kMDItemStarRating", PropertyValue::real(item % 6));
        if (item % 5 == 0)
            tag("kMDItemKXManaged", PropertyValue::boolean(item % 2 == 0));
        if (item % 7 == 0)
            tag("kMDItemTitle", QStringLiteral("true 3 * \u65E5\u672C"));
        if (item % 8 == 0)
            tag("kMDItemKXUserTags", PropertyValue::Array{});
        if (item % 11 == 0)
            tag("kMDItemX", PropertyValue::Array{QStringLiteral("3"), PropertyValue::integer(3),
                                                 QByteArray("\0\1", 2)});
        if (item % 13 == 0)
            tag("kMDItemKXUserTagTime", PropertyValue::Date{7e8 + item});
    }
    IndexChange gone;
    gone.kind = IndexChange::Kind::Remove;
    gone.record.item = 12;
    batch.push_back(gone);
    IndexChange imported;
    imported.kind = IndexChange::Kind::Import;
    imported.record.item = 4;
    imported.record.imported.insert(QStringLiteral("kMDItemTitle"), QStringLiteral("Title"));
    imported.record.importedModified = 5;
    imported.record.importedSize = 4000;
    batch.push_back(imported);
    return batch;
}
