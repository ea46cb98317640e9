#include "KPRequestQuery.h"

#include "FollowedResults.h"
#include "IndexedFolder.h"
#include "KPIndexedResults.h"
#include "Karvex.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"

using Comparison = KPSearchRequest::Comparison;

// What a request finds among a few documents of an index, by name.
class RequestQuery : public testing::Test
{
protected:
    RequestQuery()
    {
        EXPECT_FALSE(Karvex::addUserTags(
            {QStringLiteral("Work"), QStringLiteral("Café Noir"), QStringLiteral("100% \"sure\"")},
            folder.file(invoice)));
        EXPECT_FALSE(Karvex::setRating(3.5, folder.path(invoice)));
        folder.file(tokyo);
        folder.file(odd);
        EXPECT_FALSE(Karvex::setRating(1, folder.path(odd)));
        const QString path = folder.file(damaged);
        for (const QString &key : {Karvex::userTagsKey, Karvex::starRatingKey})
            EXPECT_FALSE(XPExtendedAttributes::write(path, Karvex::spotlightKey(key), "bplist00x"));
    }

    QStringList found(const KPSearchRequest &request, QStringList *problems = nullptr)
    {
        KPIndexedResults source(folder.index(), KPIndexedResults::Mode::Once);
        FollowedResults results(source);
        source.setRequest(request);
        EXPECT_TRUE(results.waitUntilFinished());
        if (problems)
            *problems = results.problems;
        QStringList names;
        for (const QString &path : results.paths())
            names.append(XPPath::fileName(path));
        return names;
    }
    QStringList withRating(Comparison comparison, double stars)
    {
        KPSearchRequest request = folder.request();
        request.rating = {comparison, stars};
        return found(request);
    }

    const QString invoice = QStringLiteral("Rechnung_2024-03 Müller & Strauß.pdf");
    const QString tokyo = QStringLiteral("東京請求書.pdf");
    const QString odd = XPPath::decode("[*]? \"x\\y\" 'z'.\xff");
    const QString damaged = QStringLiteral("damaged");
    IndexedFolder folder;
};

TEST_F(RequestQuery, WordsBeginWordsOfTheNameOrOfATag)
{
    const struct
    {
        const char *words;
        const QString *name; // null: nothing
    } cases[] = {
        {"rech", &invoice},
        {"nung", nullptr},
        {"2024", &invoice},
        {"024", nullptr},
        {"2024-03", &invoice},
        {"MULLER strauss", &invoice},
        {"strauß", &invoice},
        {"rechnung absent", nullptr},
        {"cafe rech", &invoice},
        {"CAFÉ\tnoir", &invoice},
        {"home", nullptr},
        {"&", &invoice},
        {"請求", &tokyo},
        {"dam", &damaged},
        {"[*]?", &odd},
        {"*", &odd},
        {"?", &odd},
        {"re*g", nullptr},
        {"\"x\\y\"", &odd},
        {"'z'", &odd},
        {"\"sure\"", &invoice},
        {"\"c", nullptr},
        {"x\") || (kMDItemFSSize", nullptr},
    };
    for (const auto &each : cases) {
        const QStringList wanted = each.name ? QStringList{*each.name} : QStringList();
        EXPECT_EQ(found(folder.request(QString::fromUtf8(each.words))), wanted) << each.words;
    }
    EXPECT_EQ(found(folder.request(QStringLiteral("  "))).size(), 4);
    EXPECT_EQ(found(folder.request(QStringLiteral(".pdf"))), (QStringList{invoice, tokyo}));
    EXPECT_EQ(found(folder.request(XPPath::decode("\xff"))), QStringList{odd});
}

TEST_F(RequestQuery, TagsAreComparedWithoutCaseAndMarks)
{
    const auto matches = [this](const QStringList &with, const QStringList &without) {
        KPSearchRequest request = folder.request();
        request.tags = with;
        request.notTags = without;
        return found(request);
    };
    EXPECT_EQ(matches({QStringLiteral("WORK"), QStringLiteral("caf\u00e9 noir")}, {}),
              QStringList{invoice});
    EXPECT_EQ(matches({QStringLiteral("Wor")}, {}), QStringList());
    EXPECT_EQ(matches({QStringLiteral("Wor*")}, {}), QStringList());
    EXPECT_EQ(matches({QStringLiteral("100% \"SURE\"")}, {}), QStringList{invoice});
    EXPECT_EQ(matches({}, {QStringLiteral("work")}), (QStringList{odd, tokyo}));
    EXPECT_EQ(matches({QStringLiteral("work")}, {QStringLiteral("home")}), QStringList{invoice});
}

TEST_F(RequestQuery, UnratedCountsAsNoStars)
{
    const QStringList unrated{tokyo};
    EXPECT_EQ(withRating(Comparison::Greater, 3), QStringList{invoice});
    EXPECT_EQ(withRating(Comparison::GreaterOrEqual, 3.5), QStringList{invoice});
    EXPECT_EQ(withRating(Comparison::Equal, 3.5), QStringList{invoice});
    EXPECT_EQ(withRating(Comparison::Equal, 3), QStringList());
    EXPECT_EQ(withRating(Comparison::NotEqual, 3.5), (QStringList{odd, tokyo}));
    EXPECT_EQ(withRating(Comparison::NotEqual, 0), (QStringList{invoice, odd}));
    EXPECT_EQ(withRating(Comparison::Less, 1), unrated);
    EXPECT_EQ(withRating(Comparison::LessOrEqual, 0), unrated);
    EXPECT_EQ(withRating(Comparison::Equal, 0), unrated);
    EXPECT_EQ(withRating(Comparison::GreaterOrEqual, 0), (QStringList{invoice, odd, tokyo}));
}

TEST_F(RequestQuery, TakesNothingUnreadableForAbsent)
{
    KPSearchRequest without = folder.request();
    without.notTags = {QStringLiteral("Other")};
    KPSearchRequest unrated = folder.request();
    unrated.rating = {Comparison::Equal, 0};
    for (const KPSearchRequest &request : {without, unrated}) {
        QStringList problems;
        EXPECT_FALSE(found(request, &problems).contains(damaged));
        ASSERT_EQ(problems.size(), 1);
        EXPECT_TRUE(problems.first().startsWith(folder.path(damaged) + u':'));
    }
    QStringList problems;
    EXPECT_EQ(found(folder.request(), &problems).size(), 4);
    EXPECT_EQ(problems, QStringList()) << "the document tells itself";
}
