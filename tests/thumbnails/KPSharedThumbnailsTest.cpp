#include "KPSharedThumbnails.h"
#include "KPPngFile.h"

#include "TestHome.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <QCryptographicHash>
#include <QDir>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace std::chrono_literals;

static constexpr auto lifetime = std::chrono::hours(24);

static QImage picture(int width, int height, QRgb colour = 0xFF3366CC)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

static void setTimes(const QString &path, qint64 seconds)
{
    const timespec times[] = {{seconds, 0}, {seconds, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, XPPath::encode(path).constData(), times, 0), 0);
}

class SharedThumbnails : public testing::Test
{
protected:
    // A document of long ago.
    QString document(const char *name)
    {
        QString path = m_folder.file(XPPath::decode(QByteArrayView(name)));
        setTimes(path, 1'600'000'000);
        return path;
    }
    static KPFileOrigin originOf(const QString &path)
    {
        return KPFileOrigin::of(XPFileInfo::read(path).value());
    }
    QStringList files(const QString &size) const
    {
        return QDir(m_cache + u'/' + size).entryList(QDir::Files);
    }
    const TestFolder m_folder;
    const QString m_cache = m_folder.path(QStringLiteral("thumbnails"));
    const KPSharedThumbnails m_shared{m_cache, QStringLiteral("murn-1")};
};

// Sums of what g_filename_to_uri() and QUrl::fromLocalFile() give.
TEST(SharedThumbnailAddress, IsSpeltAsOtherProgramsDo)
{
    const auto of = [](QByteArrayView path) {
        return KPSharedThumbnails::addressesOf(XPPath::decode(path)).join('\n');
    };
    EXPECT_EQ(of("/home/a b.pdf"), "file:///home/a%20b.pdf");
    EXPECT_EQ(of("/a!$&'()*+,-.=:@_~z"), "file:///a!$&'()*+,-.=:@_~z");
    EXPECT_EQ(of("/a\"#%<>?\\^`{|}"), "file:///a%22%23%25%3C%3E%3F%5C%5E%60%7B%7C%7D");
    EXPECT_EQ(of("/\xc3\xa4\xff\n"), "file:///%C3%A4%FF%0A");
    EXPECT_EQ(of("/a[1];b"), "file:///a%5B1%5D%3Bb\nfile:///a[1];b");
}

TEST_F(SharedThumbnails, AreStoredAsTheStandardSays)
{
    const QString path = document("a [1].pdf");
    m_shared.write(path, originOf(path), picture(181, 256));
    const QStringList names = files(QStringLiteral("large"));
    ASSERT_EQ(names.size(), 1);
    const QString file = m_cache + QStringLiteral("/large/") + names.first();
    EXPECT_EQ(XPFileInfo::read(file).value().mode & 0777U, 0600U);
    EXPECT_EQ(XPFileInfo::read(m_cache).value().mode & 0777U, 0700U);
    const QImage image(file, "PNG");
    EXPECT_EQ(image.size(), QSize(181, 256));
    EXPECT_EQ(image.text(QStringLiteral("Thumb::MTime")), u"1600000000");
    EXPECT_EQ(image.text(QStringLiteral("Thumb::URI")),
              QString::fromLatin1(KPSharedThumbnails::addressesOf(path).first()));
    // Plain text chunks, ahead of the pixels: some programs look no further.
    QFile bytes(file);
    ASSERT_TRUE(bytes.open(QIODevice::ReadOnly));
    EXPECT_EQ(bytes.readAll().mid(37, 4), "tEXt");

    const auto read = m_shared.read(path, originOf(path), 200, lifetime);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->size(), QSize(141, 200));
    EXPECT_FALSE(m_shared.read(path, originOf(path), 257, lifetime)) << "it would be blurred";
}

TEST_F(SharedThumbnails, OfOtherProgramsAreFound)
{
    const QString path = document("a[1];b.pdf");
    const QByteArray other = KPSharedThumbnails::addressesOf(path).last();
    const QByteArray sum = QCryptographicHash::hash(other, QCryptographicHash::Md5).toHex();
    ASSERT_TRUE(QDir().mkpath(m_cache + QStringLiteral("/x-large")));
    QImage image = picture(512, 300);
    image.setText(QStringLiteral("Thumb::URI"), QString::fromLatin1(other)); // Qt compresses it
    image.setText(QStringLiteral("Thumb::MTime"), QStringLiteral("1600000000"));
    ASSERT_TRUE(image.save(m_cache + QStringLiteral("/x-large/") + QString::fromLatin1(sum) +
                           QStringLiteral(".png")));
    const auto read = m_shared.read(path, originOf(path), 100, lifetime);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->size(), QSize(100, 58));
}

