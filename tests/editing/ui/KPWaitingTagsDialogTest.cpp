#include "KPWaitingTagsDialog.h"

#include "KPDocServices.h"

#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <gtest/gtest.h>

TEST(WaitingTagsDialog, ForgetsTheChangeThatIsChosenAndNoOther)
{
    ASSERT_FALSE(KPWaitingTagChanges::drop());
    const KPTagRename rename{QStringLiteral("old"), QStringLiteral("new")};
    const KPTagRename removal{QStringLiteral("wrong"), {}};
    ASSERT_FALSE(
        KPWaitingTagChanges::add(rename, {QStringLiteral("/away/a"), QStringLiteral("/b")}));
    ASSERT_FALSE(KPWaitingTagChanges::add(removal, {QStringLiteral("/away/a")}));
    KPWaitingTagsDialog dialog(nullptr);
    dialog.open();
    const auto *list = dialog.findChild<QTreeWidget *>();
    const auto shows = [&](int count) {
        return QTest::qWaitFor([&] { return list->topLevelItemCount() == count; }, 20'000);
    };
    ASSERT_TRUE(shows(2));
    EXPECT_EQ(list->topLevelItem(0)->childCount(), 2);
    auto *forget = dialog.findChild<QPushButton *>(QStringLiteral("forget"));
    ASSERT_TRUE(forget && forget->isEnabled());
    forget->click();
    ASSERT_TRUE(shows(1));
    const auto left = KPWaitingTagChanges::read();
    ASSERT_TRUE(left);
    ASSERT_EQ(left->size(), 1);
    EXPECT_EQ(left->first().rename, removal);
    forget->click();
    ASSERT_TRUE(shows(0));
    EXPECT_FALSE(forget->isEnabled());
}
