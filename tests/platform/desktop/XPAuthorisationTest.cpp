#include "XPAuthorisation.h"

#include "AttributeWriterProtocol.h"
#include "TestHome.h"
#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <cerrno>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using Kind = XPError::Kind;
using namespace std::chrono_literals;

static const QString rating = QStringLiteral("com.apple.metadata:kMDItemStarRating");

namespace {

// A script in the place of pkexec, which notes each start, and a clock that the test moves.
class XPAuthorisationTest : public testing::Test
{
protected:
    std::unique_ptr<XPAuthorisation> authorisation(const QByteArray &script,
                                                   const QByteArray &writer = ATTRIBUTE_WRITER)
    {
        const QString launcher = m_folder.file(QStringLiteral("launcher"),
                                               "#!/bin/sh\necho >> '" + XPPath::encode(m_starts) +
                                                   "'\n" + script + "\n");
        EXPECT_EQ(::chmod(XPPath::encode(launcher).constData(), 0755), 0);
        return std::make_unique<XPAuthorisation>(
            XPAuthorisation::Programs{XPPath::encode(launcher), writer}, [this] { return m_now; });
    }

    int starts() const
    {
        QFile list(m_starts);
        return list.open(QIODevice::ReadOnly) ? static_cast<int>(list.readAll().count('\n')) : 0;
    }

    Kind refusal(XPAuthorisation &authorisation)
    {
        const auto error = authorisation.writeAttribute(file, rating, QByteArray("1"), {});
        EXPECT_TRUE(error);
        return error.value_or(XPError()).kind;
    }

    std::optional<QByteArray> stored() const
    {
        return XPExtendedAttributes::read(file, rating).value();
    }

private:
    const TestFolder m_folder;
    const QString m_starts = m_folder.path(QStringLiteral("starts"));

protected:
    const QString file = m_folder.file(XPPath::decode("odd\n\xff"));
    std::chrono::steady_clock::time_point m_now;
};

} // namespace

TEST_F(XPAuthorisationTest, OneConfirmationServesABatch)
{
    const auto rights = authorisation("exec \"$1\"");
    for (int i = 0; i < 100; ++i) {
        const QByteArray value = QByteArray::number(i);
        ASSERT_EQ(rights->writeAttribute(file, rating, value, {}), std::nullopt);
        ASSERT_EQ(stored(), value);
    }
    for (int i = 0; i < 2; ++i) // the second time there is nothing, which is as well
        ASSERT_EQ(rights->writeAttribute(file, rating, std::nullopt, {}), std::nullopt);
    EXPECT_EQ(stored(), std::nullopt);
    const QString gone = file + u'x';
    EXPECT_EQ(rights->writeAttribute(gone, rating, QByteArray("1"), {}),
              XPError::fromErrno(ENOENT, gone));
    EXPECT_EQ(starts(), 1);
}

TEST_F(XPAuthorisationTest, AfterARefusalNobodyIsAskedForTwentySeconds)
{
    const struct
    {
        const char *script;
        Kind kind;
    } rows[] = {{"exit 126", Kind::Cancelled},
                {"exit 127", Kind::NotPermitted},
                {"echo hello", Kind::NotPermitted}};
    int expected = 0;
    for (const auto &row : rows) {
        const auto rights = authorisation(row.script);
        EXPECT_EQ(refusal(*rights), row.kind);
        EXPECT_EQ(starts(), ++expected);
        m_now += 19s;
        EXPECT_EQ(refusal(*rights), Kind::Cancelled);
        EXPECT_EQ(starts(), expected);
        m_now += 1s;
        EXPECT_EQ(rights->obtain({})->kind, row.kind);
        EXPECT_EQ(starts(), ++expected);
    }
    EXPECT_EQ(stored(), std::nullopt);
}

TEST_F(XPAuthorisationTest, WithNothingToAskWithTheAnswerComesAtOnce)
{
    const auto noWriter = authorisation("exec \"$1\"", "/nonexistent/writer");
    EXPECT_EQ(refusal(*noWriter), Kind::Unsupported);
    EXPECT_EQ(starts(), 0);
    XPAuthorisation noLauncher({"/nonexistent/pkexec", ATTRIBUTE_WRITER});
    EXPECT_EQ(refusal(noLauncher), Kind::Unsupported);
}

TEST_F(XPAuthorisationTest, AWriterThatEndedIsStartedAgain)
{
    // Each writer reads one request and is gone, as after its idle time; the second time too.
    const auto rights = authorisation("[ $(wc -l < \"$(dirname \"$0\")/starts\") -gt 1 ] && exec "
                                      "\"$1\"\nprintf MAW1; head -c 16 > /dev/null");
    ASSERT_EQ(rights->obtain({}), std::nullopt);
    ASSERT_EQ(rights->writeAttribute(file, rating, QByteArray("1"), {}), std::nullopt);
    EXPECT_EQ(stored(), QByteArray("1"));
    EXPECT_EQ(starts(), 2);
    const auto never = authorisation("printf MAW1");
    EXPECT_EQ(refusal(*never), Kind::Io);
}

