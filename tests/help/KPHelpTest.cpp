#include "KPAboutWindow.h"
#include "KPReportWindow.h"
#include "KPShortcutsWindow.h"
#include "KPUpdates.h"
#include "UserDefaults.h"
#include "XPFactorySettings.h"

#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace {

struct Policy
{
    const char *name;
    const char *output;
    const char *installed;
    const char *candidate;
};

class Updates : public testing::TestWithParam<Policy>
{
};

} // namespace

TEST_P(Updates, ReadWhatThePackageManagerPrints)
{
    const auto answer = KPUpdates::read(GetParam().output);
    EXPECT_EQ(answer.installed, QString::fromUtf8(GetParam().installed));
    EXPECT_EQ(answer.candidate, QString::fromUtf8(GetParam().candidate));
}

INSTANTIATE_TEST_SUITE_P(
    Outputs, Updates,
    testing::Values(
        Policy{"Nothing", "", "", ""},
        Policy{"Newer", "murn:\n  Installed: 0.1.0-1\n  Candidate: 0.2.0-1\n  Version table:\n",
               "0.1.0-1", "0.2.0-1"},
        Policy{"NotInstalled", "murn:\n  Installed: (none)\n  Candidate: 0.2.0-1\n", "", "0.2.0-1"},
        Policy{"Unknown", "N: Unable to locate package murn\n", "", ""},
        Policy{"Torn", "murn:\n  Installed:", "", ""}),
    [](const auto &row) { return row.param.name; });

TEST(Shortcuts, AreThoseOfTheMenus)
{
    QMenuBar bar;
    QMenu *file = bar.addMenu(QStringLiteral("&File"));
    file->addAction(QStringLiteral("&Open"))->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_O));
    file->addAction(QStringLiteral("Without a key"));
    file->addAction(QStringLiteral("Taken by a view\tReturn"));
    bar.addMenu(QStringLiteral("Empty"))->addAction(QStringLiteral("No key"));
    KPShortcutsWindow window(&bar, nullptr);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    auto *list = window.findChild<QTreeWidget *>();
    ASSERT_EQ(list->topLevelItemCount(), 1);
    const QTreeWidgetItem *heading = list->topLevelItem(0);
    ASSERT_EQ(heading->childCount(), 2);
    EXPECT_EQ(heading->text(0), QStringLiteral("File"));
    EXPECT_EQ(heading->child(0)->text(0), QStringLiteral("Open"));
    EXPECT_EQ(heading->child(1)->text(1), QStringLiteral("Return"));
    window.findChild<QLineEdit *>()->setText(QStringLiteral("OPEN"));
    EXPECT_FALSE(heading->child(0)->isHidden());
    EXPECT_TRUE(heading->child(1)->isHidden());
    window.findChild<QLineEdit *>()->setText(QStringLiteral("no such"));
    EXPECT_TRUE(heading->isHidden());
}

// A report names no document, tag or search of the user's.
TEST(Report, SaysNothingOfTheUsersDocuments)
{
    XPFactorySettings::registerAll();
    const QString secret = QStringLiteral("secret");
    UserDefaults &defaults = UserDefaults::standard();
    for (const XPSetting &setting : XPFactorySettings::all())
        defaults.setValue(setting.key, PropertyValue::Array{secret});
    defaults.setValue(QStringLiteral("KPHomeFolder"), secret);
    defaults.setValue(QStringLiteral("KPUseCommas"), PropertyValue::boolean(false));
    const QString facts = KPReportWindow::facts({QStringLiteral("3 rows")});
    EXPECT_FALSE(facts.contains(secret)) << qPrintable(facts);
    EXPECT_TRUE(facts.contains(u"KPUseCommas = false"));
    EXPECT_TRUE(facts.contains(u"3 rows"));
    for (const XPSetting &setting : XPFactorySettings::all())
        defaults.remove(setting.key);
}

TEST(About, NamesALicenceForEveryPart)
{
    const auto parts = kpLibraryVersions();
    EXPECT_GT(parts.size(), 15);
    for (const KPLibraryVersion &part : parts)
        EXPECT_NE(*part.licence, 0) << part.name;
}
