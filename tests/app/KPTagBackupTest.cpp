#include "KPTagBackup.h"

#include "IndexSetup.h"
#include "Karvex.h"
#include "KarvexBackupFile.h"
#include "MetadataIndex.h"
#include "TestHome.h"
#include "UserDefaults.h"
#include "XPAtomicFile.h"
#include "XPFactorySettings.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {

// The backup of the window over an index of its own.
class TagBackup : public testing::Test
{
protected:
    TagBackup()
    {
        XPFactorySettings::registerAll();
        EXPECT_FALSE(Karvex::setUserTags(QStringList{QStringLiteral("t")}, m_file));
        IndexSetup setup;
        setup.path = m_store.path(QStringLiteral("index.sqlite"));
        setup.roots = QStringList{m_folder.path()};
        m_index = MetadataIndex::open(setup);
        EXPECT_TRUE(m_index->waitUntilLoaded());
        EXPECT_FALSE(m_index->sync(false));
        m_backup = std::make_unique<KPTagBackup>(m_index->source(), [this] { return m_isActive; });
        ::remove(XPPath::encode(m_location).constData());
    }
    bool ends()
    {
        const QSignalSpy changed(m_backup.get(), &KPTagBackup::changed);
        return QTest::qWaitFor([&] { return m_backup->activity().isEmpty(); }, 30'000) &&
               !changed.isEmpty();
    }

    const TestFolder m_folder;
    const TestFolder m_store;
    const QString m_file = m_folder.file(QStringLiteral("a"));
    const QString m_location = KarvexBackupFile::defaultPath();
    bool m_isActive = true;
    std::unique_ptr<MetadataIndex> m_index;
    std::unique_ptr<KPTagBackup> m_backup;
};

} // namespace

TEST_F(TagBackup, IsMadeWhereTheSettingAllowsIt)
{
    const QString key = QStringLiteral("KPSyncTagsForBackup");
    UserDefaults::standard().setValue(key, PropertyValue::boolean(false));
    m_backup->doTagSync();
    EXPECT_TRUE(m_backup->activity().isEmpty());
    UserDefaults::standard().remove(key);
    m_backup->doTagSync();
    EXPECT_FALSE(m_backup->activity().isEmpty());
    ASSERT_TRUE(ends());
    EXPECT_TRUE(m_backup->problem().isEmpty()) << m_backup->problem().toStdString();
    const auto bytes = XPAtomicFile::read(m_location);
    ASSERT_TRUE(bytes);
    EXPECT_TRUE(KarvexBackupFile::decode(*bytes, m_location)->contains(m_file));
}

TEST_F(TagBackup, WaitsForAnApplicationThatIsActive)
{
    m_isActive = false;
    m_backup->doTagSyncTimer();
    EXPECT_TRUE(m_backup->activity().isEmpty());
    m_isActive = true;
    m_backup->doTagSyncTimer();
    EXPECT_FALSE(m_backup->activity().isEmpty());
    EXPECT_TRUE(ends());
}

TEST_F(TagBackup, SaysWhatWentWrongUntilTheNextOneWorks)
{
    // Something that is no file stands in the place of the backup.
    ASSERT_FALSE(XPFolders::create(m_location));
    m_backup->doTagSync();
    ASSERT_TRUE(ends());
    EXPECT_FALSE(m_backup->problem().isEmpty());
    ASSERT_EQ(::remove(XPPath::encode(m_location).constData()), 0);
    m_backup->doTagSync();
    ASSERT_TRUE(ends());
    EXPECT_TRUE(m_backup->problem().isEmpty());
}
