#include "KPTagRenameDialog.h"

#include "KPTagName.h"

#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <gtest/gtest.h>

// What a spelling that was ticked, and is offered no more, must never do: be renamed unseen.
TEST(TagRenameDialog, RenamesNoSpellingThatIsNotShown)
{
    KPTagName::intializeGlobals();
    const QString cafe = QStringLiteral("cafe");
    const QString accented = QStringLiteral("caf\u00e9");
    KPTagRenameDialog dialog(cafe, nullptr);
    // Answers as the library would: only the old name has another spelling.
    bool offers = true;
    QObject::connect(&dialog, &KPTagRenameDialog::previewWanted, &dialog,
                     [&](const KPTagRename &rename) {
                         KPTagPlan plan;
                         plan.rename = rename;
                         plan.paths = {QStringLiteral("/a")};
                         if (offers)
                             plan.otherSpellings = {accented};
                         dialog.showPreview(plan);
                     });
    QSignalSpy agreed(&dialog, &KPTagRenameDialog::agreed);
    auto *name = dialog.findChild<QLineEdit *>();
    auto *spellings = dialog.findChild<QListWidget *>();
    auto *rename = dialog.findChild<QPushButton *>();
    dialog.start();
    EXPECT_FALSE(rename->isEnabled()) << "nothing would change";
    ASSERT_EQ(spellings->count(), 1);
    spellings->item(0)->setCheckState(Qt::Checked);
    EXPECT_TRUE(rename->isEnabled()) << "the other spelling gets this one";
    name->setText(QStringLiteral("bar"));
    EXPECT_EQ(spellings->item(0)->checkState(), Qt::Checked);
    offers = false;
    name->setText(QStringLiteral("inn"));
    EXPECT_FALSE(spellings->isVisibleTo(&dialog));
    rename->click();
    ASSERT_EQ(agreed.size(), 1);
    const auto plan = agreed.first().first().value<KPTagPlan>();
    EXPECT_EQ(plan.rename.to, u"inn");
    EXPECT_EQ(plan.rename.alsoFrom, QStringList());
}
