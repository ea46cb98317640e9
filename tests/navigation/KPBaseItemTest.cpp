#include "KPBaseItem.h"

#include "KPDateBasedItem.h"
#include "KPDocCache.h"
#include "KPDocPasteboard.h"
#include "KPDocServices.h"
#include "KPFileTypeItems.h"
#include "KPFileTypeRegistry.h"
#include "KPFilesAndFoldersItem.h"
#include "KPLastImportItem.h"
#include "KPLibraryItems.h"
#include "KPLocationItem.h"
#include "KPSearchFolders.h"
#include "KPSearchStateKeys.h"
#include "KPSpotlightItem.h"
#include "TestHome.h"
#include "XPPath.h"
#include "XPPropertyList.h"
#include "XPTranslations.h"

#include <QLocale>
#include <QMimeData>
#include <gtest/gtest.h>

using Item = KPBaseItem::Ptr;

template <typename T, typename... Arguments>
static Item make(Arguments... arguments)
{
    return std::make_shared<T>(arguments...);
}

static KPSearchState::Ptr listOf(const QStringList &paths)
{
    return KPSearchState::blankSearchState()->searchStateWithNewFileList(paths);
}

struct Expected
{
    const char *name;
    Item (*make)();
    int type;
    const char *identifier;
    const char *image;
    const char *keys; // of the state's dictionary, without "SaveStateKey_", in order
};

class SourceItems : public testing::TestWithParam<Expected>
{
};

TEST_P(SourceItems, AreKnownByTheirIdentifierAndSearchTheirOwn)
{
    const Item item = GetParam().make();
    EXPECT_EQ(item->sourceListItemType(), GetParam().type);
    EXPECT_EQ(item->persistantID(), XPPath::decode(GetParam().identifier));
    EXPECT_EQ(item->ownerForNewFiltersWhenThisItemIsSelected(), item->persistantID());
    EXPECT_EQ(item->itemImage(), QLatin1String(GetParam().image));
    QStringList keys;
    for (const QString &key : item->searchState()->nativeDictionary().keys())
        keys.append(key.mid(13));
    EXPECT_EQ(keys.join(u' '), QLatin1String(GetParam().keys));
}

TEST_P(SourceItems, ComeBackFromTheirStoredForm)
{
    const Item item = GetParam().make();
    item->setParentFolder(make<KPBaseItem>(QStringLiteral("above")));
    const auto bytes = XPPropertyList::writeBinary(item->archive());
    ASSERT_TRUE(bytes);
    const Item back = KPBaseItem::unarchived(XPPropertyList::read(*bytes)->dictionary());
    ASSERT_TRUE(back);
    const KPBaseItem &read = *back;
    const KPBaseItem &written = *item;
    EXPECT_EQ(typeid(read), typeid(written));
    EXPECT_TRUE(back->isEqual(*item));
    EXPECT_TRUE(back->searchState()->isEqualToSearchState(*item->searchState()));
    EXPECT_EQ(back->displayName(), item->displayName());
    ASSERT_TRUE(back->parentFolder());
    EXPECT_EQ(back->parentFolder()->displayName(), QStringLiteral("above"));
}

