#include "ReaderDocuments.h"

#include <QBuffer>
#include <QImage>
#include <exiv2/exiv2.hpp>

// Formats of binary records: older office documents, PDF, pictures, sound and film.

// --- Older office documents

static const QString docType = QStringLiteral("com.microsoft.word.doc");

// The head of a "WordDocument" stream whose piece table lies at the start of the table stream.
static QByteArray wordHead(quint16 flags, qsizetype tableSize)
{
    QByteArray head = little16(0xA5EC) + QByteArray(8, '\0') + little16(flags);
    head.append(418 - head.size(), '\0');
    head += little32(0) + little32(static_cast<quint32>(tableSize));
    return head.append(512 - head.size(), '\0');
}

static QByteArray summary()
{
    const auto text = [](const QByteArray &value) {
        return little32(30) + little32(static_cast<quint32>(value.size() + 1)) + value + '\0';
    };
    const QList<std::pair<quint32, QByteArray>> properties = {
        {1, little32(2) + little32(1252)},
        {2, text("Dry d\xF6"
                 "ck")},
        {4, text("Nora")},
        {5, text("ship; dock")},
        {12, little32(64) + little32(0x887ff180) + little32(0x1da6cce)},
        {14, little32(3) + little32(4)},
        {18, text("Writer")}};
    QByteArray places;
    QByteArray values;
    const qsizetype head = 8 + 8 * properties.size();
    for (const auto &[id, value] : properties) {
        places += little32(id) + little32(static_cast<quint32>(head + values.size()));
        values += value;
    }
    const QByteArray set = little32(static_cast<quint32>(head + values.size())) +
                           little32(static_cast<quint32>(properties.size())) + places + values;
    return little16(0xFFFE) + QByteArray(22, '\0') + little32(1) + QByteArray(16, '\0') +
           little32(48) + set;
}

static QByteArray record(quint16 type, const QByteArray &contents)
{
    return little16(type) + little16(static_cast<quint16>(contents.size())) + contents;
}

TEST(OleReader, ReadsPiecesOfText)
{
    const QByteArray narrow = "Gr\xFC\xDF"
                              "e \x13 LINK x \x14shown\x15\rcell\x07two\x07\x07";
    const QString second = QStringLiteral("\u0416\r");
    const auto first = static_cast<quint32>(narrow.size());
    const auto last = first + static_cast<quint32>(second.size());
    const QByteArray pieces = little32(0) + little32(first) + little32(last) + little16(0) +
                              little32(0x40000000 | 512 * 2) + little16(0) + little16(0) +
                              little32(512 + first + 1) + little16(0);
    const QByteArray table =
        "\1" + little16(2) + "xx\2" + little32(static_cast<quint32>(pieces.size())) + pieces;
    const QByteArray file =
        compoundOf({{QStringLiteral("WordDocument"),
                     wordHead(0x0200, table.size()) + narrow + '\0' + wide(second)},
                    {QStringLiteral("1Table"), table},
                    {QStringLiteral("\u0005SummaryInformation"), summary()}});
    expectRead(
        {{"word",
          docType,
          file,
          QStringLiteral("Dry d\u00F6ck"),
          QStringLiteral("Gr\u00FC\u00DFe shown\ncell\ttwo\t\t\u0416"),
          {{QStringLiteral("kMDItemAuthors"), QStringLiteral("Nora")},
           {QStringLiteral("kMDItemKeywords"), QStringLiteral("ship | dock")},
           {QStringLiteral("kMDItemCreator"), QStringLiteral("Writer")},
           {QStringLiteral("kMDItemContentCreationDate"), QStringLiteral("2024-03-02T18:22:07Z")}},
          4}});
}

