// A batch of edits, mirrored to the desktop, on a full volume and in a process that is killed.
#include "KPEditHistory.h"
#include "KPEditJournal.h"
#include "Karvex.h"
#include "KarvexMirror.h"
#include "TestChild.h"
#include "TestSystem.h"
#include "UserDefaults.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"

#include <QDeadlineTimer>
#include <QSignalSpy>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

class BatchFaults : public testing::Test
{
protected:
    BatchFaults()
    {
        turn(true);
        for (const auto &earlier : KPEditJournal::saved())
            KPEditJournal::remove(earlier.file);
    }
    ~BatchFaults() override { UserDefaults::standard().remove(KarvexMirror::settingsKey); }
    static void turn(bool on)
    {
        UserDefaults::standard().setValue(KarvexMirror::settingsKey, PropertyValue::boolean(on));
    }
    static QStringList tagsOf(const QString &path)
    {
        return Karvex::getUserTags(path).valueOr({QStringLiteral("(error)")});
    }
    static QStringList mirrorOf(const QString &path)
    {
        const auto bytes = XPExtendedAttributes::read(path, KarvexFacts::desktopTagsKey);
        const QString text = QString::fromUtf8(bytes.valueOr({}).value_or(QByteArray()));
        return text.split(u',', Qt::SkipEmptyParts);
    }
    static KPEditReport reportOf(QSignalSpy &reported)
    {
        if (reported.isEmpty())
            reported.wait(60'000);
        return reported.isEmpty() ? KPEditReport{}
                                  : reported.takeFirst().first().value<KPEditReport>();
    }

    const QStringList before{QStringLiteral("work")};
    const QStringList after{QStringLiteral("work"), QStringLiteral("a longer tag than before")};
};

} // namespace

TEST_F(BatchFaults, NoRoomOnOneFileLeavesItWholeAndTheMirrorEqual)
{
    const auto volume = TestVolume::ext4SmallBlocks();
    if (!volume)
        GTEST_SKIP() << "no loop mounts here";
    QStringList paths;
    for (int number = 0; number < 5; ++number) {
        paths.append(volume->path(QString::number(number)));
        ::close(::creat(XPPath::encode(paths.last()).constData(), S_IRUSR | S_IWUSR));
        ASSERT_FALSE(Karvex::setUserTags(before, paths.last(), {1}));
    }
    // Room for our list, but not for the desktop's too; and for neither.
    for (const auto &[file, left] : {std::pair(1, 50), std::pair(3, 0)}) {
        const auto fill = [&, name = paths[file]](int size) {
            return XPExtendedAttributes::write(name, QStringLiteral("fill"), QByteArray(size, 'x'));
        };
        int room = 1000;
        while (fill(room) && room > left)
            --room;
        ASSERT_FALSE(fill(room - left));
    }
    KPEditWorker worker;
    KPEditHistory history(&worker);
    QSignalSpy reported(&worker, &KPEditWorker::reported);
    history.edit({paths, KPFileEdit::Tags{before, after}, {}});
    const KPEditReport report = reportOf(reported);
    EXPECT_EQ(report.changed + report.failures.size(), 5);
    EXPECT_GE(report.failures.size(), 1);
    for (const XPError &error : report.failures) {
        EXPECT_EQ(error.kind, XPError::Kind::NoSpace);
        EXPECT_EQ(tagsOf(error.path), before);
        EXPECT_EQ(Karvex::getXAttrMetaData(Karvex::userTagTimeKey, error.path).value(),
                  PropertyValue(PropertyValue::Date{1}));
    }
    for (const QString &path : paths)
        EXPECT_EQ(mirrorOf(path), tagsOf(path)) << path.toStdString();
    history.undo();
    EXPECT_EQ(reportOf(reported).changed, report.changed);
    for (const QString &path : paths) {
        EXPECT_EQ(tagsOf(path), before);
        EXPECT_EQ(mirrorOf(path), before);
    }
}

TEST_F(BatchFaults, KilledAtAnyFileEveryFileIsWholeAndUndoIsOffered)
{
    const TestFolder folder;
    QStringList paths;
    turn(true);
    for (int number = 0; number < 2000; ++number) {
        paths.append(folder.file(QString::number(number)));
        ASSERT_FALSE(Karvex::setUserTags(before, paths.last()));
    }
    for (const int atLeast : {1, 40, 400}) {
        const pid_t child = startChild([&] {
            KPEditWorker worker;
            worker.edit({paths, KPFileEdit::Tags{before, after}, {}},
                        std::make_shared<KPEditRecord>(), QStringLiteral("Tags"));
        });
        const QDeadlineTimer deadline(60'000);
        while (tagsOf(paths[atLeast - 1]) == before && !deadline.hasExpired())
            std::this_thread::yield();
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        ASSERT_EQ(waitForChild(child), -SIGKILL);
        qsizetype written = 0;
        qsizetype unequal = 0;
        for (const QString &path : std::as_const(paths)) {
            ASSERT_TRUE(tagsOf(path) == before || tagsOf(path) == after);
            written += tagsOf(path) == after;
            unequal += mirrorOf(path) != tagsOf(path);
        }
        EXPECT_GE(written, atLeast);
        EXPECT_LE(unequal, 1) << "only the one that was at work";

        KPEditWorker worker;
        KPEditHistory history(&worker);
        QSignalSpy reported(&worker, &KPEditWorker::reported);
        history.restore();
        ASSERT_TRUE(history.canUndo());
        EXPECT_EQ(history.undoText(), u"Tags");
        history.undo();
        EXPECT_EQ(reportOf(reported).failures.size(), 0);
        for (const QString &path : std::as_const(paths)) {
            ASSERT_EQ(tagsOf(path), before);
            ASSERT_EQ(mirrorOf(path), before);
        }
    }
}
