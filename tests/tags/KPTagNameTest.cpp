#include "KPTagName.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTranslator>
#include <clocale>
#include <gmock/gmock.h>
#include <latch>
#include <sys/stat.h>
#include <thread>

using testing::ElementsAre;
using Tags = QList<KPTagName *>;

static QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

static KPTagName *user(const char *utf8)
{
    return KPTagName::tagNameForUserEnteredTag(text(utf8));
}

static QStringList texts(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *each : list)
        result.append(text(each));
    return result;
}

TEST(TagText, IsCleanedInOrder)
{
    const struct
    {
        const char *raw, *clean;
    } rows[] = {
        {" a\nb ", "ab"},   {"  two words ", "two words"},
        {"a\r\nb", "ab"},   {"%20a%20b", " a b"},
        {"\n a", " a"},     {"%\n20", " "},
        {"%%2020", "% 20"}, {"\ta\t", "\ta\t"},
        {"\n\r", ""},       {"%2", "%2"},
        {"%2520", "%2520"}, {"100%20%20", "100  "},
    };
    for (const auto &row : rows)
        EXPECT_EQ(KPTagName::CleanAndTrimTag(text(row.raw)), text(row.clean)) << row.raw;
}

TEST(UserTag, SpellingsOfOneTagAreOneObject)
{
    KPTagName *tag = user("Work");
    EXPECT_EQ(user("Work "), tag);
    EXPECT_EQ(user("WORK"), tag);
    EXPECT_EQ(user("wo\nrk"), tag);
    EXPECT_EQ(tag->displayName(), text("Work"));
    EXPECT_EQ(tag->keyName(), text("user:work"));
    EXPECT_EQ(tag->keyNameActivePart(), text("work"));
    EXPECT_EQ(tag->tagType(), KPTagName::User);
    EXPECT_EQ(KPTagName::tagNameForExistingUserEnteredTag(text("wOrK")), tag);

    for (const char *nothing : {"", "  ", "\n", " \r "})
        EXPECT_EQ(user(nothing), nullptr);
    EXPECT_EQ(KPTagName::tagNameForExistingUserEnteredTag(text("nobody made this")), nullptr);
    EXPECT_EQ(KPTagName::tagNameForExistingUserEnteredTag(text("nobody made this")), nullptr);
    const std::string longText(1000, 'L');
    EXPECT_EQ(user(longText.c_str())->keyNameActivePart(), QString(1000, u'l'));
}

TEST(UserTag, OnlyTheCaseFollowsTheLastSpellingWhereAllowed)
{
    KPTagName *tag = user("Travel");
    EXPECT_EQ(KPTagName::tagNameForUserEnteredTagChangeCaseOK(text(" TRAVEL ")), tag);
    EXPECT_EQ(tag->displayName(), text("TRAVEL"));
    EXPECT_EQ(user("travel")->displayName(), text("TRAVEL"));
    tag->setDisplayName(text("Voyage"));
    EXPECT_EQ(tag->displayName(), text("TRAVEL"));
    tag->setDisplayName(text("TraveL"));
    EXPECT_EQ(tag->displayName(), text("TraveL"));
    EXPECT_EQ(tag->displayNameLC(), text("travel"));
    EXPECT_EQ(tag->pooledDisplayNameLC(), KPPool::pooledString(u"travel"));
}

TEST(UserTag, PrecomposedTextMakesTheDecomposedTagButDoesNotFindIt)
{
    KPTagName *tag = user("Caf\u00e9");
    EXPECT_EQ(tag->displayName(), text("Cafe\u0301"));
    EXPECT_EQ(tag->keyName(), text("user:cafe\u0301"));
    EXPECT_EQ(user("CAF\u00c9"), tag);
    EXPECT_EQ(user("cafe\u0301"), tag);
    EXPECT_EQ(KPTagName::tagNameForExistingUserEnteredTag(text("Cafe\u0301")), tag);
    EXPECT_EQ(KPTagName::tagNameForExistingUserEnteredTag(text("Caf\u00e9")), nullptr);
    EXPECT_THAT(KPTagName::fixCaseForUserEnteredTags(texts({"CAF\u00c9", "", "unheard Of"})),
                ElementsAre(text("Cafe\u0301"), text("unheard Of")));

    KPTagName *composed =
        KPTagName::tagNameWithDisplayName(text("R\u00fcbe"), text("user:r\u00fcbe"));
    EXPECT_EQ(user("R\u00dcBE"), composed);
    EXPECT_EQ(composed->displayName(), text("Ru\u0308be"));
}

