#include "KPDocPrefs.h"

#include "TestHome.h"
#include "XPAtomicFile.h"
#include "XPPropertyList.h"

#include <gtest/gtest.h>

namespace {

PropertyValue::Dictionary readAt(const QString &path)
{
    return XPPropertyList::read(XPAtomicFile::read(path).valueOr({})).valueOr({}).dictionary();
}

const QString page = QStringLiteral("zelCurrentPageIndex");

} // namespace

TEST(DocPrefs, OutliveTheProgram)
{
    const TestFolder folder;
    const QString path = folder.path(QStringLiteral("deep/docPrefs.plist"));
    KPDocPrefs prefs(path);
    EXPECT_EQ(prefs.getPref(QStringLiteral("a.pdf"), page), PropertyValue());
    prefs.setPref(QStringLiteral("a.pdf"), PropertyValue::integer(7), page);
    const QString undecodable = QStringLiteral("b") + QChar(0xDC80);
    prefs.setPref(undecodable, PropertyValue::integer(8), page);
    ASSERT_FALSE(prefs.writeToFile());
    KPDocPrefs later(path);
    EXPECT_EQ(later.getPref(QStringLiteral("a.pdf"), page).integerValue(), 7);
    EXPECT_EQ(later.getPref(undecodable, page).integerValue(), 8);
    EXPECT_EQ(readAt(path)[QStringLiteral("a.pdf")].dictionary()[QStringLiteral("LastUsed")].kind(),
              PropertyValue::Kind::Date);
    later.setPref(QStringLiteral("a.pdf"), {}, page);
    EXPECT_EQ(later.getPref(QStringLiteral("a.pdf"), page), PropertyValue());
}

TEST(DocPrefs, DropTheOldestWhenThereAreTooMany)
{
    const auto name = [](int i) { return QStringLiteral("%1.pdf").arg(i); };
    PropertyValue::Dictionary saved;
    for (int i = 0; i < 250; ++i)
        saved[name(i)] = PropertyValue::Dictionary{
            {QStringLiteral("LastUsed"), PropertyValue::Date{static_cast<double>(1000 - i)}}};
    const TestFolder folder;
    const QString path = folder.file(QStringLiteral("docPrefs.plist"),
                                     XPPropertyList::writeBinary(saved).valueOr({}));
    KPDocPrefs prefs(path);
    prefs.setPref(name(249), PropertyValue::integer(1), page); // the oldest so far
    ASSERT_FALSE(prefs.writeToFile());
    EXPECT_EQ(readAt(path).size(), 250);
    prefs.setPref(name(250), PropertyValue::integer(250), page);
    ASSERT_FALSE(prefs.writeToFile());
    const auto kept = readAt(path);
    EXPECT_EQ(kept.size(), 249);
    EXPECT_FALSE(kept.contains(name(248)));
    EXPECT_FALSE(kept.contains(name(247)));
    EXPECT_TRUE(kept.contains(name(249)));
    EXPECT_TRUE(kept.contains(name(250)));
}

TEST(DocPrefs, NeverLoseAFileThatCannotBeRead)
{
    const TestFolder folder;
    const QString damaged = folder.file(QStringLiteral("damaged.plist"), "bplist00 no");
    KPDocPrefs prefs(damaged);
    prefs.setPref(QStringLiteral("a"), PropertyValue::integer(1), page);
    ASSERT_FALSE(prefs.writeToFile());
    EXPECT_EQ(XPAtomicFile::read(damaged + QStringLiteral(".damaged")).valueOr({}), "bplist00 no");

    (void)folder.file(QStringLiteral("folder.plist/x"));
    KPDocPrefs unreadable(folder.path(QStringLiteral("folder.plist")));
    unreadable.setPref(QStringLiteral("a"), PropertyValue::integer(1), page);
    EXPECT_TRUE(unreadable.writeToFile());
    EXPECT_EQ(unreadable.getPref(QStringLiteral("a"), page).integerValue(), 1);
}
