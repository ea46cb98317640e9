// A state's query text, and that the index and the state's own tests mean the same by it.
#include "KPDocCache.h"
#include "KPDocMetaData.h"
#include "KPSearchState.h"
#include "KPSearchStateKeys.h"
#include "Karvex.h"
#include "KeptFolder.h"
#include "MDQuery.h"
#include "UserDefaults.h"
#include "XPPath.h"

#include <QRandomGenerator>
#include <fcntl.h>
#include <set>
#include <sys/stat.h>

using Ptr = KPSearchState::Ptr;
using Tags = KPTagName::Tags;
using Paths = std::set<QString>;

namespace Dates = KPSearchDates;

static QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

static Tags types(const QStringList &identifiers)
{
    return KPTagName::arrayOfUTIsToKPTagNames(identifiers);
}

static Ptr empty()
{
    return KPSearchState::searchStateWithNativeDictionary({});
}

// --- The text

static const QString systemFiles = QStringLiteral("(kMDItemSupportFileType != MDSystemFile)");

// With what every text ends in.
static QString whole(const char *clauses)
{
    return u'(' + text(clauses) + QStringLiteral(" && ") + systemFiles + u')';
}

struct Case
{
    const char *name;
    Ptr state;
    QString query;
};

static std::vector<Case> textCases()
{
    const auto words = [](const char *typed, bool contents, bool meta) {
        return empty()->searchStateWithNewSearchString(text(typed), contents, meta, true);
    };
    const auto all = words("tax report", true, true)
                         ->searchStateWithNewTags({text("work")})
                         ->searchStateWithNewExcludeTags({text("old")})
                         ->searchStateWithNewUTIs(types({text("com.adobe.pdf")}))
                         ->searchStateWithNewExcludeUTIs(types({text("public.jpeg")}))
                         ->searchStateWithNewDateString(Dates::yesterday)
                         ->searchStateWithNewRating(text(">= 3"));
    return {
        {"managed", KPSearchState::blankSearchState(),
         whole("(((kMDItemKXManaged == 1) || (kMDItemKXUserTags == *) || (kMDItemStarRating == *)) "
               "&& !(kMDItemKXManaged == 0))")},
        {"tag", empty()->searchStateByAddingTag(text("work")),
         whole(R"(((kMDItemKXUserTags == "work"cd) || (kMDItemKeywords == "work"cd)))")},
        {"tag alone",
         empty()
             ->searchStateByAddingTag(text("work"))
             ->searchStateWithNewSearchReadOnlyKeywords(false),
         whole(R"(((kMDItemKXUserTags == "work"cd)))")},
        {"no tag",
         empty()->searchStateWithNewTaggedFiles(true)->searchStateByAddingExcludeTag(text("old")),
         text(R"((((kMDItemKXUserTags == *) || (kMDItemKeywords == *)) && )"
              R"(((kMDItemKXUserTags != "old"cd) && (kMDItemKeywords != "old"cd))))")},
        {"tagged",
         empty()->searchStateWithNewTaggedFiles(true)->searchStateWithNewSearchReadOnlyKeywords(
             false),
         text("(kMDItemKXUserTags == *)")},
        {"tagged, with a tag",
         empty()->searchStateWithNewTaggedFiles(true)->searchStateByAddingTag(text("x")),
         text(R"(((kMDItemKXUserTags == "x"cd) || (kMDItemKeywords == "x"cd)))")},
        {"untagged", empty()->searchStateWithNewUntaggedFiles(true),
         whole("(kMDItemKXUserTags != *)")},
        {"type",
         empty()->searchStateWithNewUTIs(types({text("com.adobe.pdf"), text("tree_public.text")})),
         whole(
             R"(((kMDItemContentType == "com.adobe.pdf") || (kMDItemContentTypeTree == "public.text")))")},
        {"excluded types",
         empty()
             ->searchStateWithNewRating(text("!= *"))
             ->searchStateWithNewExcludeUTIs(
                 types({text("com.adobe.pdf"), text("tree_public.image")})),
         whole("(kMDItemContentTypeTree != public.image) && (kMDItemContentType != com.adobe.pdf) "
               "&& (kMDItemStarRating != *)")},
        {"date", empty()->searchStateWithNewDateString(Dates::last7Days),
         whole("(kMDItemContentModificationDate > $time.today(-7))")},
        {"rating", empty()->searchStateWithNewRating(text(">= 3")),
         whole("(kMDItemStarRating >= 3)")},
        {"letter", words("a", true, true), whole(R"((kMDItemDisplayName == "a*"cd))")},
        {"raw", words("mdq:kMDItemFSSize > 1000", true, true), whole("(kMDItemFSSize > 1000)")},
        {"raw, empty", words("mdq:", true, true), systemFiles},
        {"name with extension", words("note.pdf", false, false),
         whole(
             R"(((kMDItemDisplayName == "*note*"cd)) && (kMDItemContentType == "com.adobe.pdf"))")},
        {"everywhere",
         empty()->searchStateByAddingTag(text("x"))->searchStateWithNewContstraintFolders(
             {text("/home/ann/Library")}),
         text(R"(((kMDItemKXUserTags == "x"cd) || (kMDItemKeywords == "x"cd)))")},
        {"all", all,
         whole(
             R"((((kMDItemDisplayName == "*tax*"cd || * == "tax*"cdw || kMDItemTextContent == "tax*"cdw)) && )"
             R"(((kMDItemDisplayName == "*report*"cd || * == "report*"cdw || kMDItemTextContent == "report*"cdw))) && )"
             R"((kMDItemContentModificationDate > $time.today(-2) && kMDItemContentModificationDate < $time.today(-1)) && )"
             R"((kMDItemContentType == "com.adobe.pdf") && )"
             R"(((kMDItemKXUserTags == "work"cd) || (kMDItemKeywords == "work"cd)) && )"
             R"(((kMDItemKXUserTags != "old"cd) && (kMDItemKeywords != "old"cd)) && )"
             R"((kMDItemContentType != public.jpeg) && (kMDItemStarRating >= 3))")},
    };
}

