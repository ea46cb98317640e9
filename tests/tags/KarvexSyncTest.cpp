#include "KarvexSync.h"

#include "Karvex.h"
#include "KarvexBackup.h"
#include "KeptFolder.h"
#include "XPAtomicFile.h"
#include "XPNotificationCenter.h"

namespace {

class Sync : public testing::Test
{
protected:
    ~Sync() override { KarvexSync::stop(); }

    KeptFolder m_folder;
    const TestFolder m_place;
    const QString m_file = m_place.path(QStringLiteral("backup.plist"));
    QList<PropertyValue::Dictionary> m_done;
    qint64 m_restored = -1;
    XPObservation m_observeDone = XPNotificationCenter::instance().addObserver(
        QStringLiteral("KarvexSyncDone"),
        [this](const XPNotification &notification) { m_done.append(notification.userInfo); });
    XPObservation m_observeRestored = XPNotificationCenter::instance().addObserver(
        QStringLiteral("TagSyncDoneAgressive"), [this](const XPNotification &notification) {
            m_restored = notification.userInfo.value(QStringLiteral("numDone")).integerValue();
        });
};

} // namespace

TEST_F(Sync, BacksUpAndRestoresFromTheFirstLocation)
{
    const QString path = m_folder.file(QStringLiteral("a"));
    const QStringList tags = {QStringLiteral("t")};
    ASSERT_FALSE(Karvex::setUserTags(tags, path));
    ASSERT_TRUE(KarvexSync::syncWithFiles(m_folder.index(), {m_file}, false));
    ASSERT_TRUE(holdsSoon([this] { return m_done.size() == 1; }));
    EXPECT_TRUE(m_done.first().value(QStringLiteral("worked")).boolValue());
    EXPECT_EQ(m_done.first().value(QStringLiteral("itemCount")).integerValue(), 1);
    EXPECT_EQ(m_restored, -1);
    for (const QString &key : {Karvex::userTagsKey, Karvex::userTagTimeKey})
        ASSERT_FALSE(Karvex::setXAttrMetaData({}, key, path));
    ASSERT_TRUE(KarvexSync::syncWithFiles(m_folder.index(), {m_file}, true));
    ASSERT_TRUE(holdsSoon([this] { return m_done.size() == 2; }));
    EXPECT_EQ(m_restored, 1);
    EXPECT_EQ(*Karvex::getUserTags(path), tags);
    EXPECT_TRUE(gAllowKarvexAuthenticationDialogs);
}

TEST_F(Sync, DropsBackupsWhenOneWaitsAndNeverARestore)
{
    IndexSource &index = m_folder.index();
    const auto sync = [&](bool restores) {
        return KarvexSync::syncWithFiles(index, {m_file}, restores);
    };
    int taken = 0;
    int asked = 0;
    // As fast as they come they are dropped sooner or later.
    for (; asked < 10'000 && taken == asked; ++asked)
        taken += sync(false) ? 1 : 0;
    EXPECT_LT(taken, asked);
    EXPECT_TRUE(sync(true) && sync(true));
    EXPECT_TRUE(holdsSoon([&] { return m_done.size() == taken + 2; }));
}
