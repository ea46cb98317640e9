#include "KPFileTypesSection.h"

#include "KPFileTypeRegistry.h"
#include "TestHome.h"
#include "XPFileUrls.h"

#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <algorithm>
#include <gtest/gtest.h>

namespace {

class FileTypesSection : public testing::Test
{
protected:
    void SetUp() override { registry().readFileTypesPlist(); }
    void TearDown() override
    {
        QFile::remove(KPFileTypeRegistry::filePath());
        registry().readFileTypesPlist();
    }

    static KPFileTypeRegistry &registry() { return KPFileTypeRegistry::instance(); }
    static QListWidget *list(const KPFileTypesSection &section, const char *name)
    {
        for (auto *each : section.findChildren<QListWidget *>()) {
            if (each->accessibleName() == qtTrId(name))
                return each;
        }
        return nullptr;
    }
    static QPushButton *button(const KPFileTypesSection &section, const char *text)
    {
        for (auto *each : section.findChildren<QPushButton *>()) {
            if (each->text() == qtTrId(text))
                return each;
        }
        return nullptr;
    }
    static QStringList stored(const QString &name)
    {
        registry().readFileTypesPlist();
        for (const auto &group : registry().fileTypeGroupsArray()) {
            if (group->displayName() == name)
                return group->utiArray();
        }
        return {};
    }
};

} // namespace

TEST_F(FileTypesSection, MakesAGroupOfWhatIsTypedAndDropped)
{
    const TestFolder folder;
    const QString dropped = folder.file(QStringLiteral("page.html"), "<html></html>");
    const QString name = qtTrId("KPKindsNewName");
    {
        KPFileTypesSection section;
        section.show();
        QListWidget *groups = list(section, "KPKindsGroups");
        QListWidget *types = list(section, "KPKindsTypes");
        button(section, "KPKindsNew")->click();
        ASSERT_TRUE(QTest::qWaitFor([&] { return groups->currentItem()->text() == name; }));
        EXPECT_EQ(types->count(), 0);
        groups->setFocus(); // the name is not changed
        const auto fields = section.findChildren<QLineEdit *>(QStringLiteral("KPKindsField"));
        ASSERT_EQ(fields.size(), 1);
        QLineEdit *field = fields.first();
        QTest::keyClicks(field, QStringLiteral("no such type"));
        QTest::keyClick(field, Qt::Key_Return);
        EXPECT_EQ(field->text(), QStringLiteral("no such type")) << "to be corrected";
        field->setText(QStringLiteral(".pdf"));
        QTest::keyClick(field, Qt::Key_Return);
        ASSERT_TRUE(QTest::qWaitFor([&] { return types->count() == 1; }));
        const std::unique_ptr<QMimeData> data(XPFileUrls::mimeData({dropped}));
        QDragEnterEvent enter({10, 10}, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton,
                              Qt::NoModifier);
        QCoreApplication::sendEvent(types->viewport(), &enter);
        ASSERT_TRUE(enter.isAccepted());
        QDropEvent drop({10, 10}, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton,
                        Qt::NoModifier);
        drop.setDropAction(Qt::MoveAction);
        QCoreApplication::sendEvent(types->viewport(), &drop);
        EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "the file stays where it is";
        ASSERT_TRUE(QTest::qWaitFor([&] { return types->count() == 2; }));
        field->setText(QStringLiteral("pdf"));
        QTest::keyClick(field, Qt::Key_Return);
        const QString known = qtTrId("KPKindsKnown").arg(types->item(0)->text());
        ASSERT_TRUE(QTest::qWaitFor([&] {
            const auto labels = section.findChildren<QLabel *>();
            return std::any_of(labels.begin(), labels.end(), [&](const QLabel *label) {
                return label->isVisible() && label->text() == known;
            });
        }));
        // A group keeps one type at least.
        types->selectAll();
        EXPECT_FALSE(button(section, "KPPrefRemove")->isEnabled());
        types->clearSelection();
        types->item(0)->setSelected(true);
        button(section, "KPPrefRemove")->click();
        ASSERT_TRUE(QTest::qWaitFor([&] { return types->count() == 1; }));
    }
    EXPECT_EQ(stored(name), QStringList{QStringLiteral("public.html")});
}

TEST_F(FileTypesSection, ABuiltInGroupIsEditedAndComesBack)
{
    const QString before = registry().fileTypeGroupsArray().first()->displayName();
    KPFileTypesSection section;
    section.show();
    QListWidget *groups = list(section, "KPKindsGroups");
    QPushButton *reset = button(section, "KPPrefReset");
    EXPECT_FALSE(button(section, "KPKindsDelete")->isEnabled());
    EXPECT_TRUE(reset->isHidden());
    groups->item(0)->setText(QStringLiteral("Papers"));
    groups->item(0)->setCheckState(Qt::Unchecked);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !reset->isHidden(); }));
    EXPECT_EQ(registry().fileTypeGroupsArray().first()->displayName(), QStringLiteral("Papers"));
    EXPECT_FALSE(registry().fileTypeGroupsArray().first()->enabled());
    groups->item(0)->setText(QStringLiteral("  "));
    ASSERT_TRUE(QTest::qWaitFor([&] { return groups->item(0)->text() == u"Papers"; }));
    reset->click();
    ASSERT_TRUE(QTest::qWaitFor([&] { return groups->item(0)->text() == before; }));
    EXPECT_EQ(groups->item(0)->checkState(), Qt::Checked);
    EXPECT_TRUE(reset->isHidden());
}