static void setAutoImport(bool on)
{
    for (const char *key : {"KPAutoImportOffice", "KPAutoImportiWork", "KPAutoImportPDFs"})
        UserDefaults::standard().setValue(QLatin1String(key), PropertyValue::boolean(on));
}

// --- Documents with known facts

namespace {

class SearchStateQuery : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        xpGuiThread.assertHere();
        setAutoImport(false);
        s_folder = new KeptFolder;
        makeFiles();
        KPDocCache::intializeGlobals();
        KPDoc::startMetaDataSearching(s_folder->index());
        for (const QString &path : *s_paths)
            s_docs->append(KPDocCache::docAtPath(path));
        // The caches start one after the other.
        ASSERT_TRUE(holdsSoon([] {
            return std::all_of(s_docs->begin(), s_docs->end(), [](const KPDoc *doc) {
                return !doc->fsName().startsWith(u"full") ||
                       (!doc->tagNamesOfTypeUserEntered().isEmpty() && doc->rating() > 0 &&
                        !doc->tagNamesOfTypeReadOnly().isEmpty());
            });
        }));
    }
    static void TearDownTestSuite()
    {
        xpGuiThread.assertHere();
        KPDoc::stopMetaDataSearching();
        delete s_folder;
    }

    static void makeFiles()
    {
        static const char *const names[] = {"one.pdf", "two.txt", "three.jpg", "four.PNG",
                                            "five.md", "six.odt", "seven",     "eight.zzq"};
        static const char *const folders[] = {"", "in/", "in/deep/", "other/"};
        static const QStringList tagSets[] = {{},
                                              {text("Work")},
                                              {text("work"), text("tax 2019")},
                                              {text("hidden")},
                                              {text("a-b.c"), text("(x)")},
                                              {text("caf\xC3\xA9")}};
        // Half a day off every border of the ranges.
        static const double ages[] = {0.5, 1.5, 4.5, 20.5, 200.5, 400.5, 800.5, 1300.5};
        QRandomGenerator random(7); // NOLINT: the same files each time
        for (int i = 0; i < 48; ++i) {
            const bool isFull = i % 6 == 0;
            const QString name = text(folders[i % 4]) + text(isFull ? "full-" : "") +
                                 QString::number(i) + u'-' + text(names[random.bounded(8)]);
            const QString path = s_folder->file(name);
            const auto set = [&](const QString &key, const PropertyValue &value) {
                EXPECT_FALSE(Karvex::setXAttrMetaData(value, key, path));
            };
            const QStringList tags = tagSets[isFull ? 2 : random.bounded(6)];
            if (!tags.isEmpty())
                set(Karvex::userTagsKey, tags);
            if (isFull || random.bounded(3) == 0)
                set(text("kMDItemKeywords"),
                    QStringList{text(random.bounded(2) ? "Paris" : "work")});
            if (isFull || random.bounded(2) == 0)
                set(Karvex::starRatingKey, PropertyValue::integer(1 + random.bounded(5)));
            const auto seconds = static_cast<time_t>(PropertyValue::Date::now().secondsSince1970() -
                                                     ages[random.bounded(8)] * 86400);
            const timespec times[] = {{seconds, 0}, {seconds, 0}};
            ::utimensat(AT_FDCWD, XPPath::encode(path).constData(), times, 0);
            s_paths->append(path);
        }
    }

    // What the index answers; nothing when it does not take the text.
    static std::optional<Paths> foundByIndex(const KPSearchState &state)
    {
        auto query = MDQuery::create(s_folder->index(), state.queryText());
        if (!query)
            return {};
        (*query)->setSearchScope(state.searchFoldersToUseForMDQuery());
        (*query)->execute(MDQuery::Synchronous);
        Paths found;
        for (qsizetype i = 0; i < (*query)->resultCount(); ++i)
            found.insert((*query)->resultAt(i)->path());
        return found;
    }
    // As a search shows it: what the index found and the state lets through.
    static std::optional<Paths> shownByQuery(const KPSearchState &state)
    {
        const auto found = foundByIndex(state);
        if (!found)
            return {};
        return passing([&](const KPDoc &doc) {
            return found->contains(doc.filePath()) && state.docPassesMDQuery(doc);
        });
    }
    static Paths passing(const std::function<bool(const KPDoc &)> &passes)
    {
        Paths paths;
        for (const KPDoc *doc : *s_docs) {
            if (passes(*doc))
                paths.insert(doc->filePath());
        }
        return paths;
    }
    static Paths shownByTests(const KPSearchState &state)
    {
        return passing([&](const KPDoc &doc) { return state.docPasses(doc); });
    }

    static inline KeptFolder *s_folder = nullptr;
    static inline auto *const s_paths = new QStringList;
    static inline auto *const s_docs = new KPDoc::Docs;
};

} // namespace

