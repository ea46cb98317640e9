#include "KPTagCompletion.h"

#include "KarvexTagKey.h"

#include <gtest/gtest.h>

static QStringList list(const char *tags)
{
    return QString::fromUtf8(tags).split(u'|', Qt::SkipEmptyParts);
}

TEST(TagCompletion, RanksWhatMayBeMeant)
{
    const KPTagCompletion completion({{QStringLiteral("invoice"), 5},
                                      {QStringLiteral("Investment"), 90},
                                      {QStringLiteral("insurance"), 40},
                                      {QStringLiteral("paid invoice"), 900},
                                      {QStringLiteral("Caf\u00e9"), 3},
                                      {QStringLiteral("tax/2024"), 7}},
                                     list("insurance|inn|INVOICE"));
    const KPTagCompletion::Counts together{{karvexTagKey(QStringLiteral("Investment")), 2}};
    const struct
    {
        const char *typed, *present;
        bool knowsCompany;
        const char *expected;
    } cases[] = {
        // used lately before used often; what holds it elsewhere last
        {"in", "", false, "insurance|inn|invoice|Investment|paid invoice"},
        {"in", "", true, "Investment|insurance|inn|invoice|paid invoice"},
        {"inv", "INVOICE", false, "Investment|paid invoice"},
        {"cafe", "", false, "Caf\u00e9"},
        {"2024", "", false, "tax/2024"},
        {"", "", false, ""},
        {"zzz", "", false, ""},
    };
    for (const auto &each : cases) {
        QStringList found;
        for (const auto &match :
             completion.matches(QString::fromUtf8(each.typed), list(each.present),
                                each.knowsCompany ? together : KPTagCompletion::Counts(), 10))
            found.append(match.tag);
        EXPECT_EQ(found, list(each.expected)) << each.typed;
    }
    EXPECT_EQ(completion.matches(QStringLiteral("in"), {}, {}, 2).size(), 2);
    EXPECT_EQ(completion.matches(QStringLiteral("invest"), {}, {}, 2).first().count, 90);
}

// Every key asks all of them.
TEST(TagCompletion, KnowsAHundredThousandTags)
{
    QList<KPTagCompletion::Known> known;
    QStringList present;
    for (int i = 0; i < 100'000; ++i) {
        known.append({QStringLiteral("tag %1").arg(i), i});
        if (i % 2 == 0)
            present.append(known.last().tag);
    }
    const KPTagCompletion completion(known, present);
    const auto matches = completion.matches(QStringLiteral("TAG"), present, {}, 8);
    ASSERT_EQ(matches.size(), 8);
    EXPECT_EQ(matches.first().tag, u"tag 99999");
    EXPECT_EQ(matches.last().tag, u"tag 99985");
    EXPECT_EQ(completion.matches(QStringLiteral("99998"), {}, {}, 8).size(), 1);
}
