#include "XPArchiveReader.h"
#include "XPArchiveWriter.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

using What = XPArchiveReader::What;
using Kind = XPError::Kind;
using Dictionary = PropertyValue::Dictionary;

namespace {

XPFileDescriptor newFile()
{
    return XPFileDescriptor(::memfd_create("archive", MFD_CLOEXEC));
}

QString text(const char *bytes)
{
    return QString::fromUtf8(bytes);
}

const Dictionary header = {{text("format"), text("com.brindle.murn.documents")},
                           {text("version"), PropertyValue::integer(1)}};
const Dictionary end = {{text("end"), text("archive")},
                        {text("documents"), PropertyValue::integer(0)}};

// A document "x" of one byte, without a checksum yet.
Dictionary document(const PropertyValue &path)
{
    return {{text("path"), path},
            {text("size"), PropertyValue::integer(1)},
            {text("contents"), QByteArray("x")},
            {text("crc32"), PropertyValue::integer(0x8cdc1683)}};
}

// What reading it through ends with; nothing: the end of the archive.
std::optional<XPError> readThrough(int file, QByteArray *contents = nullptr)
{
    auto opened = XPArchiveReader::open(file, {});
    if (!opened)
        return opened.error();
    XPArchiveReader reader = std::move(opened).value();
    for (;;) {
        const auto event = reader.next();
        if (!event)
            return event.error();
        if (contents != nullptr)
            *contents += event->file.path.toUtf8() + event->bytes;
        if (event->what == What::EndArchive)
            return {};
    }
}

std::optional<XPError> readRecords(const PropertyValue::Array &records)
{
    const XPFileDescriptor file = newFile();
    XPGzipWriter gzip(file.get());
    EXPECT_FALSE(gzip.add(*XPPropertyList::writeBinary(records)));
    return readThrough(file.get());
}

QByteArray wholeArchive()
{
    const XPFileDescriptor file = newFile();
    XPArchiveWriter writer(file.get(), false);
    XPArchivedFile one;
    one.path = text("one.txt");
    one.size = 5;
    one.attributes = {{text("a"), QByteArray("raw")}, {text("b"), QStringList{text("tag")}}};
    EXPECT_FALSE(writer.begin(one));
    EXPECT_FALSE(writer.addContents("he"));
    EXPECT_FALSE(writer.addContents("llo"));
    EXPECT_FALSE(writer.end());
    XPArchivedFile package;
    package.path = text("p.rtfd");
    package.kind = XPArchivedFile::Kind::Package;
    EXPECT_FALSE(writer.begin(package));
    XPArchivedFile part;
    part.path = XPPath::decode("odd\xff");
    EXPECT_FALSE(writer.beginPart(part));
    EXPECT_FALSE(writer.end());
    EXPECT_FALSE(writer.endPackage());
    EXPECT_FALSE(writer.finish());
    QByteArray bytes(::lseek(file.get(), 0, SEEK_END), Qt::Uninitialized);
    EXPECT_EQ(::pread(file.get(), bytes.data(), static_cast<size_t>(bytes.size()), 0),
              bytes.size());
    return bytes;
}

std::optional<XPError> readBytes(const QByteArray &bytes, QByteArray *contents = nullptr)
{
    const XPFileDescriptor file = newFile();
    EXPECT_EQ(::write(file.get(), bytes.constData(), static_cast<size_t>(bytes.size())),
              bytes.size());
    return readThrough(file.get(), contents);
}

struct Hostile
{
    const char *name;
    PropertyValue::Array records;
    Kind kind = Kind::Malformed;
};

class HostileArchive : public testing::TestWithParam<Hostile>
{
};

Dictionary with(Dictionary record, const char *key, const PropertyValue &value)
{
    record.insert(text(key), value);
    return record;
}

} // namespace

TEST(XPArchive, GivesBackWhatWasWritten)
{
    QByteArray found;
    const QByteArray bytes = wholeArchive();
    EXPECT_FALSE(readBytes(bytes, &found));
    EXPECT_EQ(found.left(18), "one.txthellop.rtfd");
    const XPFileDescriptor file = newFile();
    ASSERT_EQ(::write(file.get(), bytes.constData(), static_cast<size_t>(bytes.size())),
              bytes.size());
    auto reader = std::move(XPArchiveReader::open(file.get(), {})).value();
    const auto first = reader.next();
    EXPECT_EQ(XPArchivedFile::bytesOf(first->file.attributes.value(text("a"))), "raw");
    EXPECT_EQ(first->file.attributes.value(text("b")).strings(), QStringList{text("tag")});
}