static std::string joined(const Paths &paths)
{
    std::string all;
    for (const QString &path : paths)
        all += path.mid(path.lastIndexOf(u'/')).toStdString() + ' ';
    return all;
}

TEST_F(SearchStateQuery, IsTheTextOfTheState)
{
    for (const Case &each : textCases()) {
        EXPECT_EQ(each.state->mdQueryString(), each.query) << each.name;
        ASSERT_TRUE(foundByIndex(*each.state)) << each.name;
        // Those that speak of what the tests know nothing of (the library, raw text) and of text.
        if (!each.state->isShowingManagedDocuments() && each.state->searchString().isEmpty() &&
            each.state->constraintFolders().isEmpty()) {
            EXPECT_EQ(joined(*shownByQuery(*each.state)), joined(shownByTests(*each.state)))
                << each.name;
        }
    }
    const Paths managed = *shownByQuery(KPSearchState());
    EXPECT_EQ(managed, passing([](const KPDoc &doc) {
                  return !doc.tagNamesOfTypeUserEntered().isEmpty() || doc.rating() > 0;
              }));
    setAutoImport(true);
    const QString automatic = *KPSearchState().mdQueryString();
    EXPECT_TRUE(automatic.contains(
        u"|| (kMDItemContentType == com.microsoft.word.doc) || (kMDItemContentType == "
        u"org.openxmlformats.wordprocessingml.document) ||"));
    EXPECT_TRUE(automatic.contains(
        u"(kMDItemContentType == com.apple.iwork.keynote.sffkey) || (kMDItemContentType == "
        u"com.adobe.pdf)) && !(kMDItemKXManaged == 0))"));
    EXPECT_EQ(*shownByQuery(KPSearchState()), passing([](const KPDoc &doc) {
        return !doc.tagNamesOfTypeUserEntered().isEmpty() || doc.rating() > 0 || doc.isPDF() ||
               doc.fsName().endsWith(u".odt");
    }));
    setAutoImport(false);
    EXPECT_EQ(KPSearchState::colourSearch(text("alpha")), text("(kBrindlePalette == \"a*\")"));
    EXPECT_EQ(KPSearchState::colourSearch(text("2")), text("(kBrindlePalette == \"*.2.*\")"));
}

