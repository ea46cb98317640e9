#include "XPFilePromise.h"

#include "FiledFolder.h"

#include <thread>
#include <unistd.h>

using Answer = XPDataOffer::Answer;
using namespace std::chrono_literals;

namespace {

// A program that promises a file, and does with it what the test wants.
class Sender : public XPDataOffer
{
public:
    QStringList formats() override { return {directSaveFormat, anyBytesFormat}; }
    XPResult<QByteArray> read(const QString &) override { return QByteArray("read"); }
    XPResult<Answer> save(const QByteArray &url) override
    {
        path = QByteArray::fromPercentEncoding(url.mid(7));
        if (writes)
            writes(path);
        return answer;
    }
    std::function<void(const QByteArray &path)> writes;
    XPResult<Answer> answer = Answer::Writes;
    QByteArray path;
};

void writeTo(const QByteArray &path)
{
    QFile file(QFile::decodeName(path));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("written");
}

class FilePromise : public FiledFolder
{
protected:
    // What became of it: the file's name, or the kind of the failure.
    QString kept(const QByteArray &said)
    {
        auto asked = XPFilePromise::ask(sender, said, m_folder.path(QStringLiteral("in")));
        if (!asked)
            return QStringLiteral("(not handed over)");
        std::optional<XPFilePromise> promise = *std::move(asked);
        promise->setPatience(patience);
        if (const auto error = promise->wait([] { return false; }))
            return QStringLiteral("(%1)").arg(error->message);
        const auto path = promise->take();
        if (!path)
            return QStringLiteral("(%1)").arg(path.error().message);
        EXPECT_TRUE(XPFiledDocuments::isManaged(*path));
        EXPECT_EQ(XPPath::folder(*path), m_folder.path(QStringLiteral("in")));
        return XPPath::fileName(*path);
    }
    QStringList there() const
    {
        return QDir(m_folder.path(QStringLiteral("in")))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    Sender sender;
    std::chrono::milliseconds patience = 20s;
};

} // namespace

TEST_F(FilePromise, IsTakenUnderAFreeNameWhenItIsWritten)
{
    sender.writes = writeTo;
    EXPECT_EQ(kept("scan.pdf"), u"scan.pdf");
    EXPECT_EQ(kept("scan.pdf"), u"scan 1.pdf");
    EXPECT_EQ(there(), QStringList({QStringLiteral("scan 1.pdf"), QStringLiteral("scan.pdf")}));
    EXPECT_EQ(bytesOf(m_folder.path(QStringLiteral("in/scan 1.pdf"))), "written");
}

TEST_F(FilePromise, OfASourceThatWritesLateIsWaitedFor)
{
    std::thread writer;
    sender.writes = [&writer](const QByteArray &path) {
        writer = std::thread([path] {
            std::this_thread::sleep_for(50ms);
            writeTo(path);
        });
    };
    EXPECT_EQ(kept("late.pdf"), u"late.pdf");
    writer.join();
    EXPECT_EQ(bytesOf(m_folder.path(QStringLiteral("in/late.pdf"))), "written");
}

TEST_F(FilePromise, OfASourceThatNeverWritesOrRefusesLeavesNothing)
{
    patience = 0ms;
    EXPECT_EQ(kept("never.pdf"), u"(the other program has not written the file)");
    sender.answer = Answer::Refuses;
    EXPECT_EQ(kept("no.pdf"), u"(not handed over)");
    sender.answer = XPError::make(XPError::Kind::Io, QStringLiteral("died"));
    EXPECT_EQ(kept("dead.pdf"), u"(not handed over)");
    sender.answer = Answer::Writes;
    sender.writes = [](const QByteArray &path) {
        EXPECT_EQ(::symlink("/etc/passwd", path.constData()), 0);
    };
    EXPECT_EQ(kept("link.pdf"), u"(what the other program made is no file)");
    // What came all the same is not thrown away.
    EXPECT_EQ(there().size(), 1);
}

// The program ended before the source had written it.
TEST_F(FilePromise, ThatNobodyTookIsADocumentAllTheSame)
{
    const QString folder = m_folder.path(QStringLiteral("in"));
    patience = 0ms;
    sender.writes = {};
    EXPECT_EQ(kept("late.pdf"), u"(the other program has not written the file)");
    EXPECT_EQ(there().size(), 0);
    ASSERT_TRUE(QDir().mkdir(QString::fromUtf8(sender.path).section(u'/', 0, -2)));
    writeTo(sender.path);
    EXPECT_EQ(XPFilePromise::takeLeftBehind(folder), QStringList()) << "it may be at work still";
    const QStringList taken = XPFilePromise::takeLeftBehind(folder, 0s);
    EXPECT_EQ(taken, QStringList{folder + QStringLiteral("/late.pdf")});
    EXPECT_TRUE(XPFiledDocuments::isManaged(taken.value(0)));
    EXPECT_EQ(there(), QStringList{QStringLiteral("late.pdf")});
}

TEST_F(FilePromise, MayBeReadInstead)
{
    sender.answer = Answer::WantsToBeRead;
    EXPECT_EQ(kept("mail.eml"), u"mail.eml");
    EXPECT_EQ(bytesOf(m_folder.path(QStringLiteral("in/mail.eml"))), "read");
}

TEST_F(FilePromise, GoesNowhereElseWhateverItIsCalled)
{
    struct Row
    {
        QByteArray said;
        const char *name;
    };
    for (const Row &row :
         {Row{"../../x.pdf", "x.pdf"}, Row{"/etc/passwd", "passwd"}, Row{"", "document"},
          Row{"..", "document"}, Row{"folder/", "document"}, Row{".hidden", "hidden"},
          Row{QByteArray("a\0b\nc\x1b.pdf", 10), "a b c .pdf"}, Row{"a\\b.pdf", "a b.pdf"}}) {
        EXPECT_EQ(XPFilePromise::nameOf(row.said).toStdString(), row.name)
            << row.said.toStdString();
    }
    EXPECT_LE(XPPath::encode(XPFilePromise::nameOf(QByteArray(5000, 'x'))).size(), 255);
    const QByteArray undecodable("a\xff.pdf");
    EXPECT_EQ(XPPath::encode(XPFilePromise::nameOf(undecodable)), undecodable);
}
