#include "KPEditHistory.h"

#include "Karvex.h"
#include "TestHome.h"
#include "XPExtendedAttributes.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

class FileEdit : public testing::Test
{
protected:
    QString makeFile(const char *name, const QStringList &tags)
    {
        const QString path = m_folder.file(QString::fromLatin1(name));
        if (!tags.isEmpty()) {
            EXPECT_FALSE(Karvex::setUserTags(tags, path));
        }
        return path;
    }
    static QStringList tagsOf(const QString &path)
    {
        return Karvex::getUserTags(path).valueOr({QStringLiteral("(error)")});
    }
    KPEditReport waitForReport()
    {
        if (m_reported.isEmpty())
            m_reported.wait();
        return m_reported.isEmpty() ? KPEditReport{-1, 0, {}, false}
                                    : m_reported.takeFirst().first().value<KPEditReport>();
    }

    const QString work = QStringLiteral("work");
    const QString home = QStringLiteral("home");
    const QString mine = QStringLiteral("mine");
    TestFolder m_folder;
    KPEditWorker m_worker;
    KPEditHistory m_history{&m_worker};
    QSignalSpy m_reported{&m_worker, &KPEditWorker::reported};
};

TEST_F(FileEdit, IsUndoneAndRedoneEvenWhileItStillRuns)
{
    const QString a = makeFile("a", {work});
    const QString b = makeFile("b", {mine, work});
    m_history.edit({{a, b}, KPFileEdit::Tags{{work}, {home}}, 4.0});
    m_history.undo();
    m_history.redo();
    m_history.undo();
    for (int reports = 0; reports < 4; ++reports)
        EXPECT_EQ(waitForReport().changed, 2);
    EXPECT_EQ(tagsOf(a), QStringList{work});
    EXPECT_EQ(tagsOf(b), (QStringList{mine, work}));
    EXPECT_EQ(Karvex::getRating(b).valueOr(-1), 0);
    m_history.redo();
    EXPECT_EQ(waitForReport().changed, 2);
    EXPECT_EQ(tagsOf(b), (QStringList{mine, home}));
    EXPECT_EQ(Karvex::getRating(b).valueOr(-1), 4);
}

TEST_F(FileEdit, UndoLeavesAloneWhatSomebodyElseChangedSince)
{
    const QString a = makeFile("a", {work});
    const QString b = makeFile("b", {work});
    m_history.edit({{a, b}, KPFileEdit::Tags{{work}, {home}}, {}});
    EXPECT_EQ(waitForReport().changed, 2);
    EXPECT_FALSE(Karvex::setUserTags(QStringList{mine}, a));
    m_history.undo();
    const KPEditReport report = waitForReport();
    EXPECT_EQ(report.changed, 1);
    ASSERT_EQ(report.failures.size(), 1);
    EXPECT_EQ(report.failures.first().path, a);
    EXPECT_EQ(tagsOf(a), QStringList{mine});
    EXPECT_EQ(tagsOf(b), QStringList{work});
}

TEST_F(FileEdit, RefusesUnreadableTagsAndGoesOnWithTheOthers)
{
    const QString torn = makeFile("torn", {});
    const QString name = Karvex::spotlightKey(Karvex::userTagsKey);
    ASSERT_FALSE(XPExtendedAttributes::write(torn, name, "bplist00garbage"));
    const QString gone = m_folder.path(QStringLiteral("gone"));
    const QString good = makeFile("good", {});
    m_history.edit({{torn, gone, good}, KPFileEdit::Tags{{}, {work}}, {}});
    const KPEditReport report = waitForReport();
    EXPECT_EQ(report.changed, 1);
    ASSERT_EQ(report.failures.size(), 2);
    EXPECT_EQ(report.failures[0].kind, XPError::Kind::Malformed);
    EXPECT_EQ(report.failures[1].kind, XPError::Kind::NotFound);
    EXPECT_EQ(XPExtendedAttributes::read(torn, name, 4096).valueOr({}), "bplist00garbage");
    EXPECT_EQ(tagsOf(good), QStringList{work});
}

TEST_F(FileEdit, StopLeavesTheRestAndLaterEditsGoOn)
{
    QStringList paths;
    for (int number = 0; number < 3000; ++number)
        paths.append(makeFile(QByteArray::number(number).constData(), {}));
    m_history.edit({paths, {}, 3.0});
    QSignalSpy progressed(&m_worker, &KPEditWorker::progressed);
    progressed.wait();
    m_worker.stop();
    const KPEditReport stopped = waitForReport();
    EXPECT_TRUE(stopped.stopped || stopped.changed == paths.size());
    EXPECT_EQ(Karvex::getRating(paths.first()).valueOr(-1), 3);
    m_history.edit({{paths.last()}, {}, 5.0});
    EXPECT_EQ(waitForReport().changed, 1);
}
