#include "KPRestoreWindow.h"
#include "IndexSetup.h"
#include "KPRestoreModel.h"
#include "Karvex.h"
#include "KarvexBackupFile.h"
#include "MetadataIndex.h"
#include "TestHome.h"
#include "XPAtomicFile.h"
#include "XPExtendedAttributes.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QPushButton>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

namespace {

// Three files that are in the usual backup; what stands on one of them cannot be read.
class RestoreWindow : public testing::Test
{
protected:
    RestoreWindow()
    {
        IndexSetup setup;
        setup.path = m_store.path(QStringLiteral("index.sqlite"));
        setup.roots = QStringList{m_folder.path()};
        m_index = MetadataIndex::open(setup);
        KarvexBackupFile::Records records;
        for (const QString &path : {m_one, m_two, m_odd})
            records.insert(path, {path, m_tags, 0, PropertyValue::Date{1000}, {}});
        const QString backup = KarvexBackupFile::defaultPath();
        EXPECT_FALSE(XPFolders::create(XPPath::folder(backup)));
        EXPECT_FALSE(XPAtomicFile::write(backup, *KarvexBackupFile::encode(records)));
        EXPECT_FALSE(XPExtendedAttributes::write(m_odd, m_name, "bplist00garbage"));
    }

    const TestFolder m_folder;
    const TestFolder m_store;
    const QString m_one = m_folder.file(QStringLiteral("one"));
    const QString m_two = m_folder.file(QStringLiteral("two"));
    const QString m_odd = m_folder.file(QStringLiteral("odd"));
    const QString m_name = Karvex::spotlightKey(Karvex::userTagsKey);
    const QStringList m_tags = {QStringLiteral("a"), QStringLiteral("b")};
    std::unique_ptr<MetadataIndex> m_index;
};

} // namespace

TEST_F(RestoreWindow, ChangesWhatWasChosenAndNothingThatItCannotRead)
{
    constexpr int deadline = 30'000;
    KPRestoreWindow window(m_index->source(), nullptr);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.show();
    auto *model = window.findChild<KPRestoreModel *>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return model->rowCount() == 2; }, deadline));
    EXPECT_TRUE(Karvex::getUserTags(m_one)->isEmpty()) << "only looked at";
    for (int row = 0; row < 2; ++row) {
        const bool isTwo = model->index(row, KPRestoreModel::Name).data() == QStringLiteral("two");
        EXPECT_TRUE(model->setData(model->index(row, 0), isTwo ? Qt::Unchecked : Qt::Checked,
                                   Qt::CheckStateRole));
    }
    QPushButton *restore = nullptr;
    for (QPushButton *button : window.findChildren<QPushButton *>())
        restore = button->isDefault() ? button : restore;
    ASSERT_TRUE(restore && restore->isEnabled());
    QTest::mouseClick(restore, Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !Karvex::getUserTags(m_one)->isEmpty(); }, deadline));
    ASSERT_TRUE(QTest::qWaitFor([&] { return model->rowCount() == 0; }, deadline));
    EXPECT_EQ(*Karvex::getUserTags(m_one), m_tags);
    EXPECT_TRUE(Karvex::getUserTags(m_two)->isEmpty());
    EXPECT_EQ(**XPExtendedAttributes::read(m_odd, m_name), "bplist00garbage");
    EXPECT_FALSE(restore->isEnabled());
}

// Closed in the middle, it waits for nothing and asks nobody.
TEST_F(RestoreWindow, GoesAtOnceWhenItIsClosed)
{
    for (int round = 0; round < 20; ++round) {
        KPRestoreWindow window(m_index->source(), nullptr);
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        window.show();
        window.close();
    }
    EXPECT_TRUE(Karvex::getUserTags(m_one)->isEmpty());
}
