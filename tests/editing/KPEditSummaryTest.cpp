#include "KPEditSummary.h"

#include "XPPath.h"

#include <cerrno>
#include <gtest/gtest.h>

// Every refusal that a disk can give is told in words of its own, and none as a bare number.
TEST(EditSummary, GivesEachReasonInWords)
{
    QStringList reasons;
    for (const int number : {ENOENT, EACCES, EROFS, ENOSPC, E2BIG, ENOTSUP}) {
        const QString reason = KPEditSummary::reason(XPError::fromErrno(number));
        EXPECT_FALSE(reason.isEmpty()) << number;
        EXPECT_FALSE(reasons.contains(reason)) << number;
        EXPECT_FALSE(reason.contains(QString::number(number))) << number;
        reasons.append(reason);
    }
}

TEST(EditSummary, NamesTheFirstFilesAndCountsTheRest)
{
    KPEditReport one{1, 0, {XPError::fromErrno(EROFS, QStringLiteral("/a/b\n.pdf"))}, false};
    EXPECT_TRUE(KPEditSummary::title(one).contains(u".pdf"));
    EXPECT_FALSE(KPEditSummary::title(one).contains(u'\n')) << "a name may hold a line break";
    EXPECT_EQ(KPEditSummary::details(one), KPEditSummary::reason(one.failures.first()));

    KPEditReport many{100, 80, {}, false};
    for (int number = 0; number < 20; ++number)
        many.failures.append(XPError::fromErrno(EACCES, QStringLiteral("/a/file %1").arg(number)));
    EXPECT_TRUE(KPEditSummary::title(many).contains(u"20"));
    const QStringList lines = KPEditSummary::details(many).split(u'\n');
    EXPECT_EQ(lines.size(), 9);
    EXPECT_TRUE(lines.first().contains(u"file 0"));
    EXPECT_EQ(lines.last(), qtTrId("KPAndMore", 12));
}