TEST(UserTag, UnicodeEquivalentKeysFindEachOther)
{
    KPTagName *composed =
        KPTagName::tagNameWithDisplayName(text("Gr\u00f6\u00dfe"), text("read:gr\u00f6\u00dfe"));
    EXPECT_EQ(KPTagName::searchForUincodeEquivalentTag(text("read:GRo\u0308\u00dfe")), composed);
    EXPECT_EQ(KPTagName::searchForUincodeEquivalentTag(text("read:gr\u00f6sse")), nullptr);
    KPTagName *tag = user("\u1e69ilent"); // s with a dot below and one above
    EXPECT_EQ(KPTagName::searchForUincodeEquivalentTag(text(" s\u0307\u0323ilent ")), tag);
    EXPECT_EQ(KPTagName::searchForUincodeEquivalentTag(tag->keyName()), tag);
    EXPECT_EQ(KPTagName::searchForUincodeEquivalentTag(text("silent")), nullptr);
}

// Run again with Turkish set as locale, where "I" and "i" are letters of their own otherwise.
TEST(UserTag, KeysAreLowerCaseAndNotFolded)
{
    const QByteArray locale = qgetenv("MURN_TEST_LOCALE");
    if (!locale.isEmpty()) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread here
        ASSERT_EQ(std::setlocale(LC_ALL, nullptr), locale);
    }
    EXPECT_EQ(user("TITLE INDEX")->keyName(), text("user:title index"));
    EXPECT_EQ(user("title index"), user("TITLE INDEX"));
    EXPECT_EQ(user("I\u0307stanbul \u00c7")->keyName(), text("user:i\u0307stanbul c\u0327"));
    EXPECT_NE(user("Stra\u00dfe"), user("STRASSE"));
    EXPECT_EQ(user("\u039f\u0394\u039f\u03a3")->keyName(), text("user:\u03bf\u03b4\u03bf\u03c2"));
}

TEST(UserTag, KeysAreTheSameUnderTurkish)
{
    const QTemporaryDir folder;
    const QString locale = folder.filePath(text("tr_TR.UTF-8"));
    const int failed = QProcess::execute(
        text("localedef"), {text("-i"), text("tr_TR"), text("-f"), text("UTF-8"), locale});
    if (failed != 0) // it may leave half a locale behind
        GTEST_SKIP() << "localedef cannot make the Turkish locale here";
    QProcess again;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(text("LOCPATH"), folder.path());
    environment.insert(text("LC_ALL"), text("tr_TR.UTF-8"));
    environment.insert(text("MURN_TEST_LOCALE"), text("tr_TR.UTF-8"));
    again.setProcessEnvironment(environment);
    again.start(QCoreApplication::applicationFilePath(),
                {text("--gtest_filter=UserTag.KeysAreLowerCaseAndNotFolded")});
    ASSERT_TRUE(again.waitForFinished());
    EXPECT_EQ(again.exitCode(), 0) << again.readAllStandardOutput().constData();
}

TEST(TagLists, AreMadeInOrder)
{
    const QStringList many = texts({"b", "", "A", "B ", " "});
    EXPECT_THAT(KPTagName::tagNamesForUserEnteredTags(many),
                ElementsAre(user("b"), user("a"), user("b")));
    EXPECT_THAT(KPTagName::tagNamesForUserEnteredTags(many, true),
                ElementsAre(user("b"), user("a")));
    EXPECT_THAT(KPTagName::tagNamesForUserEnteredString(text("x, y,,X ")),
                ElementsAre(user("x"), user("y")));
    EXPECT_THAT(KPTagName::tagNamesForUserEnteredString(text("one tag")),
                ElementsAre(user("one tag")));
    EXPECT_TRUE(KPTagName::tagNamesForUserEnteredString(QString()).isEmpty());
}