INSTANTIATE_TEST_SUITE_P(
    Family, SourceItems,
    testing::Values(
        Expected{"All", [] { return make<KPAllDocumentsItem>(); }, 5,
                 "KPAllDocumentsItemsSourceListItem", "libraryGroupIcon.tif",
                 "ShowManagedDocuments"},
        Expected{"Tagged", [] { return make<KPTaggedItem>(); }, 6, "KPLibraryTaggedFolder",
                 "libraryGroupIcon.tif", "ShowManagedDocuments ShowTaggedDocuments"},
        Expected{"Untagged", [] { return make<KPUntaggedItem>(); }, 7, "KPLibraryUntaggedFolder",
                 "libraryGroupIcon.tif", "DocumentsWithNoTagsOnly ShowManagedDocuments"},
        Expected{"Spotlight", [] { return make<KPSpotlightItem>(QStringLiteral("Search")); }, 11,
                 "Spotlight:Search", "KPSpotlightSearch.tif", "ShowManagedDocuments"},
        Expected{"Hidden", [] { return make<KPHiddenItem>(); }, 12, "KPLibraryHiddenItem",
                 "KPTag_hide.tif", "ShowManagedDocuments WithTags"},
        Expected{"Flagged", [] { return make<KPFlagItem>(); }, 13, "KPLibraryFlaggedItem",
                 "KPTag_flag.tif", "ShowManagedDocuments WithTags"},
        Expected{"Date", [] { return make<KPDateBasedItem>(KPSearchDates::last7Days); }, 15,
                 "SpotlightDate:KPCrumbTrailLast7Days", "sl_dated.tif",
                 "DateSearch ShowManagedDocuments"},
        Expected{
            "LastImport",
            [] {
                return make<KPLastImportItem>(listOf({QStringLiteral("/a"), QStringLiteral("/b")}));
            },
            16, "KPLibraryLastImportItem", "sl_lastImport.tif", "FileList ShowManagedDocuments"},
        Expected{"Managed", [] { return make<KPManagedItem>(); }, 17, "KPLibraryManaged",
                 "libraryGroupIcon.tif", "ShowManagedDocuments"},
        Expected{"AllTypes", [] { return make<KPAllFileTypesItem>(); }, 0, "baseItem", "",
                 "FileUTIs ShowManagedDocuments"},
        Expected{"StandardTypes", [] { return make<KPStandardFileTypesItem>(); }, 0, "baseItem", "",
                 "FileUTIs ShowManagedDocuments"},
        Expected{"Shallow", [] { return make<KPFilesAndFoldersItem>(false); }, 0, "baseItem",
                 "KPFinderMode.tif", "FinderListingMode ShowManagedDocuments"},
        Expected{"Deep", [] { return make<KPFilesAndFoldersItem>(true); }, 0, "baseItem",
                 "KPMurnMode.tif", "FileListGoDeep FinderListingMode ShowManagedDocuments"},
        Expected{"Location",
                 [] {
                     return make<KPLocationItem>(
                         QStringList{QStringLiteral("/tmp/") + QChar(0xDCFC)});
                 },
                 20, "Location:/tmp/\xFC", "folder", "ConstraintFolders ShowManagedDocuments"}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(SourceItem, IsEqualToOthersOfItsKind)
{
    const auto untagged = make<KPUntaggedItem>();
    untagged->setParentFolder(make<KPBaseItem>());
    EXPECT_TRUE(untagged->isEqual(*make<KPUntaggedItem>()));
    EXPECT_FALSE(untagged->isEqual(*make<KPTaggedItem>()));
    const auto week = make<KPDateBasedItem>(KPSearchDates::last7Days);
    EXPECT_TRUE(week->isEqual(*make<KPDateBasedItem>(KPSearchDates::last7Days)));
    EXPECT_FALSE(week->isEqual(*make<KPDateBasedItem>(KPSearchDates::today)));
    const auto import = make<KPLastImportItem>(listOf({QStringLiteral("/a")}));
    EXPECT_TRUE(import->isEqual(*make<KPLastImportItem>(listOf({QStringLiteral("/a")}))));
    EXPECT_FALSE(import->isEqual(*make<KPLastImportItem>(listOf({QStringLiteral("/b")}))));
    EXPECT_FALSE(make<KPSpotlightItem>(QStringLiteral("a"))
                     ->isEqual(*make<KPSpotlightItem>(QStringLiteral("b"))));
}

TEST(SourceItem, OfADateIsReadFromOlderArchives)
{
    const auto read = [](KPBaseItem::Archive fields) {
        fields.insert(QStringLiteral("class"), QStringLiteral("KPDateBasedItem"));
        return KPBaseItem::unarchived(fields)->persistantID();
    };
    EXPECT_EQ(read({}), QStringLiteral("SpotlightDate:KPCrumbTrailToday"));
    EXPECT_EQ(read({{QStringLiteral("relativeStart"), PropertyValue::integer(7)}}),
              QStringLiteral("SpotlightDate:KPCrumbTrailLast7Days"));
    EXPECT_EQ(read({{QStringLiteral("relativeStart"), PropertyValue::integer(7)},
                    {QStringLiteral("dateString"), QStringLiteral("KPCrumbTrailThisYear")}}),
              QStringLiteral("SpotlightDate:KPCrumbTrailThisYear"));
    EXPECT_FALSE(KPBaseItem::unarchived({{QStringLiteral("class"), QStringLiteral("Unknown")}}));
}

TEST(SourceItem, OfTheLastImportIsNamedAfterItsOnlyPlace)
{
    XPTranslations::install(QLocale(QLocale::English));
    const KPLastImportItem nothing(nullptr);
    EXPECT_FALSE(nothing.isSelectable());
    EXPECT_EQ(nothing.itemImage(), QStringLiteral("sl_lastImport_d.tif"));
    EXPECT_TRUE(nothing.searchState()->isBlank());
    const auto one = listOf({QStringLiteral("/tmp/Letters")});
    EXPECT_EQ(KPLastImportItem(one).displayName(), QStringLiteral("In Letters"));
    EXPECT_EQ(KPLastImportItem(one->searchStateWithNewFinderListing(true, true)).displayName(),
              QStringLiteral("All in Letters"));
    EXPECT_EQ(KPLastImportItem(listOf({QStringLiteral("/a"), QStringLiteral("/b")})).displayName(),
              QStringLiteral("Last Import"));
}

TEST(SourceItem, IsNeverPutBelowItself)
{
    const auto outer = make<KPBaseItem>(QStringLiteral("outer"));
    const auto inner = make<KPBaseItem>(QStringLiteral("inner"));
    inner->setParentFolder(outer);
    outer->setParentFolder(inner);
    EXPECT_FALSE(outer->parentFolder());
    EXPECT_TRUE(inner->hasParentOrGrandParent(outer.get()));
}

// Notes what is asked of the higher layers.
class NotedMarks : public KPDocServices
{
public:
    explicit NotedMarks(QStringList *tagged) : m_tagged(tagged) {}
    void replaceOriginalTags(const TagChange &change) override
    {
        for (const QString &tag : KPTagName::displayStringsForTagNames(change.newTags))
            m_tagged->append(tag + u' ' + change.filePaths.join(u' '));
    }

private:
    QStringList *m_tagged;
};

TEST(SourceItem, TakesDocumentsOfTheLibraryAlone)
{
    QStringList tagged;
    KPDocServices::install(std::make_unique<NotedMarks>(&tagged));
    const TestFolder folder;
    const QString path = folder.file(QStringLiteral("letter.txt"));
    QMimeData ours;
    KPDocPasteboard::setPaths(ours, {path});
    QMimeData foreign;
    foreign.setData(QStringLiteral("text/uri-list"), "file://" + path.toUtf8());
    for (const Item &item : {make<KPFlagItem>(), make<KPHiddenItem>()}) {
        const auto offered = [&](int index, const QMimeData &data) {
            return item->validateDropOfType(Qt::CopyAction | Qt::MoveAction, index, nullptr, data);
        };
        EXPECT_EQ(offered(-1, ours), Qt::CopyAction);
        EXPECT_EQ(offered(0, ours), Qt::IgnoreAction);
        EXPECT_EQ(offered(-1, foreign), Qt::IgnoreAction);
        EXPECT_FALSE(item->acceptDrop(foreign, Qt::CopyAction, -1, nullptr));
        EXPECT_TRUE(item->acceptDrop(ours, Qt::CopyAction, -1, nullptr));
    }
    EXPECT_EQ(tagged,
              (QStringList{QStringLiteral("flagged ") + path, QStringLiteral("hidden ") + path}));
    const auto all = make<KPAllDocumentsItem>();
    EXPECT_EQ(all->validateDropOfType(Qt::MoveAction, -1, nullptr, ours), Qt::IgnoreAction);
    KPDocServices::install(std::make_unique<KPDocServices>());
}

namespace {

// Notes where what is dropped goes.
class NotedImports : public KPDocServices
{
public:
    explicit NotedImports(QStringList *folders) : m_folders(folders) {}
    void importDropped(const QMimeData &, const QString &folder, bool) override
    {
        m_folders->append(folder);
    }

private:
    QStringList *m_folders;
};

} // namespace

TEST(Location, TakesWhatOtherProgramsDrop)
{
    QStringList folders;
    KPDocServices::install(std::make_unique<NotedImports>(&folders));
    QMimeData text, strange, ours;
    text.setText(QStringLiteral("words"));
    strange.setData(QStringLiteral("application/x-strange"), "?");
    ours.setText(QStringLiteral("/tmp/search"));
    ours.setData(KPDocPasteboard::searchType, "x");
    const auto takes = [](const QString &place, const QMimeData &data) {
        const auto item = KPLocationItem::withFolder(place);
        const auto action =
            item->validateDropOfType(Qt::CopyAction | Qt::MoveAction, -1, nullptr, data);
        EXPECT_EQ(item->acceptDrop(data, action, -1, nullptr), action == Qt::CopyAction);
        return action == Qt::CopyAction;
    };
    EXPECT_TRUE(takes(QStringLiteral("/tmp/in"), text));
    EXPECT_TRUE(takes(KPSearchFolders::filedDocuments, text));
    EXPECT_TRUE(takes(KPSearchFolders::filedToday, text));
    EXPECT_FALSE(takes(KPSearchFolders::everywhere, text));
    EXPECT_FALSE(takes(QStringLiteral("/tmp/in"), strange));
    EXPECT_FALSE(takes(QStringLiteral("/tmp/in"), ours));
    EXPECT_EQ(folders, QStringList({QStringLiteral("/tmp/in"), QString(), QString()}));
    KPDocServices::install(std::make_unique<KPDocServices>());
}

TEST(Pasteboard, CarriesNamesThatAreNoText)
{
    const QStringList paths{XPPath::decode("/tmp/a\xFFn"), QStringLiteral("/tmp/b\nc")};
    QMimeData data;
    KPDocPasteboard::setPaths(data, paths);
    EXPECT_EQ(KPDocPasteboard::paths(data), paths);
    data.setData(KPDocPasteboard::documentsType, QByteArray("relative\0\0/tmp/d", 16));
    EXPECT_EQ(KPDocPasteboard::paths(data), QStringList{QStringLiteral("/tmp/d")});
}

TEST(Location, KnowsItsFolderAndTheOneAbove)
{
    const auto inner = KPLocationItem::withFolder(QStringLiteral("/tmp/a/b"));
    EXPECT_EQ(inner->parentLocation()->folders(), QStringList{QStringLiteral("/tmp/a")});
    EXPECT_FALSE(KPLocationItem::withFolder(QStringLiteral("/"))->parentLocation());
    EXPECT_FALSE(KPLocationItem::everywhere()->parentLocation());
    EXPECT_FALSE(KPLocationItem::everywhere()->path());
    EXPECT_FALSE(KPLocationItem({QStringLiteral("/a"), QStringLiteral("/b")}).singleFolder());
    QMimeData dragged;
    ASSERT_TRUE(inner->writeItemToPasteboard(dragged));
    EXPECT_TRUE(KPLocationItem::fromPasteboard(dragged)->isEqual(*inner));
    dragged.setData(KPDocPasteboard::locationType, "bplist00 damaged");
    EXPECT_FALSE(KPLocationItem::fromPasteboard(dragged));
}
