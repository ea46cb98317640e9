#include "ReaderDocuments.h"

#include <QDateTime>
#include <QtEndian>
#include <archive.h>
#include <archive_entry.h>

QString factText(const PropertyValue &value)
{
    switch (value.kind()) {
    case PropertyValue::Kind::String:
        return value.string();
    case PropertyValue::Kind::Array:
        return value.strings().join(QStringLiteral(" | "));
    case PropertyValue::Kind::Date:
        return QDateTime::fromMSecsSinceEpoch(
                   static_cast<qint64>(value.date().secondsSince1970() * 1000), Qt::UTC)
            .toString(Qt::ISODate);
    default:
        return QString::number(value.doubleValue(), 'g', 10);
    }
}

void expectRead(const QList<ReaderCase> &cases)
{
    for (const ReaderCase &row : cases) {
        const DocumentAnswer answer = ReaderFile(row.type, row.bytes).read();
        EXPECT_EQ(answer.failure, std::nullopt) << row.name;
        EXPECT_EQ(answer.title.toStdString(), row.title.toStdString()) << row.name;
        EXPECT_EQ(answer.text.utf8().toStdString(), row.text.toStdString()) << row.name;
        EXPECT_EQ(answer.pages, row.pages) << row.name;
        for (const auto &[key, value] : row.facts.asKeyValueRange()) {
            EXPECT_EQ(factText(answer.attributes.value(key)).toStdString(), value.toStdString())
                << row.name << ": " << key.toStdString();
        }
    }
}

using Files = QList<std::pair<QByteArray, QByteArray>>;

static QByteArray packed(const Files &files, int (*setFormat)(archive *),
                         int (*addFilter)(archive *) = archive_write_add_filter_none)
{
    qsizetype room = 64 << 10;
    for (const auto &[name, bytes] : files)
        room += bytes.size() + 2 * name.size() + 4096;
    QByteArray zip(room, '\0');
    size_t used = 0;
    archive *writer = archive_write_new();
    setFormat(writer);
    addFilter(writer);
    archive_write_set_bytes_in_last_block(writer, 1);
    archive_write_open_memory(writer, zip.data(), static_cast<size_t>(room), &used);
    for (const auto &[name, bytes] : files) {
        archive_entry *entry = archive_entry_new();
        archive_entry_set_pathname(entry, name.constData());
        archive_entry_set_size(entry, bytes.size());
        archive_entry_set_filetype(entry, AE_IFREG);
        archive_write_header(writer, entry);
        archive_write_data(writer, bytes.constData(), static_cast<size_t>(bytes.size()));
        archive_entry_free(entry);
    }
    archive_write_close(writer);
    archive_write_free(writer);
    zip.truncate(static_cast<qsizetype>(used));
    return zip;
}

QByteArray zipOf(const Files &files)
{
    return packed(files, archive_write_set_format_zip);
}

QByteArray sevenZipOf(const Files &files)
{
    return packed(files, archive_write_set_format_7zip);
}

QByteArray tarballOf(const Files &files)
{
    return packed(files, archive_write_set_format_pax_restricted, archive_write_add_filter_gzip);
}

QByteArray little16(quint16 value)
{
    return QByteArray(reinterpret_cast<const char *>(&value), 2);
}

QByteArray little32(quint32 value)
{
    return little16(static_cast<quint16>(value)) + little16(static_cast<quint16>(value >> 16));
}

QByteArray big32(quint32 value)
{
    return little32(qbswap(value));
}

QByteArray wide(const QString &text)
{
    QByteArray bytes;
    for (const QChar c : text)
        bytes += little16(c.unicode());
    return bytes;
}