TEST(OleReader, ReadsStringsThatRunOverRecords)
{
    const QByteArray begin = record(0x0809, little16(0x0600) + little16(5) + QByteArray(12, '\0'));
    // "Total" is cut after three characters and goes on as UTF-16; the second has formatting.
    const QByteArray strings =
        record(0x00FC, little32(2) + little32(2) + little16(5) + '\0' + "Tot") +
        record(0x003C, "\1" + wide(QStringLiteral("\u0430l")) + little16(4) + '\x08' + little16(1) +
                           "Flat" + little32(7));
    const auto cell = [](quint16 row, quint16 column) {
        return little16(row) + little16(column) + little16(0);
    };
    const double number = 3.25;
    const QByteArray real(reinterpret_cast<const char *>(&number), sizeof number);
    const QByteArray workbook =
        begin + record(0x0085, little32(0) + little16(0) + "\5" + '\0' + "Costs") + strings +
        record(0x000A, {}) + begin + record(0x00FD, cell(0, 0) + little32(1)) +
        record(0x0203, cell(0, 1) + real) + record(0x00FD, cell(1, 0) + little32(0)) +
        record(0x027E, cell(1, 1) + little32(150 << 2 | 3)) +
        record(0x0006, cell(2, 0) + QByteArray(6, '\0') + little16(0xFFFF)) +
        record(0x0207, little16(2) + '\0' + "ok");
    expectRead({{"sheet",
                 QStringLiteral("com.microsoft.excel.xls"),
                 compoundOf({{QStringLiteral("Workbook"), workbook}}),
                 {},
                 QStringLiteral("Costs\n\nFlat\t3.25\nTot\u0430l\t1.5\tok"),
                 {},
                 1}});
}

TEST(OleReader, ReadsSlidesAndMessages)
{
    const auto atom = [](quint16 version, quint16 type, const QByteArray &contents) {
        return little16(version) + little16(type) +
               little32(static_cast<quint32>(contents.size())) + contents;
    };
    const QByteArray presentation =
        atom(0xF, 1006, atom(0xF, 4080, atom(0, 4000, wide(QStringLiteral("\u00DCber\v uns"))))) +
        atom(0xF, 1006, atom(0, 4008, "two"));
    expectRead({{"slides",
                 QStringLiteral("com.microsoft.powerpoint.ppt"),
                 compoundOf({{QStringLiteral("PowerPoint Document"), presentation}}),
                 {},
                 QStringLiteral("\u00DCber\n uns\ntwo"),
                 {},
                 2}});
}

// --- PDF

TEST(PdfReader, ReadsPagesAndInformation)
{
    const QByteArray pdf =
        pdfOf({"The dry dock", "Second page"},
              "/Title(Dry dock)/Author(Nora, Per)/Keywords(ship; dock)/Subject(Repairs)/Creator"
              "(Writer)/CreationDate(D:20240302192207+01'00')");
    expectRead(
        {{"pdf",
          QStringLiteral("com.adobe.pdf"),
          pdf,
          QStringLiteral("Dry dock"),
          QStringLiteral("The dry dock\n\nSecond page"),
          {{QStringLiteral("kMDItemAuthors"), QStringLiteral("Nora | Per")},
           {QStringLiteral("kMDItemKeywords"), QStringLiteral("ship | dock")},
           {QStringLiteral("kMDItemSubject"), QStringLiteral("Repairs")},
           {QStringLiteral("kMDItemCreator"), QStringLiteral("Writer")},
           {QStringLiteral("kMDItemPageWidth"), QStringLiteral("300")},
           {QStringLiteral("kMDItemPageHeight"), QStringLiteral("200")},
           {QStringLiteral("kMDItemContentCreationDate"), QStringLiteral("2024-03-02T18:22:07Z")}},
          2}});
}

// --- Pictures

static QByteArray pictureOf(const char *format)
{
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QBuffer buffer;
    image.save(&buffer, format);
    return buffer.data();
}

static const QByteArray packet =
    "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-"
    "syntax-ns#\"><rdf:Description rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\">"
    "<dc:subject><rdf:Bag><rdf:li>beacon</rdf:li><rdf:li>coast</rdf:li></rdf:Bag></dc:subject>"
    "</rdf:Description></rdf:RDF></x:xmpmeta>";

