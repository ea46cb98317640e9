#include "KarvexAuthenticated.h"

#include "KarvexFileLock.h"
#include "KarvexTestFiles.h"
#include "TestChild.h"
#include "XPAuthorisation.h"
#include "XPPath.h"

#include <QFile>
#include <cerrno>
#include <semaphore>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using Kind = XPError::Kind;

static const QStringList oldTags = {QStringLiteral("old")};
static const QStringList newTags = {QStringLiteral("new & <odd>"), QStringLiteral("Cafe\u0301")};

namespace {

// Files of root in a folder that everybody may enter; what stands for pkexec gives root's rights
// to the writer without asking, as env is made setuid here.
class KarvexAuthenticatedTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (::geteuid() != 0)
            GTEST_SKIP() << "needs root, to have files that another user may not write";
        ASSERT_EQ(::chmod(XPPath::encode(m_folder.path()).constData(), 01777), 0);
        file = m_folder.file(QStringLiteral("of root"));
        ASSERT_EQ(::chmod(XPPath::encode(file).constData(), 0644), 0);
        ASSERT_EQ(Karvex::setUserTags(oldTags, file, {1}), std::nullopt);
        launcher = m_folder.path(QStringLiteral("launcher"));
        ASSERT_TRUE(QFile::copy(QStringLiteral("/usr/bin/env"), launcher));
        ASSERT_EQ(::chmod(XPPath::encode(launcher).constData(), 04755), 0);
    }

    // As a plain user, with this launcher.
    void asNobody(const QString &withLauncher, const std::function<void()> &work) const
    {
        constexpr int unreachable = 77;
        const int status = runChild([&] {
            becomeNobody();
            if (::access(XPPath::encode(file).constData(), R_OK) != 0 ||
                ::access(ATTRIBUTE_WRITER, X_OK) != 0)
                ::_exit(unreachable);
            XPAuthorisation::installShared(std::make_unique<XPAuthorisation>(
                XPAuthorisation::Programs{XPPath::encode(withLauncher), ATTRIBUTE_WRITER}));
            work();
            XPAuthorisation::installShared(nullptr);
        });
        if (status == unreachable)
            GTEST_SKIP() << "a plain user cannot reach the folder of the tests";
        EXPECT_EQ(status, 0);
    }

    // Where a plain user may make files too.
    QString path(const QString &name) const { return m_folder.path(name); }

    QString file;
    QString launcher;

private:
    TestFolder m_folder;
};

} // namespace

// A list that fits into an attribute, but not as XML.
static QStringList tooManyForXml()
{
    QStringList many;
    for (int i = 0; i < 300; ++i)
        many.append(QString::number(i));
    return many;
}

TEST_F(KarvexAuthenticatedTest, ARefusedWriteIsRepeatedWithRightsAndStoresXml)
{
    asNobody(launcher, [&] {
        EXPECT_EQ(Karvex::addUserTags(newTags, file), std::nullopt);
        EXPECT_TRUE(storedBytes(file, Karvex::userTagsKey)->startsWith("<?xml"));
        EXPECT_EQ(tagsOf(file), oldTags + newTags);
        EXPECT_EQ(Karvex::setRating(4, file), std::nullopt);
        EXPECT_EQ(Karvex::getRating(file).value(), 4);
        EXPECT_EQ(Karvex::setRating(0, file), std::nullopt);
        EXPECT_EQ(storedBytes(file, Karvex::starRatingKey), std::nullopt);

        const QStringList many = tooManyForXml();
        const QString key = Karvex::spotlightKey(Karvex::userTagsKey);
        expectError(KarvexAuthenticated::authenticatedSetXAttr(many, key, file), Kind::TooLarge,
                    XPError::karvexDomain, -5, file);
        const auto time = storedBytes(file, Karvex::userTagTimeKey);
        EXPECT_NE(Karvex::setUserTags(many, file), std::nullopt);
        EXPECT_EQ(storedBytes(file, Karvex::userTagTimeKey), time);
        EXPECT_EQ(tagsOf(file), oldTags + newTags);
    });
}