// Sector 0 is the table, 1 … the directory, the streams follow. None is small: each is filled up to
// 4096 bytes in its entry, and its reader must stop at the end of what means something.
QByteArray compoundOf(const QList<std::pair<QString, QByteArray>> &streams)
{
    constexpr qsizetype sector = 512;
    constexpr quint32 end = 0xFFFFFFFE;
    const auto padded = [](QByteArray bytes, qsizetype size) {
        return bytes.append((size - bytes.size() % size) % size, '\0');
    };
    const qsizetype directorySectors = (streams.size() + 1 + 3) / 4;
    QList<quint32> table = {0xFFFFFFFD};
    const auto addChain = [&table](qsizetype sectors) {
        const auto start = static_cast<quint32>(table.size());
        for (qsizetype i = 1; i <= sectors; ++i)
            table.append(i == sectors ? end : static_cast<quint32>(start + i));
        return start;
    };
    addChain(directorySectors);
    const auto entry = [](const QString &name, char kind, quint32 right, quint32 child,
                          quint32 start, qsizetype size) {
        QByteArray bytes = wide(name);
        bytes.append(64 - bytes.size(), '\0');
        bytes += little16(static_cast<quint16>(2 * name.size() + 2)) + kind + '\1';
        bytes += little32(~0U) + little32(right) + little32(child);
        bytes.append(36, '\0');
        return bytes + little32(start) + little32(static_cast<quint32>(size)) + little32(0);
    };
    QByteArray directory =
        entry(QStringLiteral("Root Entry"), 5, ~0U, streams.isEmpty() ? ~0U : 1, end, 0);
    QByteArray contents;
    for (qsizetype i = 0; i < streams.size(); ++i) {
        const QByteArray bytes = padded(streams[i].second, 4096);
        const quint32 start = addChain(bytes.size() / sector);
        const quint32 next = i + 1 == streams.size() ? ~0U : static_cast<quint32>(i + 2);
        directory += entry(streams[i].first, 2, next, ~0U, start, bytes.size());
        contents += bytes;
    }
    QByteArray header("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
    header.append(16, '\0');
    header += little16(0x3E) + little16(3) + little16(0xFFFE) + little16(9) + little16(6);
    header.append(10, '\0');
    header += little32(1) + little32(1) + little32(0) + little32(4096) + little32(end) +
              little32(0) + little32(end) + little32(0) + little32(0);
    header.append(sector - header.size(), '\xFF');
    QByteArray tableBytes;
    for (const quint32 number : table)
        tableBytes += little32(number);
    tableBytes.append(sector - tableBytes.size(), '\xFF');
    return header + tableBytes + padded(directory, sector) + contents;
}

QByteArray pdfOf(const QList<QByteArray> &lines, const QByteArray &info)
{
    QList<QByteArray> objects = {"<</Type/Catalog/Pages 2 0 R>>",
                                 {},
                                 "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>",
                                 "<<" + info + ">>"};
    QByteArray kids;
    for (const QByteArray &line : lines) {
        const QByteArray content = "BT /F1 12 Tf 20 100 Td (" + line + ") Tj ET";
        objects.append("<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 200]/Resources<</Font<</F1 3 0 "
                       "R>>>>/Contents " +
                       QByteArray::number(objects.size() + 2) + " 0 R>>");
        kids += QByteArray::number(objects.size()) + " 0 R ";
        objects.append("<</Length " + QByteArray::number(content.size()) + ">>stream\n" + content +
                       "\nendstream");
    }
    objects[1] =
        "<</Type/Pages/Kids[" + kids + "]/Count " + QByteArray::number(lines.size()) + ">>";
    QByteArray pdf = "%PDF-1.5\n";
    QByteArray table;
    for (qsizetype i = 0; i < objects.size(); ++i) {
        table += QByteArray::number(pdf.size()).rightJustified(10, '0') + " 00000 n \n";
        pdf += QByteArray::number(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const QByteArray size = QByteArray::number(objects.size() + 1);
    return pdf + "xref\n0 " + size + "\n0000000000 65535 f \n" + table + "trailer<</Size " + size +
           "/Root 1 0 R/Info 4 0 R>>\nstartxref\n" + QByteArray::number(pdf.size()) + "\n%%EOF\n";
}