static QByteArray describedPicture()
{
    const QByteArray plain = pictureOf("JPEG");
    auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte *>(plain.constData()),
                                           static_cast<long>(plain.size()));
    image->readMetadata();
    Exiv2::ExifData &exif = image->exifData();
    exif["Exif.Image.Make"] = "Maker";
    exif["Exif.Image.Model"] = "Box 1";
    exif["Exif.Image.Artist"] = "Nora";
    exif["Exif.Image.Orientation"] = uint16_t{6};
    exif["Exif.Photo.DateTimeOriginal"] = "2024:03:02 19:22:07";
    exif["Exif.Photo.OffsetTimeOriginal"] = "+01:00";
    exif["Exif.Photo.FNumber"] = Exiv2::Rational(28, 10);
    exif["Exif.GPSInfo.GPSLatitude"] = "54/1 30/1 0/1";
    exif["Exif.GPSInfo.GPSLatitudeRef"] = "S";
    exif["Exif.GPSInfo.GPSLongitude"] = "10/1 15/1 0/1";
    exif["Exif.GPSInfo.GPSLongitudeRef"] = "E";
    Exiv2::IptcData &iptc = image->iptcData();
    iptc["Iptc.Envelope.CharacterSet"] = "\x1B%G";
    iptc["Iptc.Application2.ObjectName"] = "L\xC3\xBC"
                                           "beck light";
    for (const char *word : {"tower", "sea"}) {
        auto value = Exiv2::Value::create(Exiv2::string);
        value->read(word);
        iptc.add(Exiv2::IptcKey("Iptc.Application2.Keywords"), value.get());
    }
    image->setXmpPacket(packet.toStdString());
    image->writeXmpFromPacket(true);
    image->writeMetadata();
    Exiv2::BasicIo &io = image->io();
    io.open();
    QByteArray bytes(static_cast<qsizetype>(io.size()), '\0');
    io.read(reinterpret_cast<Exiv2::byte *>(bytes.data()), static_cast<long>(bytes.size()));
    return bytes;
}

TEST(ImageReader, ReadsSizesAndWhatPeopleWrote)
{
    const QMap<QString, QString> size = {
        {QStringLiteral("kMDItemPixelWidth"), QStringLiteral("40")},
        {QStringLiteral("kMDItemPixelHeight"), QStringLiteral("30")}};
    QMap<QString, QString> all = size;
    all.insert(
        {{QStringLiteral("kMDItemOrientation"), QStringLiteral("1")},
         {QStringLiteral("kMDItemAcquisitionMake"), QStringLiteral("Maker")},
         {QStringLiteral("kMDItemAcquisitionModel"), QStringLiteral("Box 1")},
         {QStringLiteral("kMDItemAuthors"), QStringLiteral("Nora")},
         {QStringLiteral("kMDItemFNumber"), QStringLiteral("2.8")},
         {QStringLiteral("kMDItemLatitude"), QStringLiteral("-54.5")},
         {QStringLiteral("kMDItemLongitude"), QStringLiteral("10.25")},
         {QStringLiteral("kMDItemKeywords"), QStringLiteral("tower | sea")},
         {QStringLiteral("kMDItemKXXMPKeywords"), QStringLiteral("beacon | coast")},
         {QStringLiteral("kMDItemContentCreationDate"), QStringLiteral("2024-03-02T18:22:07Z")}});
    expectRead({
        {"described",
         QStringLiteral("public.jpeg"),
         describedPicture(),
         QStringLiteral("L\u00FCbeck light"),
         {},
         all,
         0},
        {"png", QStringLiteral("public.png"), pictureOf("PNG"), {}, {}, size, 0},
        {"bmp", QStringLiteral("com.microsoft.bmp"), pictureOf("BMP"), {}, {}, size, 0},
        {"ppm", QStringLiteral("public.pbm"), pictureOf("PPM"), {}, {}, size, 0},
        {"called otherwise", QStringLiteral("public.png"), pictureOf("JPEG"), {}, {}, size, 0},
        {"svg", QStringLiteral("public.svg-image"),
         "<?xml version=\"1.0\"?><!DOCTYPE svg PUBLIC \"-//W3C//DTD SVG 1.1//EN\" "
         "\"http://x/y.dtd\">"
         "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"40px\" viewBox=\"0 0 40 "
         "30\"><title>Plan"
         "</title><g><title>part</title><text x=\"1\">Dry <tspan>dock</tspan></text></g></svg>",
         QStringLiteral("Plan"), QStringLiteral("Plan\npart\nDry dock"), size, 0},
    });
}

// Only headers are looked at, so a size is a fact like another.
TEST(ImageReader, ReadsTheSizeOfAnyPicture)
{
    QByteArray png = pictureOf("PNG");
    png.replace(16, 8, big32(300'000) + big32(300'000));
    expectRead({{"huge",
                 QStringLiteral("public.png"),
                 png,
                 {},
                 {},
                 {{QStringLiteral("kMDItemPixelWidth"), QStringLiteral("300000")}},
                 0}});
}

