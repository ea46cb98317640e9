#include "PictureDecoding.h"
#include "ReaderDocuments.h"
#include "TextPage.h"

#include <QBuffer>
#include <QColor>
#include <QtEndian>
#include <libheif/heif.h>

// Pictures of pages: which way up, how large, and of which page.

namespace {

const QString png = QStringLiteral("public.png");

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// Red on the left, blue on the right.
QImage twoHalves(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixelColor(x, y, x < width / 2 ? Qt::red : Qt::blue);
    }
    return image;
}

int darkPixels(const QImage &image)
{
    int dark = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            dark += image.pixelColor(x, y).lightness() < 128;
    }
    return dark;
}

QByteArray heif(const QImage &picture, heif_compression_format format)
{
    heif_context *context = heif_context_alloc();
    heif_encoder *encoder = nullptr;
    heif_image *image = nullptr;
    QByteArray bytes;
    if (heif_context_get_encoder_for_format(context, format, &encoder).code == heif_error_Ok) {
        heif_image_create(picture.width(), picture.height(), heif_colorspace_RGB,
                          heif_chroma_interleaved_RGB, &image);
        heif_image_add_plane(image, heif_channel_interleaved, picture.width(), picture.height(), 8);
        int stride = 0;
        uint8_t *plane = heif_image_get_plane(image, heif_channel_interleaved, &stride);
        const QImage rgb = picture.convertToFormat(QImage::Format_RGB888);
        for (int y = 0; y < rgb.height(); ++y)
            std::copy_n(rgb.constScanLine(y), rgb.width() * 3, plane + y * stride);
        heif_context_encode_image(context, image, encoder, nullptr, nullptr);
        heif_writer writer = {1, [](heif_context *, const void *data, size_t size, void *to) {
                                  static_cast<QByteArray *>(to)->append(
                                      static_cast<const char *>(data),
                                      static_cast<qsizetype>(size));
                                  return heif_error{heif_error_Ok, heif_suberror_Unspecified, ""};
                              }};
        heif_context_write(context, &writer, &bytes);
        heif_image_release(image);
        heif_encoder_release(encoder);
    }
    heif_context_free(context);
    return bytes;
}

// A camera's own file: TIFF, with a JPEG of what it holds beside data that nobody here reads.
QByteArray rawWithPreview(const QByteArray &jpeg)
{
    struct Entry
    {
        quint16 tag, type;
        quint32 value;
    };
    constexpr quint16 shortType = 3;
    constexpr quint16 longType = 4;
    constexpr quint32 header = 8;
    const quint32 entries = 6;
    const quint32 end = header + 2 + entries * 12 + 4;
    const Entry fields[entries] = {
        {0x00FE, longType, 1}, // a smaller picture of another
        {0x0100, longType, 40},  {0x0101, longType, 20},
        {0x0103, shortType, 6}, // JPEG
        {0x0201, longType, end}, {0x0202, longType, static_cast<quint32>(jpeg.size())}};
    QByteArray bytes("II*\0\x08\0\0\0\x06\0", 10);
    const auto put = [&](auto value) {
        const auto little = qToLittleEndian(value);
        bytes.append(reinterpret_cast<const char *>(&little), sizeof little);
    };
    for (const Entry &field : fields) {
        put(field.tag);
        put(field.type);
        put(quint32{1});
        put(field.value);
    }
    put(quint32{0});
    return bytes + jpeg;
}

} // namespace

TEST(Pictures, OfCamerasAndTelephonesAreShown)
{
    const QImage picture = twoHalves(128, 64);
    const struct
    {
        const char *type;
        QByteArray bytes;
    } cases[] = {{"public.heic", heif(picture, heif_compression_HEVC)},
                 {"public.avif", heif(picture, heif_compression_AV1)},
                 {"public.camera-raw-image", rawWithPreview(encoded(picture, "JPEG"))}};
    for (const auto &each : cases) {
        if (each.bytes.isEmpty())
            continue; // no encoder for it here
        const QImage shown = ReaderFile(QString::fromLatin1(each.type), each.bytes).picture(1, 64);
        ASSERT_EQ(shown.size(), QSize(64, 32)) << each.type;
        EXPECT_GT(shown.pixelColor(8, 16).red(), 200) << each.type;
        EXPECT_GT(shown.pixelColor(56, 16).blue(), 200) << each.type;
        const QByteArray half = each.bytes.left(each.bytes.size() / 2);
        (void)ReaderFile(QString::fromLatin1(each.type), half).picture(1, 64); // ends
    }
}

TEST(Pictures, FitTheSizeAskedForAndAreNotBlownUp)
{
    const ReaderFile file(png, encoded(twoHalves(400, 200), "PNG"));
    EXPECT_EQ(file.picture(1, 100).size(), QSize(100, 50));
    EXPECT_EQ(file.picture(1, 1000).size(), QSize(400, 200));
    EXPECT_TRUE(file.picture(2, 100).isNull()) << "there is one page";
    const ReaderFile line(png, encoded(twoHalves(3000, 2), "PNG"));
    EXPECT_EQ(line.picture(1, 100).size(), QSize(100, 1)) << "never without a side";
}