TEST_F(XPAuthorisationTest, TheWriterWritesOnlyTheConventionsAttributes)
{
    const auto rights = authorisation("exec \"$1\"");
    const QString names[] = {QStringLiteral("com.apple.metadata:kMDItem"),
                             QStringLiteral("com.apple.metadata:kMDItemA-b"),
                             QStringLiteral("com.apple.metadata:other"),
                             QStringLiteral("com.apple.quarantine"),
                             rating + QChar(0xe9),
                             QString(300, u'n')};
    for (const QString &name : names) {
        const auto error = rights->writeAttribute(file, name, QByteArray("1"), {});
        ASSERT_TRUE(error) << name.toStdString();
        EXPECT_EQ(error->kind, Kind::InvalidArgument);
    }
    EXPECT_EQ(rights->writeAttribute(QStringLiteral("relative"), rating, QByteArray("1"), {})->kind,
              Kind::InvalidArgument);
    EXPECT_EQ(rights->writeAttribute(file, rating, QByteArray(4097, 'v'), {})->kind,
              Kind::InvalidArgument);
    EXPECT_EQ(XPExtendedAttributes::list(file).value(), QStringList());
    EXPECT_EQ(rights->writeAttribute(file, rating, QByteArray("1"), {}), std::nullopt);

    const QString link = file + QStringLiteral(" link");
    ASSERT_EQ(::symlink(XPPath::encode(file).constData(), XPPath::encode(link).constData()), 0);
    EXPECT_EQ(rights->writeAttribute(link, rating, QByteArray("2"), {}),
              XPError::fromErrno(EPERM, link));
    EXPECT_EQ(stored(), QByteArray("1"));
    EXPECT_EQ(starts(), 1);
}

TEST_F(XPAuthorisationTest, TheWriterMovesAndRemovesTheConfirmedFileAlone)
{
    const auto rights = authorisation("exec \"$@\"");
    const TestFolder folder;
    const QString trash = folder.path(QStringLiteral("Trash/files"));
    const QString other = folder.path(QStringLiteral("Other/files"));
    QDir().mkpath(trash);
    QDir().mkpath(other);
    (void)folder.file(QStringLiteral("docs/odd package/inner/file"));
    const QString package = folder.path(QStringLiteral("docs/odd package"));
    const XPFileInfo confirmed = *XPFileInfo::read(package);
    const XPFileInfo another = *XPFileInfo::read(folder.file(QStringLiteral("docs/another")));

    EXPECT_EQ(rights->moveToTrash(package, confirmed, other, QStringLiteral("a"), {})->kind,
              Kind::InvalidArgument);
    EXPECT_EQ(rights->moveToTrash(package, another, trash, QStringLiteral("a"), {})->code, ESTALE);
    EXPECT_EQ(rights->moveToTrash(package, confirmed, trash, QStringLiteral("../a"), {})->kind,
              Kind::InvalidArgument);
    EXPECT_EQ(rights->remove(package, another, {})->code, ESTALE);
    ASSERT_TRUE(XPFileInfo::read(package + QStringLiteral("/inner/file")));

    ASSERT_EQ(rights->moveToTrash(package, confirmed, trash, XPPath::decode("a\xff"), {}),
              std::nullopt);
    const QString there = trash + u'/' + XPPath::decode("a\xff");
    ASSERT_TRUE(XPFileInfo::read(there + QStringLiteral("/inner/file")));
    const QString link = folder.path(QStringLiteral("link"));
    ASSERT_EQ(::symlink("docs", XPPath::encode(link).constData()), 0);
    const XPFileInfo linkItself = *XPFileInfo::read(link);
    EXPECT_EQ(rights->remove(link, linkItself, {}), std::nullopt);
    EXPECT_EQ(rights->remove(there, confirmed, {}), std::nullopt);
    EXPECT_FALSE(XPFileInfo::read(there));
    EXPECT_FALSE(XPFileInfo::read(link));
    EXPECT_TRUE(XPFileInfo::read(folder.path(QStringLiteral("docs/another"))));
}

// What no caller of ours sends: the writer believes nobody.
TEST(AttributeWriterTest, RefusesFramesOverItsLimitsAndEndsWithItsInput)
{
    using namespace AttributeWriter;
    const Request requests[] = {{Operation{7}, 1, 1, 1},
                                {Operation::Write, 256, 1, 1},
                                {Operation::Write, 1, 4096, 1},
                                {Operation::Write, 1, 1, 0xffffffff},
                                {Operation::Remove, 1, 1, 1}};
    const auto answer = [](const QByteArray &input) {
        QProcess writer;
        writer.start(QStringLiteral(ATTRIBUTE_WRITER), QStringList());
        writer.write(input);
        writer.closeWriteChannel();
        EXPECT_TRUE(writer.waitForFinished());
        return writer.readAllStandardOutput();
    };
    const QByteArray hello(greeting, sizeof greeting);
    for (const Request &request : requests) {
        const qint32 status = RefusedFrame;
        EXPECT_EQ(answer(QByteArray(reinterpret_cast<const char *>(&request), sizeof request)),
                  hello + QByteArray(reinterpret_cast<const char *>(&status), sizeof status));
    }
    EXPECT_EQ(answer({}), hello);
    EXPECT_EQ(answer("half a request"), hello);
}