// --- The index and the tests

namespace {

// Of the criteria that both sides read alike.
Ptr randomState(QRandomGenerator &random, const QString &folder)
{
    static const QStringList tags = {text("work"), text("WORK"),  text("tax 2019"), text("a-b.c"),
                                     text("(x)"),  text("paris"), text("nothing"),  text("hidden")};
    static const QStringList identifiers = {
        text("com.adobe.pdf"),     text("public.jpeg"),           text("public.plain-text"),
        text("tree_public.image"), text("tree_public.text"),      text("tree_public.data"),
        text("public.image"),      text("KPExtensionSearch_pNg"), text("KPExtensionSearch_zzq")};
    static const QStringList ratings = {text("!= *"), text(">= 1"), text(">= 3"), text(">= 5")};
    const auto perhaps = [&] { return random.bounded(3) == 0; };
    const auto pick = [&](const QStringList &from) {
        QStringList some;
        for (int i = 1 + random.bounded(2); i > 0; --i)
            some.append(from[random.bounded(from.size())]);
        return some;
    };
    Ptr state = empty();
    if (perhaps())
        state = state->searchStateWithNewTags(pick(tags));
    if (perhaps())
        state = state->searchStateWithNewExcludeTags(pick(tags));
    if (perhaps())
        state = state->searchStateWithNewUTIs(types(pick(identifiers)));
    if (perhaps())
        state = state->searchStateWithNewExcludeUTIs(
            types(pick(identifiers.first(state->fileUTIs().isEmpty() ? 6 : 3))));
    if (perhaps())
        state = state->searchStateWithNewDateString(
            Dates::allKeys()[random.bounded(Dates::allKeys().size())]);
    if (perhaps())
        state = state->searchStateWithNewRating(ratings[random.bounded(ratings.size())]);
    if (perhaps())
        state = state->searchStateWithNewTaggedFiles(true);
    else if (perhaps())
        state = state->searchStateWithNewUntaggedFiles(true);
    if (perhaps())
        state = state->searchStateWithNewSearchReadOnlyKeywords(false);
    if (perhaps())
        state = state->searchStateWithNewContstraintFolders({folder + text("/in")});
    if (perhaps())
        state = state->searchStateWithNewExcludeFolders({folder + text("/in/deep")});
    if (perhaps())
        state = state->searchStateWithNewFinderListing(true, random.bounded(2) == 0);
    return state;
}

} // namespace

// More of them at night: MURN_PROPERTY_PAIRS, of a state and a document.
TEST_F(SearchStateQuery, MeansTheSameToTheIndexAndToTheTests)
{
    const int asked = qEnvironmentVariableIntValue("MURN_PROPERTY_PAIRS");
    const auto states = std::max<qsizetype>(asked, 2000) / s_docs->size() + 1;
    QRandomGenerator random(11); // NOLINT: the same states each time
    qsizetype shown = 0;
    for (qsizetype i = 0; i < states; ++i) {
        const Ptr state = randomState(random, s_folder->path());
        const auto byQuery = shownByQuery(*state);
        ASSERT_TRUE(byQuery) << state->queryText().toStdString();
        ASSERT_EQ(joined(*byQuery), joined(shownByTests(*state)))
            << state->queryText().toStdString();
        shown += static_cast<qsizetype>(byQuery->size());
    }
    EXPECT_GT(shown, states); // it was not nothing that was compared
}