TEST(Pictures, StandUpright)
{
    const QImage flat = twoHalves(40, 20);
    const struct
    {
        int orientation = 0;
        QSize size;
        QPoint red; // where the left half of the stored picture comes to lie
    } cases[] = {
        {1, {40, 20}, {5, 10}},  {2, {40, 20}, {35, 10}}, {3, {40, 20}, {35, 10}},
        {4, {40, 20}, {5, 10}},  {5, {20, 40}, {10, 5}},  {6, {20, 40}, {10, 5}},
        {7, {20, 40}, {10, 35}}, {8, {20, 40}, {10, 35}}, {99, {40, 20}, {5, 10}},
    };
    for (const auto &each : cases) {
        const QImage shown = PictureDecoding::upright(flat, each.orientation);
        EXPECT_EQ(shown.size(), each.size) << each.orientation;
        EXPECT_EQ(shown.pixelColor(each.red), QColor(Qt::red)) << each.orientation;
    }
}

// Lines of a scanned text, made smaller, become grey and not a pattern of dots.
TEST(Pictures, BitsBecomeGreys)
{
    QImage bits(200, 200, QImage::Format_Mono);
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 200; ++x)
            bits.setPixel(x, y, static_cast<uint>((x + y) % 2));
    }
    const QImage shown = ReaderFile(png, encoded(bits, "PNG")).picture(1, 50);
    ASSERT_EQ(shown.size(), QSize(50, 50));
    const int grey = qGray(shown.pixel(25, 25));
    EXPECT_GT(grey, 80);
    EXPECT_LT(grey, 180);
}

TEST(Pictures, AreOfThePageAskedFor)
{
    const ReaderFile pdf(QStringLiteral("com.adobe.pdf"), pdfOf({"", "words on the second"}));
    const QImage first = pdf.picture(1, 300);
    const QImage second = pdf.picture(2, 300);
    ASSERT_EQ(std::max(first.width(), first.height()), 300);
    EXPECT_EQ(darkPixels(first), 0);
    EXPECT_GT(darkPixels(second), 20);
    EXPECT_TRUE(pdf.picture(3, 300).isNull());
}

TEST(Pictures, OfDrawingsAreDrawnAtTheSizeAskedFor)
{
    const ReaderFile drawing(QStringLiteral("public.svg-image"),
                             "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10\" height=\"20\">"
                             "<rect width=\"10\" height=\"20\" fill=\"#000\"/></svg>");
    const QImage shown = drawing.picture(1, 200);
    EXPECT_EQ(shown.size(), QSize(100, 200));
    EXPECT_GT(darkPixels(shown), 19'000);
}

// A page may be blank; what is no page, or is broken, has no picture of its words.
TEST(Pictures, OfDocumentsWithoutWordsAreEmptyPages)
{
    const QString text = QStringLiteral("public.plain-text");
    const auto isDrawn = [](const QString &type, const QByteArray &bytes) {
        const ReaderFile file(type, bytes);
        QImage image;
        const bool drawn = TextPage::draw(file.source(), file.read(), 40, image);
        EXPECT_TRUE(!drawn || image.pixelColor(10, 10) == Qt::white);
        return drawn;
    };
    const QString odt = QStringLiteral("org.oasis-open.opendocument.text");
    EXPECT_TRUE(isDrawn(text, {}));
    EXPECT_TRUE(isDrawn(text, " \n\n"));
    EXPECT_TRUE(isDrawn(odt, zipOf({{"content.xml", "<text/>"}})));
    EXPECT_FALSE(isDrawn(odt, "no document"));
    EXPECT_FALSE(isDrawn(QStringLiteral("public.zip-archive"), zipOf({})));
}

TEST(Pictures, AreTheCoversAndPreviewsThatDocumentsHold)
{
    const QByteArray cover = encoded(twoHalves(60, 90), "PNG");
    const QByteArray opf =
        "<package><metadata><meta name=\"cover\" content=\"c\"/></metadata><manifest>"
        "<item id=\"c\" href=\"art/front.png\"/></manifest></package>";
    const ReaderFile book(QStringLiteral("org.idpf.epub-container"),
                          zipOf({{"META-INF/container.xml",
                                  "<container><rootfile full-path=\"OPS/book.opf\"/></container>"},
                                 {"OPS/book.opf", opf},
                                 {"OPS/art/front.png", cover}}));
    EXPECT_EQ(book.picture(1, 90).size(), QSize(60, 90));
    const ReaderFile text(
        QStringLiteral("org.oasis-open.opendocument.text"),
        zipOf({{"content.xml", "<document/>"}, {"Thumbnails/thumbnail.png", cover}}));
    EXPECT_EQ(text.picture(1, 45).size(), QSize(30, 45));
    const ReaderFile without(QStringLiteral("org.oasis-open.opendocument.text"),
                             zipOf({{"content.xml", "<document/>"}}));
    EXPECT_TRUE(without.picture(1, 45).isNull());
}

TEST(Pictures, OfHostileFilesAreRefused)
{
    // A PNG that says it is 300,000 points wide and high.
    QByteArray huge = encoded(twoHalves(4, 4), "PNG");
    huge.replace(16, 8, big32(300'000) + big32(300'000));
    EXPECT_TRUE(ReaderFile(png, huge).picture(1, 100).isNull());
    EXPECT_TRUE(
        ReaderFile(png, encoded(twoHalves(40, 40), "PNG").first(60)).picture(1, 9).isNull());
    EXPECT_TRUE(ReaderFile(QStringLiteral("public.tiff"), "II*").picture(1, 100).isNull());
    EXPECT_TRUE(ReaderFile(QStringLiteral("public.svg-image"),
                           "<!DOCTYPE svg [<!ENTITY a \"aa\"><!ENTITY b \"&a;&a;\">]>"
                           "<svg xmlns=\"http://www.w3.org/2000/svg\"><text>&b;</text></svg>")
                    .picture(1, 100)
                    .isNull());
}
