#include "KPBatchEdit.h"

#include "Karvex.h"
#include "TestHome.h"
#include "XPNotificationCenter.h"
#include "XPPrompts.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

struct Prompts : XPPrompts
{
    explicit Prompts(int *count, int reply) : asked(count), answer(reply) {}
    void ask(const Question &, std::function<void(int)> reply) override
    {
        ++*asked;
        reply(answer);
    }
    void alert(const QString &, const QString &) override { ++*asked; }
    int *asked;
    int answer;
};

} // namespace

class BatchEdit : public testing::Test
{
protected:
    ~BatchEdit() override { XPPrompts::install(nullptr); }

    QStringList files(int count) const
    {
        QStringList paths;
        for (int number = 0; number < count; ++number)
            paths.append(m_folder.file(QString::number(number)));
        return paths;
    }
    KPFileEdit tagging(const QStringList &paths) const
    {
        return {paths, KPFileEdit::Tags{{}, {QStringLiteral("new")}}, {}};
    }
    bool isWritten() { return m_reported.count() > 0 || m_reported.wait(); }

    TestFolder m_folder;
    KPEditWorker m_worker;
    KPEditHistory m_history{&m_worker};
    KPBatchEdit m_batch{&m_history, &m_worker};
    QSignalSpy m_reported{&m_worker, &KPEditWorker::reported};
    QSignalSpy m_began{&m_batch, &KPBatchEdit::began};
    int m_asked = 0;
};

TEST_F(BatchEdit, AsksFrom21FilesAndRefusesAbove150000)
{
    xpGuiThread.assertHere();
    XPPrompts::install(std::make_unique<Prompts>(&m_asked, 1));
    const QStringList paths = files(21);
    m_batch.replaceOriginalTags(tagging(paths), true);
    EXPECT_EQ(m_asked, 1);
    QStringList tooMany;
    for (int number = 0; number <= KPBatchEdit::mostFiles; ++number)
        tooMany.append(paths.first());
    m_batch.replaceOriginalTags(tagging(tooMany), true);
    EXPECT_EQ(m_asked, 2);
    EXPECT_FALSE(m_worker.isBusy()) << "cancelled and refused";
    m_batch.replaceOriginalTags(tagging(paths.first(20)), true);
    EXPECT_EQ(m_asked, 2);
    ASSERT_TRUE(isWritten());
    EXPECT_EQ(Karvex::getUserTags(paths[19]).valueOr({}).size(), 1);
    EXPECT_EQ(Karvex::getUserTags(paths[20]).valueOr({}).size(), 0);
    EXPECT_EQ(m_began.count(), 1) << "progress is shown from 11 files on";
}

TEST_F(BatchEdit, ReportsOverTheViewAndTellsOfAllPaths)
{
    xpGuiThread.assertHere();
    QStringList told;
    const auto observation = XPNotificationCenter::instance().addObserver(
        KPBatchEdit::changingTags, [&told](const XPNotification &notification) {
            told = notification.userInfo.value(QStringLiteral("paths")).strings();
        });
    QSignalSpy texts(&m_batch, &KPBatchEdit::toReport);
    const QStringList paths = files(1) + QStringList{m_folder.path(QStringLiteral("gone"))};
    m_history.edit({{paths.first()}, {}, 3.0}); // one that came straight
    m_batch.replaceOriginalTags(tagging(paths), true, &m_worker);
    ASSERT_TRUE(isWritten());
    while (texts.isEmpty())
        ASSERT_TRUE(texts.wait());
    EXPECT_EQ(told, paths);
    EXPECT_EQ(texts.count(), 1);
    EXPECT_EQ(m_began.count(), 0);
    m_batch.replaceOriginalTags({paths, KPFileEdit::Tags{{}, {}}, {}}, true);
    m_batch.replaceOriginalTags(tagging({}), true);
    EXPECT_FALSE(m_worker.isBusy()) << "nothing would change";
}