TEST(TagLists, AreSplitAtSeparators)
{
    EXPECT_EQ(KPTagName::cleanUpTagStringArray(texts({"a,b\tc"})), texts({"a", "b", "c"}));
    EXPECT_EQ(KPTagName::cleanUpTagStringArray(texts({"a,,b", "c d"})),
              texts({"a", "", "b", "c d"}));
    EXPECT_EQ(KPTagName::cleanUpTagStringArray(texts({"a\r\nb"})), texts({"a", "", "b"}));
    EXPECT_EQ(KPTagName::cleanUpTagStringArray(texts({"1qw34ht8765432299hh2,3"})),
              texts({"1", "2", "3"}));
    EXPECT_EQ(KPTagName::cleanUpTagStringArray(texts({"1qw34ht8765432299hh2"})),
              texts({"1qw34ht8765432299hh2"}));
    EXPECT_EQ(KPTagName::cleanUpTagStringArray({}), QStringList());
}

TEST(TagLists, AnswerMembershipByIdentity)
{
    const Tags ab{user("a"), user("b")};
    EXPECT_THAT(KPTagName::removeDuplicates({user("b"), user("a"), user("b")}),
                ElementsAre(user("b"), user("a")));
    EXPECT_THAT(KPTagName::removeTags({user("b"), user("c"), user("a")}, ab),
                ElementsAre(user("c")));
    EXPECT_EQ(user("b")->tagIndexInArray(ab), 1);
    EXPECT_FALSE(user("c")->tagInArray(ab));
    EXPECT_TRUE(KPTagName::areAllTags({user("b")}, ab));
    EXPECT_FALSE(KPTagName::areAllTags({user("b"), user("c")}, ab));

    using Pooled = KPTagName::PooledTags;
    const auto lc = [](const char *name) { return user(name)->pooledDisplayNameLC(); };
    EXPECT_TRUE(KPTagName::areAllLC_PooledTags({lc("a"), lc("D")}, {lc("A")}, {}, {}, {lc("d")}));
    EXPECT_FALSE(KPTagName::areAllLC_PooledTags({lc("a"), lc("d")}, {}, {lc("a")}, {}, {}));
    EXPECT_TRUE(KPTagName::areAnyLC_PooledTags({lc("a"), lc("d")}, {}, {}, {lc("d")}, {}));
    EXPECT_TRUE(KPTagName::areAllLC_PooledTags({}, {}, {}, {}, {}));
    EXPECT_FALSE(KPTagName::areAnyLC_PooledTags({}, Pooled{lc("a")}, {}, {}, {}));
}

TEST(TagLists, ReportWhatIsNoTag)
{
    EXPECT_TRUE(KPTagName::arrayIsAllKPTagNames({user("a")}));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(KPTagName::arrayIsAllKPTagNames({user("a"), nullptr}));
    EXPECT_THAT(
        testing::internal::GetCapturedStderr(),
        testing::HasSubstr("Someone handed non KPTagNames to someone who expected them!!!"));
    EXPECT_EQ(KPTagName::displayStringsForTagNames({nullptr, user("a")}).size(), 1);
}

TEST(ReadOnlyTag, IsApartFromTheUsersAndKeepsItsComposition)
{
    KPTagName *tag = KPTagName::tagNameForReadOnlyTag(text(" Keyw\u00f6rd "));
    EXPECT_EQ(tag->keyName(), text("read:keyw\u00f6rd"));
    EXPECT_EQ(tag->displayName(), text("Keywo\u0308rd"));
    EXPECT_EQ(tag->tagType(), KPTagName::ReadOnly);
    EXPECT_NE(tag, user("Keyw\u00f6rd"));
    EXPECT_EQ(KPTagName::tagNameForReadOnlyTag(text("(null)")), nullptr);
    EXPECT_NE(KPTagName::tagNameForReadOnlyTag(text("(NULL)")), nullptr);
    EXPECT_EQ(KPTagName::tagNameForReadOnlyTag(text("(null)")), nullptr) << "met or not";
    EXPECT_EQ(KPTagName::tagNameForReadOnlyTag(text(" (nu\nll) ")), nullptr);
    EXPECT_EQ(KPTagName::tagNameForReadOnlyTag(text(" ")), nullptr);
    EXPECT_THAT(
        KPTagName::tagNamesForReadOnlyTags(texts({"k", "(null)", "K", "KEYW\u00d6RD"}), true),
        ElementsAre(KPTagName::tagNameForReadOnlyTag(text("k")), tag));
}