TEST(XPArchive, RefusesOneThatIsCutAnywhere)
{
    const QByteArray whole = wholeArchive();
    EXPECT_FALSE(readBytes(whole));
    for (qsizetype size = 0; size < whole.size(); ++size)
        EXPECT_TRUE(readBytes(whole.first(size))) << size;
    EXPECT_TRUE(readBytes(whole + 'x'));
    EXPECT_TRUE(readBytes(whole + whole));
}

// Some bits mean nothing: those behind the end of what is compressed.
TEST(XPArchive, RefusesOneThatIsAlteredAnywhere)
{
    const QByteArray whole = wholeArchive();
    QByteArray expected;
    EXPECT_FALSE(readBytes(whole, &expected));
    constexpr qsizetype headerOfGzip = 10; // time and system in it mean nothing
    for (qsizetype at = headerOfGzip; at < whole.size(); ++at) {
        QByteArray altered = whole;
        altered[at] = static_cast<char>(altered[at] ^ 0x10);
        QByteArray contents;
        EXPECT_TRUE(readBytes(altered, &contents) || contents == expected) << at;
    }
}

TEST(XPArchive, StopsAtAMemberThatGrowsBeyondBounds)
{
    const XPFileDescriptor file = newFile();
    XPGzipWriter gzip(file.get());
    EXPECT_FALSE(gzip.add(*XPPropertyList::writeBinary(PropertyValue::Array{header})));
    EXPECT_FALSE(gzip.add(QByteArray(64 << 20, '\0')));
    EXPECT_EQ(readThrough(file.get())->kind, Kind::TooLarge);
}

TEST_P(HostileArchive, IsRefused)
{
    const auto error = readRecords(GetParam().records);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind, GetParam().kind) << error->message.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Faults, HostileArchive,
    testing::Values(
        Hostile{"Newer", {with(header, "version", PropertyValue::integer(2))}, Kind::Unsupported},
        Hostile{"OtherFormat", {with(header, "format", text("else"))}},
        Hostile{"NoRecord", {header, text("text"), end}},
        Hostile{"Above", {header, document(text("../x")), end}},
        Hostile{"AboveInside", {header, document(text("a/../../x")), end}},
        Hostile{"Absolute", {header, document(text("/etc/x")), end}},
        Hostile{"Hidden", {header, document(text(".config/x")), end}},
        Hostile{"EmptyName", {header, document(text("a//x")), end}},
        Hostile{"NoPath", {header, document(QByteArray()), end}},
        Hostile{"Nul", {header, document(QByteArray("a\0b", 3)), end}},
        Hostile{"LongName", {header, document(QString(256, u'a')), end}},
        Hostile{"Link", {header, with(document(text("x")), "kind", text("link")), end}},
        Hostile{"Longer", {header, with(document(text("x")), "contents", QByteArray("xy")), end}},
        Hostile{"Shorter", {header, with(document(text("x")), "contents", QByteArray()), end}},
        Hostile{"OtherChecksum",
                {header, with(document(text("x")), "crc32", PropertyValue::integer(7)), end}},
        Hostile{"NegativeSize",
                {header, with(document(text("x")), "size", PropertyValue::integer(-1)), end}},
        Hostile{
            "LongAttribute",
            {header,
             with(document(text("x")), "attributes", Dictionary{{QString(300, u'a'), text("b")}}),
             end}},
        Hostile{"OtherCount", {header, document(text("x")), end}},
        Hostile{"PartOutside", {header, Dictionary{{text("part"), text("x")}}, end}},
        Hostile{
            "EndInPackage",
            {header, Dictionary{{text("path"), text("x")}, {text("kind"), text("package")}}, end}},
        Hostile{"AfterEnd", {header, end, end}}, Hostile{"NoEnd", {header}}),
    [](const auto &row) { return row.param.name; });