TEST_F(KarvexAuthenticatedTest, WithoutRightsNothingChanges)
{
    const QString nobodyAsks = QStringLiteral("/nonexistent/pkexec");
    const QString key = Karvex::spotlightKey(Karvex::userTagsKey);
    const auto isUnchanged = [&] {
        expectError(Karvex::setUserTags(newTags, file), Kind::NotPermitted, XPError::posixDomain,
                    EACCES, file);
        EXPECT_EQ(tagsOf(file), oldTags);
        EXPECT_EQ(Karvex::getXAttrMetaData(Karvex::userTagTimeKey, file).value(),
                  PropertyValue(PropertyValue::Date{1}));
    };
    asNobody(nobodyAsks, [&] {
        isUnchanged();
        for (const QString &path : {file, QString()})
            expectError(KarvexAuthenticated::authenticatedSetXAttr(newTags, key, path),
                        Kind::NotPermitted, XPError::karvexDomain, -4, path);
        EXPECT_EQ(KarvexAuthenticated::getAuthenticationPossiblyUsingUI({}), nullptr);
    });
    asNobody(launcher, [&] {
        gAllowKarvexAuthenticationDialogs = false;
        isUnchanged();
    });
}

static void makeProgram(const QString &path, const QByteArray &script)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\n" + script + '\n');
    file.close();
    ASSERT_EQ(::chmod(XPPath::encode(path).constData(), 0755), 0);
}

TEST_F(KarvexAuthenticatedTest, AsksNobodyForWhatCannotBeStoredAnyway)
{
    const QString asked = path(QStringLiteral("asked"));
    const QString asking = path(QStringLiteral("asking"));
    makeProgram(asking, "touch '" + XPPath::encode(asked) + "'; exit 126");
    const QStringList many = tooManyForXml();
    asNobody(asking, [&] {
        expectError(Karvex::setUserTags(many, file), Kind::TooLarge, XPError::karvexDomain, -5,
                    file);
        EXPECT_EQ(tagsOf(file), oldTags);
        EXPECT_FALSE(QFile::exists(asked));
        expectError(Karvex::setUserTags(newTags, file), Kind::NotPermitted, XPError::posixDomain,
                    EACCES, file);
        EXPECT_TRUE(QFile::exists(asked)) << "the launcher says when it is asked";
    });
}

// The question may stand for hours: whoever may write the file meanwhile does.
TEST_F(KarvexAuthenticatedTest, HoldsNoLockWhileTheUserIsAsked)
{
    const QString asking = path(QStringLiteral("asking"));
    const QByteArray asked = XPPath::encode(path(QStringLiteral("asked")));
    const QByteArray answer = XPPath::encode(path(QStringLiteral("answer")));
    ASSERT_EQ(::mkfifo(asked.constData(), 0666) + ::mkfifo(answer.constData(), 0666), 0);
    ASSERT_EQ(::chmod(asked.constData(), 0666) + ::chmod(answer.constData(), 0666), 0);
    makeProgram(asking, "echo >'" + asked + "'; read line <'" + answer + "'; exec '" +
                            XPPath::encode(launcher) + "' \"$@\"");
    asNobody(asking, [&] {
        std::optional<XPError> error;
        std::thread writer([&] { error = Karvex::addUserTags(newTags, file); });
        QFile question(XPPath::decode(asked));
        EXPECT_TRUE(question.open(QIODevice::ReadOnly));
        EXPECT_EQ(question.readLine(), "\n");
        std::binary_semaphore taken{0};
        std::thread other([&] {
            const KarvexFileLock lock(file);
            taken.release();
        });
        EXPECT_TRUE(taken.try_acquire_for(std::chrono::seconds(10)));
        QFile reply(XPPath::decode(answer));
        EXPECT_TRUE(reply.open(QIODevice::WriteOnly));
        reply.write("yes\n");
        reply.close();
        writer.join();
        other.join();
        EXPECT_EQ(error, std::nullopt);
        EXPECT_EQ(tagsOf(file), oldTags + newTags);
    });
}
