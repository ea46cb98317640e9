#include "KPThumbnailImage.h"
#include "KPThumbnailLoader.h"

#include "TestHome.h"
#include "XPPath.h"

#include <QBuffer>
#include <QImage>
#include <QSemaphore>
#include <QSignalSpy>
#include <QtEndian>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

static QByteArray picture(int width, int height, const char *format = "PNG")
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, format);
    return bytes;
}

// A BMP header that promises this size; the decoder believes it before it reads a pixel.
static QByteArray bmpOfSize(qint32 width, qint32 height)
{
    QByteArray bytes = picture(1, 1, "BMP");
    qToLittleEndian(width, bytes.data() + 18);
    qToLittleEndian(height, bytes.data() + 22);
    return bytes;
}

TEST(ThumbnailImage, IsMadeForFilesWhoseNamesAreNoText)
{
    const TestFolder folder;
    const QString path =
        folder.file(XPPath::decode(QByteArrayView("caf\xe9 \n.png")), picture(400, 100));
    EXPECT_EQ(kpThumbnailImage(path, 100).size(), QSize(100, 25));
    EXPECT_EQ(kpThumbnailImage(path, 1000).size(), QSize(400, 100)) << "never enlarged";
}

TEST(ThumbnailImage, RefusesWhatIsNoHonestPicture)
{
    const TestFolder folder;
    const QByteArray whole = picture(300, 300, "JPEG");
    const struct
    {
        const char *name;
        QByteArray bytes;
    } cases[] = {
        {"empty.png", {}},
        {"garbage.jpg", QByteArray(5000, '\xff')},
        {"huge.bmp", bmpOfSize(60'000, 60'000)},
        {"wide.bmp", bmpOfSize(0x7fffffff, 1)},
        {"svg.png", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>"
                    "<image href='/etc/passwd'/></svg>"},
        {"header only.jpg", whole.left(20)},
    };
    for (const auto &each : cases)
        EXPECT_TRUE(
            kpThumbnailImage(folder.file(QString::fromLatin1(each.name), each.bytes), 64).isNull())
            << each.name;

    // What opening must neither follow nor wait for.
    const QString target = folder.file(QStringLiteral("target.png"), picture(9, 9));
    const QByteArray link = XPPath::encode(folder.path(QStringLiteral("link.png")));
    ASSERT_EQ(symlink(XPPath::encode(target).constData(), link.constData()), 0);
    EXPECT_TRUE(kpThumbnailImage(folder.path(QStringLiteral("link.png")), 64).isNull());
    const QByteArray pipe = XPPath::encode(folder.path(QStringLiteral("pipe.png")));
    ASSERT_EQ(mkfifo(pipe.constData(), 0600), 0);
    EXPECT_TRUE(kpThumbnailImage(folder.path(QStringLiteral("pipe.png")), 64).isNull());
    EXPECT_TRUE(kpThumbnailImage(folder.path(), 64).isNull());
}

TEST(ThumbnailLoader, DropsWhatScrolledAwayAndEndsInMidWork)
{
    QSemaphore begun;
    QSemaphore mayGoOn;
    std::atomic<int> made = 0;
    const auto slowly = [&](const QString &, int) {
        begun.release();
        mayGoOn.acquire();
        ++made;
        return QImage(2, 2, QImage::Format_RGB32);
    };
    // So many that they are not done when the loader ends, however busy the machine is.
    constexpr int many = 50'000;
    std::vector<KPThumbnailLoader::Request> first;
    for (int number = 0; number < many; ++number)
        first.push_back({QStringLiteral("/first/%1.png").arg(number), 1, S_IFREG, 16});
    {
        KPThumbnailLoader loader(slowly, 1 << 20);
        QSignalSpy settled(&loader, &KPThumbnailLoader::settled);
        loader.want(first);
        begun.acquire();
        loader.want({{QStringLiteral("/second.png"), 1, S_IFREG, 16}});
        mayGoOn.release(2 * many);
        ASSERT_TRUE(settled.wait());
        EXPECT_FALSE(loader.look(QStringLiteral("/second.png"), 1).picture.isNull());
        EXPECT_TRUE(loader.look(QStringLiteral("/second.png"), 2).picture.isNull())
            << "another version is another picture";
        EXPECT_LE(made, 10);
        loader.want(first); // and is destroyed with these before it
    }
    EXPECT_LT(made, many);
}

TEST(ThumbnailLoader, ForgetsTheOldestWhenThereIsNoRoom)
{
    KPThumbnailLoader loader(
        [](const QString &, int) { return QImage(64, 64, QImage::Format_RGB32); },
        5 * (64 * 64 * 4 + 512));
    std::vector<KPThumbnailLoader::Request> requests;
    for (int number = 0; number < 20; ++number)
        requests.push_back({QStringLiteral("/%1.png").arg(number), 1, S_IFREG, 64});
    QSignalSpy settled(&loader, &KPThumbnailLoader::settled);
    loader.want(requests);
    ASSERT_TRUE(settled.wait());
    int kept = 0;
    for (const auto &request : requests)
        kept += !loader.look(request.path, 1).picture.isNull();
    EXPECT_EQ(kept, 5);
}
