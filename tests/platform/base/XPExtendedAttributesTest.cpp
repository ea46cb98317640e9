#include "XPExtendedAttributes.h"

#include "TestSystem.h"
#include "XPAtomicFile.h"
#include "XPPath.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Attributes = XPExtendedAttributes;

static const QString rating = QStringLiteral("com.apple.metadata:kMDItemStarRating");

static std::optional<QByteArray> stored(const QString &path, const QString &name = rating)
{
    const auto value = Attributes::read(path, name);
    EXPECT_TRUE(value) << value.error().message.toStdString();
    return value.valueOr({});
}

TEST(XPExtendedAttributes, AbsentEmptyAndFailedAreThreeAnswers)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    EXPECT_EQ(stored(file), std::nullopt);
    EXPECT_EQ(Attributes::remove(file, rating), std::nullopt);

    EXPECT_EQ(Attributes::write(file, rating, {}), std::nullopt);
    EXPECT_EQ(stored(file), QByteArray(""));
    EXPECT_EQ(Attributes::remove(file, rating), std::nullopt);
    EXPECT_EQ(stored(file), std::nullopt);

    const QString missing = folder.path(QStringLiteral("missing"));
    EXPECT_EQ(Attributes::read(missing, rating).error(), XPError::fromErrno(ENOENT, missing));
    EXPECT_EQ(Attributes::write(missing, rating, "1"), XPError::fromErrno(ENOENT, missing));
    EXPECT_EQ(Attributes::remove(missing, rating), XPError::fromErrno(ENOENT, missing));
    EXPECT_EQ(Attributes::list(missing).error(), XPError::fromErrno(ENOENT, missing));
}

TEST(XPExtendedAttributes, ALinkHasNoneAndItsTargetIsLeftAlone)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    const QString link = folder.path(QStringLiteral("link"));
    ASSERT_EQ(::symlink("a", XPPath::encode(link).constData()), 0);
    ASSERT_EQ(Attributes::write(file, rating, "old"), std::nullopt);

    EXPECT_EQ(stored(link), std::nullopt);
    EXPECT_EQ(Attributes::list(link).value(), QStringList());
    EXPECT_EQ(Attributes::write(link, rating, "new")->kind, XPError::Kind::NotPermitted);
    EXPECT_NE(Attributes::remove(link, rating), std::nullopt);
    EXPECT_EQ(stored(file), QByteArray("old"));
}

TEST(XPExtendedAttributes, AnyFileNameAndFoldersToo)
{
    const TestFolder folder;
    const QString names[] = {XPPath::decode("\xff\xfe latin \xe9"), QStringLiteral("two\nlines"),
                             QStringLiteral("Caf\u00e9"), QStringLiteral("Cafe\u0301")};
    for (const QString &name : names) {
        const QString file = folder.file(name);
        const QByteArray value = name.toUtf8().toHex();
        EXPECT_EQ(Attributes::write(file, rating, value), std::nullopt);
    }
    for (const QString &name : names) // each its own file, the two spellings of Café too
        EXPECT_EQ(stored(folder.path(name)), name.toUtf8().toHex());
    EXPECT_EQ(Attributes::write(folder.path(), rating, "f"), std::nullopt);
    EXPECT_EQ(stored(folder.path()), QByteArray("f"));
}

TEST(XPExtendedAttributes, AValueOverTheLimitIsAnErrorNeverCut)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    const QByteArray value(3000, 'v');
    ASSERT_EQ(Attributes::write(file, rating, value), std::nullopt);
    EXPECT_EQ(Attributes::read(file, rating, 3000).value(), value);
    for (const qsizetype limit : {0, 1, 2999})
        EXPECT_EQ(Attributes::read(file, rating, limit).error(), XPError::fromErrno(ERANGE, file));
    ASSERT_EQ(Attributes::write(file, rating, {}), std::nullopt);
    EXPECT_EQ(Attributes::read(file, rating, 0).value(), QByteArray(""));
}

TEST(XPExtendedAttributes, NoRoomLeavesTheOldValue)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    ASSERT_EQ(Attributes::write(file, rating, "old"), std::nullopt);
    const auto error = Attributes::write(file, rating, QByteArray(70000, 'x'));
    ASSERT_NE(error, std::nullopt);
    EXPECT_EQ(error->kind, XPError::Kind::TooLarge); // E2BIG: over every file system's limit
    EXPECT_EQ(error->path, file);
    EXPECT_EQ(stored(file), QByteArray("old"));
}

TEST(XPExtendedAttributes, NamesAreListedWithoutTheNamespaceAndSorted)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    const QString odd = XPPath::decode("odd\xff");
    const QString accented = QStringLiteral("\u00e9");
    const QString longest(250, u'n');
    for (const QString &name : {rating, odd, accented, longest})
        ASSERT_EQ(Attributes::write(file, name, "1"), std::nullopt) << name.toStdString();
    QStringList expected = {rating, odd, accented, longest};
    expected.sort();
    EXPECT_EQ(Attributes::list(file).value(), expected);
    for (const QString &name : expected)
        EXPECT_EQ(Attributes::remove(file, name), std::nullopt);
    EXPECT_EQ(Attributes::list(file).value(), QStringList());
    EXPECT_EQ(Attributes::nameOnDisk(rating), "user." + rating.toUtf8());
}

TEST(XPExtendedAttributes, ANameOrPathThatCannotExistIsRefused)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    const QString lone(QChar(char16_t{0xD800}));
    for (const QString &name : {QString(), QString(251, u'n'), QString(QChar(0)), lone}) {
        EXPECT_EQ(Attributes::write(file, name, "1")->kind, XPError::Kind::InvalidArgument);
        EXPECT_EQ(Attributes::read(file, name).error().kind, XPError::Kind::InvalidArgument);
    }
    for (const QString &path : {QString(), lone})
        EXPECT_EQ(Attributes::read(path, rating).error().kind, XPError::Kind::InvalidArgument);
}

TEST(XPExtendedAttributes, AFullFileSystemLeavesTheOldValue)
{
    const auto volume = TestVolume::ext4SmallBlocks();
    if (!volume)
        GTEST_SKIP() << "no file system can be mounted here";
    const QString file = volume->path(QStringLiteral("a"));
    ASSERT_EQ(XPAtomicFile::write(file, "x"), std::nullopt);
    ASSERT_EQ(Attributes::write(file, rating, "old"), std::nullopt);
    EXPECT_EQ(Attributes::write(file, rating, QByteArray(1000, 'x')),
              XPError::fromErrno(ENOSPC, file));
    EXPECT_EQ(stored(file), QByteArray("old"));
}

TEST(XPExtendedAttributes, AFileSystemWithoutThemIsToldApart)
{
    const QString file = QStringLiteral("/proc/self/status");
    EXPECT_EQ(Attributes::read(file, rating).error().kind, XPError::Kind::Unsupported);
    EXPECT_EQ(Attributes::write(file, rating, "1")->kind, XPError::Kind::Unsupported);
}

TEST(XPExtendedAttributes, WithoutTheRightToWrite)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    ASSERT_EQ(Attributes::write(file, rating, "old"), std::nullopt);
    ASSERT_EQ(::chmod(XPPath::encode(file).constData(), 0444), 0);
    const int outcome = asPlainUser(folder.path(), [&file] {
        const auto error = Attributes::write(file, rating, "new");
        return error == XPError::fromErrno(EACCES, file) ? 0 : 1;
    });
    EXPECT_EQ(outcome, 0);
    EXPECT_EQ(stored(file), QByteArray("old"));
}