TEST(TiffReader, CountsPages)
{
    // Three directories of a picture of 40 × 30 with one strip each, linked into a list.
    QByteArray tiff = "II" + little16(42) + little32(8);
    for (int page = 0; page < 3; ++page) {
        const auto next = page == 2 ? 0U : static_cast<quint32>(tiff.size() + 2 + 9 * 12 + 4);
        const auto field = [](quint16 tag, quint16 value) {
            return little16(tag) + little16(3) + little32(1) + little32(value);
        };
        tiff += little16(9) + field(256, 40) + field(257, 30) + field(258, 8) + field(259, 1) +
                field(262, 1) + field(273, 8) + field(277, 1) + field(278, 30) + field(279, 1) +
                little32(next);
    }
    expectRead({{"tiff",
                 QStringLiteral("public.tiff"),
                 tiff,
                 {},
                 {},
                 {{QStringLiteral("kMDItemPixelWidth"), QStringLiteral("40")}},
                 3}});
}

// --- Sound and film

static QByteArray box(const QByteArray &type, const QByteArray &contents)
{
    return big32(static_cast<quint32>(contents.size() + 8)) + type + contents;
}

static QByteArray film()
{
    const QByteArray movie = big32(0) + big32(2'082'844'800U + 1'709'403'727) + big32(0) +
                             big32(1000) + big32(2500) + QByteArray(80, '\0');
    QByteArray track = big32(0) + QByteArray(36, '\0');
    track += big32(0) + big32(0x10000) + QByteArray(28, '\0'); // turned by a quarter
    track += big32(640 << 16) + big32(480 << 16);
    return box("ftyp", "isom" + big32(0)) +
           box("moov", box("mvhd", movie) + box("trak", box("tkhd", track)));
}

static QByteArray matroska()
{
    const auto piece = [](const QByteArray &id, const QByteArray &contents) {
        return QByteArray(id + static_cast<char>(0x80 | contents.size()) + contents);
    };
    const QByteArray info = piece("\x2A\xD7\xB1", QByteArray("\x0F\x42\x40", 3)) +
                            piece("\x44\x89", big32(0x451C4000)) + piece("\x7B\xA9", "Tides");
    const QByteArray video =
        piece("\xB0", QByteArray("\x02\x80", 2)) + piece("\xBA", QByteArray("\x01\xE0", 2));
    return piece("\x1A\x45\xDF\xA3", piece("\x42\x82", "webm")) + "\x18\x53\x80\x67\xFF" +
           piece("\x15\x49\xA9\x66", info) +
           piece("\x16\x54\xAE\x6B", piece("\xAE", piece("\xE0", video))) + "\x1F\x43\xB6\x75\xFF";
}

static QByteArray sound()
{
    const auto chunk = [](const QByteArray &type, const QByteArray &contents) {
        return QByteArray(type + little32(static_cast<quint32>(contents.size())) + contents);
    };
    const QByteArray waves =
        "WAVE" +
        chunk("fmt ", little16(1) + little16(1) + little32(8000) + little32(8000) + little16(1) +
                          little16(8)) +
        chunk("LIST", "INFO" + chunk("INAM", "Fog horn") + chunk("IART", "Coast Guard ")) +
        chunk("data", QByteArray(16000, '\x80'));
    return chunk("RIFF", waves);
}

TEST(MediaReader, ReadsHeadersAndTags)
{
    const auto duration = [](const char *seconds) {
        return QMap<QString, QString>{
            {QStringLiteral("kMDItemDurationSeconds"), QString::fromLatin1(seconds)}};
    };
    QMap<QString, QString> filmFacts = duration("2.5");
    filmFacts.insert(
        {{QStringLiteral("kMDItemPixelWidth"), QStringLiteral("640")},
         {QStringLiteral("kMDItemOrientation"), QStringLiteral("1")},
         {QStringLiteral("kMDItemContentCreationDate"), QStringLiteral("2024-03-02T18:22:07Z")}});
    QMap<QString, QString> tides = duration("2.5");
    tides.insert(QStringLiteral("kMDItemPixelHeight"), QStringLiteral("480"));
    QMap<QString, QString> horn = duration("2");
    horn.insert(QStringLiteral("kMDItemAuthors"), QStringLiteral("Coast Guard"));
    expectRead({
        {"film", QStringLiteral("public.mpeg-4"), film(), {}, {}, filmFacts, 0},
        {"matroska",
         QStringLiteral("org.webmproject.webm"),
         matroska(),
         QStringLiteral("Tides"),
         {},
         tides,
         0},
        {"wave",
         QStringLiteral("com.microsoft.waveform-audio"),
         sound(),
         QStringLiteral("Fog horn"),
         {},
         horn,
         0},
    });
}
