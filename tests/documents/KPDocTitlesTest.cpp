#include "IndexImporters.h"
#include "KPDoc.h"
#include "KPDocCache.h"
#include "KeptFolder.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <gtest/gtest.h>

namespace {

// Takes each file's size for its title; an empty file has none.
class SizeImporter : public IndexImporter
{
public:
    bool accepts(const QString &) const override { return true; }
    XPResult<Content> import(const QByteArray &path, const QString &,
                             const std::stop_token &) override
    {
        const auto info = XPFileInfo::read(XPPath::decode(path));
        if (!info)
            return info.error();
        Content content;
        content.modified = info->modified;
        content.size = info->size;
        content.inode = info->inode;
        if (info->size > 0)
            content.attributes.insert(QStringLiteral("kMDItemTitle"),
                                      QStringLiteral("size\n%1 ").arg(info->size));
        return content;
    }
};

} // namespace

// As the importer has them: nothing of a document is parsed here.
TEST(DocTitles, ComeFromTheIndex)
{
    xpGuiThread.assertHere();
    IndexImporters::install([](bool) { return std::make_unique<SizeImporter>(); });
    KeptFolder folder;
    for (const char *name : {"a.emlx", "a.abcdp", "a.webbookmark"})
        folder.file(QLatin1String(name), "12345");
    for (const char *name : {"b.emlx", "b.abcdp", "b.webbookmark"})
        folder.file(QLatin1String(name), "");
    KPDoc::startMetaDataSearching(folder.index());
    ASSERT_FALSE(folder.kept().sync(true));
    const struct
    {
        const char *name = nullptr;
        void (KPDoc::*set)() = nullptr;
        const char *title = nullptr;
    } rows[] = {
        {"a.emlx", &KPDoc::setTitleFromEmailMessage, "size 5"},
        {"b.emlx", &KPDoc::setTitleFromEmailMessage, "(no subject)"},
        {"a.abcdp", &KPDoc::setTitleFromAddressBookCard, "size 5"},
        {"b.abcdp", &KPDoc::setTitleFromAddressBookCard, "An Address Card"},
        {"a.webbookmark", &KPDoc::setTitleFromBookmark, "size 5"},
        {"b.webbookmark", &KPDoc::setTitleFromBookmark, "b.webbookmark"},
    };
    for (const auto &row : rows) {
        KPDoc *doc = KPDocCache::docAtPath(folder.path(QLatin1String(row.name)));
        EXPECT_EQ(doc->documentTitle(), QLatin1String(row.name));
        (doc->*row.set)();
        EXPECT_EQ(doc->documentTitle(), QLatin1String(row.title)) << row.name;
        doc->dataChanged();
        EXPECT_EQ(doc->documentTitle(), QLatin1String(row.name));
    }
    EXPECT_TRUE(KPDocCache::docAtPath(folder.path(QStringLiteral("a.emlx")))->canChangeTitle());
    EXPECT_FALSE(
        KPDocCache::docAtPath(folder.path(QStringLiteral("scans/a.pdf")))->canChangeTitle());
    KPDoc::stopMetaDataSearching();
}