TEST(FileTypeTag, IsMadeFromTheFileAndNamedByTheTypeTable)
{
    const auto forPath = [](const char *path, quint32 mode) {
        return KPTagName::utiTagNameForPath(text(path), mode)->keyName();
    };
    EXPECT_EQ(forPath("/nowhere/a.pdf", S_IFLNK | 0777), text("uti:com.apple.alias-file"));
    EXPECT_EQ(forPath("/nowhere/folder", S_IFDIR | 0755), text("uti:public.folder"));
    EXPECT_EQ(forPath("/nowhere/a.pdf", S_IFREG | 0644), text("uti:com.adobe.pdf"));
    EXPECT_EQ(KPTagName::tagNameForUTITag(QString(), text("a.pdf")), nullptr);

    KPTagName *pdf = KPTagName::tagNameForUTITag(text("com.adobe.pdf"), text("a.pdf"));
    EXPECT_EQ(pdf->uti(), text("com.adobe.pdf"));
    EXPECT_EQ(pdf->tagType(), KPTagName::FileType);
    EXPECT_NE(pdf->displayName(), text("utiShort_") + pdf->displayName());
    EXPECT_FALSE(pdf->displayName().startsWith(text("utiShort_")));
    EXPECT_EQ(KPTagName::tagNameForUTITag(text("com.Adobe.PDF"), QString()), pdf);
}

// Stands for the short names of a language.
class ShortNames : public QTranslator
{
public:
    QString translate(const char *, const char *id, const char *, int) const override
    {
        return qstrcmp(id, "utiShort_JPEG image") == 0 ? text("JPEG") : QString();
    }
    bool isEmpty() const override { return false; }
};

TEST(FileTypeTag, HasTheShortNameOfTheLanguageWhereThereIsOne)
{
    ShortNames names;
    QCoreApplication::installTranslator(&names);
    EXPECT_EQ(KPTagName::tagNameForUTITag(text("public.jpeg"), QString())->displayName(),
              text("JPEG"));
    QCoreApplication::removeTranslator(&names);
}

TEST(FileTypeTag, PopularAreTheTypesOfOfficeDocuments)
{
    const auto popular = [](const char *uti) {
        return KPTagName::tagNameForUTITag(text(uti), QString())->isPopularType();
    };
    for (const char *uti : {"com.microsoft.word.doc", "org.openxmlformats.spreadsheetml.sheet",
                            "org.openxmlformats.presentationml.presentation", "public.presentation",
                            "com.apple.iwork.pages.pages-tef", "com.apple.iwork.numbers.numbers"})
        EXPECT_TRUE(popular(uti)) << uti;
    for (const char *uti : {"com.adobe.pdf", "public.jpeg", "public.folder", "of.nobody"})
        EXPECT_FALSE(popular(uti)) << uti;
    EXPECT_FALSE(user("public.presentation")->isPopularType());
}

TEST(TagOrder, ComparesNumbersByValueAndIsAnOrder)
{
    const char *ascending[] = {"",
                               "0",
                               "tag",
                               "tag ",
                               "Tag 0",
                               "tag 7b",
                               "TAG 07c",
                               "tag 9",
                               "Tag 10",
                               "tag 10.2",
                               "tag 10.10",
                               "tag 18446744073709551615",
                               "tag 18446744073709551616",
                               "tag 99999999999999999999999999999999",
                               "tag a",
                               "tag9",
                               "tag\u0661\u0660", // ten in Arabic digits
                               "tag11",
                               "zzz",
                               "\u00df"};
    std::vector<KPTagName *> tags;
    for (const char *name : ascending)
        tags.push_back(KPTagName::tagNameWithDisplayName(text(name), text("order:") + text(name)));
    for (size_t i = 0; i < tags.size(); ++i) {
        for (size_t j = 0; j < tags.size(); ++j) {
            const int order = tags[i]->compareNumerically(tags[j]);
            EXPECT_EQ(order < 0, i < j) << ascending[i] << " / " << ascending[j];
            EXPECT_EQ(order > 0, i > j) << ascending[i] << " / " << ascending[j];
        }
    }
    EXPECT_EQ(user("tag 007")->compareNumerically(user("TAG 7")), 0);
    EXPECT_EQ(KPTagName::tagNameForReadOnlyTag(text("X"))->compareNumerically(user("x")), 0);
}

