// Every file call of a conversion of the layout, and of emptying the inbox, fails once, and kills
// the process once.
#include "FiledFolder.h"
#include "TestChild.h"
#include "TestFaults.h"
#include "XPMoveRecovery.h"

#include <QDirIterator>
#include <cerrno>
#include <csignal>

namespace {

// Tagged documents, each with bytes of its own, by which they are counted wherever they are.
class FiledFaults : public FiledFolder, public testing::WithParamInterface<bool>
{
public:
    ~FiledFaults() override { QDir(m_inbox).removeRecursively(); }

protected:
    FiledFaults() { QDir().mkpath(m_inbox); }

    static bool converts() { return GetParam(); }

    void makeDocuments() const
    {
        QDir(m_root).removeRecursively();
        QDir(m_inbox).removeRecursively();
        QDir().mkpath(m_root);
        QDir().mkpath(m_inbox);
        int number = 0;
        for (const char *name : {"2013/6/14/a.pdf", "2013/6/15/a.pdf", "2013/6/a.pdf"})
            make(m_root + u'/' + QString::fromLatin1(name), number++);
        for (const char *name : {"scan.pdf", "scan 1.pdf", "\xC3\xA4.pdf"})
            make(m_inbox + u'/' + QString::fromUtf8(name), number++);
    }
    void make(const QString &path, int number) const
    {
        QDir().mkpath(XPPath::folder(path));
        QFile made(path);
        ASSERT_TRUE(made.open(QIODevice::WriteOnly));
        made.write("document " + QByteArray::number(number));
        made.close();
        ASSERT_FALSE(Karvex::setUserTags(QStringList{QString::number(number)}, path));
    }

    // Each document once, with its tag, under a name that people see.
    void expectAllOnce() const
    {
        QMap<QByteArray, int> found;
        for (const QString &folder : {m_root, m_inbox}) {
            QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
            while (it.hasNext()) {
                const QByteArray bytes = bytesOf(it.next());
                ++found[bytes];
                EXPECT_FALSE(it.fileName().startsWith(u'.')) << it.filePath().toStdString();
                EXPECT_EQ(Karvex::getUserTags(it.filePath()).valueOr({}),
                          QStringList{QString::fromUtf8(bytes.mid(9))});
            }
        }
        EXPECT_EQ(found.size(), 6);
        for (const int times : found)
            EXPECT_EQ(times, 1);
    }

    static void work()
    {
        if (converts())
            XPFiledDocuments::convertFromYearMonthDayToYearMonth();
        else
            XPFiledDocuments::movePendingFilesToFiledDocuments();
    }
    TestFaults::Plan plan(int at) const
    {
        return {.folders = {XPPath::encode(m_root), XPPath::encode(m_inbox)}, .at = at};
    }
    bool isDone() const
    {
        return converts() ? !exists(filed("2013/6/14")) && !exists(filed("2013/6/15"))
                          : QDir(m_inbox).isEmpty();
    }

    const QString m_inbox = XPFiledDocuments::pendingDocsFolderIfPresent();
};

} // namespace

TEST_P(FiledFaults, LoseNothingAndDoubleNothing)
{
    TestFaults::Errors errors({ENOSPC, EACCES, EXDEV});
    const auto once = [&](int at, int error) {
        makeDocuments();
        TestFaults::Plan plan = this->plan(at);
        plan.error = error;
        if (!TestFaults::run(plan, work))
            return false;
        SCOPED_TRACE(testing::Message()
                     << "call " << at << ' ' << TestFaults::failed().toStdString() << " errno "
                     << error);
        expectAllOnce();
        work(); // the next time finishes it
        expectAllOnce();
        EXPECT_TRUE(isDone());
        return !HasFailure();
    };
    while (errors.tryNext(once)) {
    }
}

TEST_P(FiledFaults, SurviveTheEndOfTheProcess)
{
    for (int at = 0;; ++at) {
        makeDocuments();
        TestFaults::Plan plan = this->plan(at);
        plan.dies = true;
        const int end = runChild([&] { TestFaults::run(plan, work); });
        if (end == 0)
            break;
        SCOPED_TRACE(testing::Message() << "killed at call " << at);
        ASSERT_EQ(end, -SIGKILL);
        XPFiledDocuments::rebuildFiledDocsPath();
        (void)XPMoveRecovery::run();
        expectAllOnce();
        work();
        expectAllOnce();
        EXPECT_TRUE(isDone());
        if (HasFailure())
            return;
    }
}

INSTANTIATE_TEST_SUITE_P(Works, FiledFaults, testing::Bool(), [](const auto &row) {
    return std::string(row.param ? "Conversion" : "Inbox");
});