TEST_F(SearchStateQuery, DiffersWhereItIsMeantTo)
{
    const auto tag = [](const char *name) { return empty()->searchStateByAddingTag(text(name)); };
    const auto hasCafe = [](const KPDoc &doc) {
        return doc.hasUserEnteredTag(KPTagName::tagNameForUserEnteredTag(text("caf\xC3\xA9")));
    };
    // Accents, and wildcards in a tag: the query alone.
    ASSERT_FALSE(passing(hasCafe).empty());
    EXPECT_EQ(*shownByQuery(*tag("cafe")), passing(hasCafe));
    EXPECT_EQ(shownByTests(*tag("cafe")), Paths());
    EXPECT_EQ(shownByTests(*tag("CAF\xC3\x89")), passing(hasCafe));
    EXPECT_EQ(*shownByQuery(*tag("ca*")), passing(hasCafe));
    EXPECT_EQ(shownByTests(*tag("ca*")), Paths());
    // An unrated document has at most two stars for the tests alone.
    const auto atMost = empty()->searchStateWithNewRating(text("<= 2"));
    const auto isLow = [](const KPDoc &doc) { return doc.rating() <= 2; };
    EXPECT_EQ(shownByTests(*atMost), passing(isLow));
    EXPECT_EQ(*shownByQuery(*atMost),
              passing([&](const KPDoc &doc) { return isLow(doc) && doc.rating() > 0; }));
    // A type that is wanted by its name, inside an excluded tree: for the tests it is wanted.
    const auto inTree = empty()
                            ->searchStateWithNewUTIs(types({text("com.adobe.pdf")}))
                            ->searchStateWithNewExcludeUTIs(types({text("tree_public.data")}));
    EXPECT_EQ(shownByTests(*inTree), passing([](const KPDoc &doc) { return doc.isPDF(); }));
    EXPECT_EQ(*shownByQuery(*inTree), Paths());
    // Text: the tests know neither "-" nor "tag:".
    const auto words = [](const char *typed) {
        return empty()->searchStateWithNewSearchString(text(typed), false, false, true);
    };
    const auto isFull = [](const KPDoc &doc) { return doc.fsName().startsWith(u"full"); };
    EXPECT_EQ(*shownByQuery(*words("FULL")), passing(isFull));
    EXPECT_EQ(shownByTests(*words("FULL")), passing(isFull));
    EXPECT_EQ(*shownByQuery(*words("-full")),
              passing([&](const KPDoc &doc) { return !isFull(doc); }));
    EXPECT_EQ(shownByTests(*words("-full")), Paths());
    EXPECT_EQ(shownByTests(*words("full \"-one.p\"")), passing([&](const KPDoc &doc) {
                  return isFull(doc) && doc.fsName().contains(u"-one.p");
              }));
    EXPECT_EQ(shownByTests(*words("f")), passing(isFull));
    EXPECT_EQ(shownByTests(*words("\"\"")), shownByTests(*empty()));
}

TEST_F(SearchStateQuery, TestsFileLists)
{
    const auto list = empty()
                          ->searchStateWithNewFileList(QStringList{s_paths->first()})
                          ->searchStateWithNewContstraintFolders({text("/elsewhere")});
    EXPECT_EQ(shownByTests(*list), Paths{s_paths->first()});
    EXPECT_TRUE(list->docPassesMDQuery(*s_docs->first()));
    EXPECT_FALSE(list->docPassesMDQuery(*s_docs->last()));
    EXPECT_EQ(list->searchFoldersToUseForMDQuery(), QStringList{s_folder->path()});
}

TEST_F(SearchStateQuery, TakesWhateverIsTyped)
{
    QRandomGenerator random(3); // NOLINT: the same texts each time
    const QStringList pieces = {text("\""),
                                text("\\"),
                                text("*"),
                                text("?"),
                                text("("),
                                text(")"),
                                text(" "),
                                text("&& "),
                                text("||"),
                                text("tag:"),
                                text("name:"),
                                text("rating:"),
                                text("mdq:"),
                                text("-"),
                                text("!"),
                                text("."),
                                text("pdf"),
                                text("\xF0\x9F\x98\x80"),
                                text("\xE2\x80\x8F"),
                                text("$time.today(-1)"),
                                QString(QChar(0xD800)),
                                text("\n")};
    for (int i = 0; i < 500; ++i) {
        QString typed;
        for (int n = random.bounded(9); n >= 0; --n)
            typed += pieces[random.bounded(pieces.size())];
        const auto state = empty()
                               ->searchStateWithNewSearchString(typed, true, true, true)
                               ->searchStateByAddingTag(typed);
        foundByIndex(*state); // taken or refused
        shownByTests(*state);
    }
    const auto huge =
        empty()->searchStateWithNewSearchString(text("word ").repeated(2000), true, true, true);
    foundByIndex(*huge);
    EXPECT_EQ(shownByTests(*huge), Paths());
}