TEST(TagOrder, LeadingDotSortsLast)
{
    EXPECT_EQ(user(".net")->tagStringForSorting(), text("zzzz.net"));
    EXPECT_EQ(user("a.net")->tagStringForSorting(), text("a.net"));
}

TEST(TagFilter, FindsEachWordCaseAndDiacriticsAside)
{
    KPTagName *tag = user("R\u00e9sum\u00e9 Stra\u00dfe 2019");
    for (const char *filter :
         {"", "  ", "resume", "STRASSE", "sum", "2019 resu", " r\u00e9sume\u0301\tstra "})
        EXPECT_TRUE(tag->passesSearch(text(filter))) << filter;
    for (const char *filter : {"resumes", "resume x", "2018"})
        EXPECT_FALSE(tag->passesSearch(text(filter))) << filter;
}

TEST(SavedTags, ComeBackAsTheSameObjects)
{
    KPTagName *pdf = KPTagName::tagNameForUTITag(text("com.adobe.pdf"), QString());
    KPTagName *keyword = KPTagName::tagNameForReadOnlyTag(text("Keyword"));
    KPTagName *odd = user("uti:Mine");
    const Tags users{user("Alpha"), odd};
    EXPECT_EQ(KPTagName::arrayForSavingUserTags(users), texts({"Alpha", "uti:Mine"}));
    EXPECT_EQ(KPTagName::arrayOfDisplayNamesToUserKPTagNames(texts({"Alpha", "uti:Mine"})), users);
    EXPECT_EQ(KPTagName::arrayForSavingReadOnlyTags({keyword}), texts({"Keyword"}));
    EXPECT_EQ(KPTagName::arrayOfDisplayNamesToReadOnlyKPTagNames(texts({"Keyword"})),
              Tags{keyword});
    EXPECT_EQ(KPTagName::arrayForSavingUTITags({pdf, odd}), texts({"com.adobe.pdf"}));
    EXPECT_EQ(KPTagName::arrayOfUTIsToKPTagNames(texts({"com.adobe.pdf", ""})), Tags{pdf});

    const KPTagName::TagDictionary all{{text("mixed"), {user("Alpha"), pdf, keyword, odd}},
                                       {text("none"), {}}};
    auto saved = KPTagName::dictionaryForSavingFromKPTagNameDictionary(all);
    EXPECT_EQ(saved[text("mixed")].strings(),
              texts({"Alpha", "uti:com.adobe.pdf", "read:Keyword", "user:uti:Mine"}));
    saved[text("foreign")] = PropertyValue::integer(5);
    EXPECT_EQ(KPTagName::dictionaryOfKPTagNamesFromDictionary(saved), all);
}

// Threads make, find and rename the same tags at once; each tag is one object for all of them.
TEST(TagRegistry, ThreadsThatMakeTheSameTagsGetTheSameObjects)
{
    constexpr int threadCount = 4;
    constexpr int count = 12'000; // more than the registry has room for at first
    std::vector<Tags> results(threadCount);
    std::latch start(threadCount);
    {
        std::vector<std::jthread> threads;
        threads.reserve(threadCount);
        for (int t = 0; t < threadCount; ++t) {
            threads.emplace_back([&, t] {
                Tags mine(count);
                start.arrive_and_wait();
                for (int n = 0; n < count; ++n) {
                    const int i = t % 2 == 0 ? n : count - 1 - n;
                    const QString name = QStringLiteral("%1hread \u00e9 %2")
                                             .arg(QLatin1Char(t % 3 == 0 ? 'T' : 't'))
                                             .arg(i);
                    mine[i] = KPTagName::tagNameForUserEnteredTag(name, true);
                    (void)mine[i]->displayNameLC();
                }
                results[static_cast<size_t>(t)] = mine;
            });
        }
    }
    for (const Tags &result : results)
        EXPECT_EQ(result, results.front());
    EXPECT_EQ(KPTagName::removeDuplicates(results[0]).size(), count);
    EXPECT_EQ(results[0][7]->displayNameLC(), text("thread e\u0301 7"));
}