TEST_F(SharedThumbnails, OfAnotherStateOfTheFileDoNotCount)
{
    const QString path = document("a.pdf");
    const KPFileOrigin origin = originOf(path);
    m_shared.write(path, origin, picture(100, 100));
    m_shared.writeFailure(path, origin, DocumentFailure::Encrypted);
    EXPECT_TRUE(m_shared.read(path, origin, 100, lifetime));
    EXPECT_EQ(m_shared.failure(path, origin, lifetime), DocumentFailure::Encrypted);
    KPFileOrigin later = origin;
    later.modified += 1'000'000'000;
    KPFileOrigin longer = origin;
    longer.size += 1;
    for (const KPFileOrigin &other : {later, longer}) {
        EXPECT_FALSE(m_shared.read(path, other, 100, lifetime));
        EXPECT_FALSE(m_shared.failure(path, other, lifetime));
    }
    EXPECT_FALSE(m_shared.read(path, origin, 100, -1s)) << "older than is wanted";
    EXPECT_FALSE(m_shared.failure(path, origin, -1s));
}

TEST_F(SharedThumbnails, AreNotStoredWhereTheyWouldLie)
{
    const QString fresh = m_folder.file(QStringLiteral("fresh.pdf")); // may change again at once
    const QString within = m_folder.file(QStringLiteral("thumbnails/normal/a.png"));
    setTimes(within, 1'600'000'000);
    KPFileOrigin timeless = originOf(document("a.pdf"));
    timeless.modified = 0;
    m_shared.write(fresh, originOf(fresh), picture(100, 100));
    m_shared.write(within, originOf(within), picture(100, 100));
    m_shared.write(document("a.pdf"), timeless, picture(100, 100));
    m_shared.write(document("a.pdf"), originOf(document("a.pdf")), picture(2000, 100));
    EXPECT_EQ(files(QStringLiteral("normal")), QStringList{QStringLiteral("a.png")});
}

TEST_F(SharedThumbnails, ThatAreDamagedOrForeignAreNone)
{
    const QString path = document("a.pdf");
    const KPFileOrigin origin = originOf(path);
    m_shared.write(path, origin, picture(128, 128));
    const QString file =
        m_cache + QStringLiteral("/normal/") + files(QStringLiteral("normal")).value(0);
    QFile bytes(file);
    ASSERT_TRUE(bytes.open(QIODevice::ReadWrite));
    const QByteArray whole = bytes.readAll();
    for (qsizetype cut = 0; cut < whole.size(); cut += 41) {
        ASSERT_TRUE(bytes.resize(0) && bytes.seek(0));
        bytes.write(whole.first(cut));
        bytes.flush();
        const auto read = m_shared.read(path, origin, 128, lifetime);
        EXPECT_TRUE(!read || !read->isNull()) << cut;
    }
    bytes.remove();
    ASSERT_EQ(::symlink("/dev/zero", XPPath::encode(file).constData()), 0);
    EXPECT_FALSE(m_shared.read(path, origin, 128, lifetime));
    bytes.remove();
    ASSERT_EQ(::mkfifo(XPPath::encode(file).constData(), 0600), 0);
    EXPECT_FALSE(m_shared.read(path, origin, 128, lifetime));
}

// A full or read-only disk: no picture is stored, and nothing else happens.
TEST_F(SharedThumbnails, LeaveNothingBehindWhereTheyCannotBeStored)
{
    const QString path = document("a.pdf");
    m_folder.file(QStringLiteral("blocked/normal"), "no folder");
    const KPSharedThumbnails shared(m_folder.path(QStringLiteral("blocked")), QStringLiteral("m"));
    shared.write(path, originOf(path), picture(128, 128));
    EXPECT_FALSE(shared.read(path, originOf(path), 128, lifetime));
    EXPECT_EQ(QDir(m_folder.path(QStringLiteral("blocked"))).entryList(QDir::Files),
              QStringList{QStringLiteral("normal")});
}

// Averaged, not picked: a page of black and white is grey from afar.
TEST(ScaledPicture, OfOneBitIsSmooth)
{
    QImage mono(400, 400, QImage::Format_Mono);
    mono.setColorTable({0xFF000000, 0xFFFFFFFF});
    for (int y = 0; y < 400; ++y) {
        for (int x = 0; x < 400; ++x)
            mono.setPixel(x, y, static_cast<uint>((x + y) % 2));
    }
    const QImage small = KPSharedThumbnails::scaled(mono, 100);
    EXPECT_EQ(small.size(), QSize(100, 100));
    EXPECT_NEAR(qGray(small.pixel(50, 50)), 128, 40);
}
