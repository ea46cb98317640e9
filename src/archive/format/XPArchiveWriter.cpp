#include "XPArchiveWriter.h"

#include "XPArchiveKeys.h"
#include "XPPropertyList.h"

#include <zlib.h>

using namespace XPArchiveKeys;
using Dictionary = PropertyValue::Dictionary;
using Error = std::optional<XPError>;

static constexpr qsizetype bytesOfRecord = 200; // without contents and attributes, about
static constexpr XPPropertyList::Limits limits = {longestMember, 24, 1'000'000, false};

XPArchiveWriter::XPArchiveWriter(int file, bool beside) : m_gzip(file), m_isBeside(beside)
{
    Dictionary header = {{formatKey, formatName}, {versionKey, PropertyValue::integer(version)}};
    if (beside)
        header.insert(besideKey, PropertyValue::boolean(true));
    m_records.append(header);
}

Error XPArchiveWriter::flush()
{
    if (m_records.isEmpty())
        return {};
    const auto bytes = XPPropertyList::writeBinary(m_records, limits);
    m_records.clear();
    m_size = 0;
    return bytes ? m_gzip.add(*bytes) : Error(bytes.error());
}

Error XPArchiveWriter::push(Dictionary record, qsizetype size)
{
    if (m_size + size > longestMember / 2) {
        if (auto error = flush())
            return error;
    }
    m_records.append(std::move(record));
    m_size += size + bytesOfRecord;
    return m_size < fullMember ? Error() : flush();
}

static qsizetype sizeOf(const Dictionary &record)
{
    qsizetype size = record.value(contentsKey).data().size();
    const Dictionary attributes = record.value(attributesKey).dictionary();
    for (auto each = attributes.begin(); each != attributes.end(); ++each)
        size += each.key().size() + XPArchivedFile::bytesOf(each.value()).size();
    return size;
}

Error XPArchiveWriter::begin(const XPArchivedFile &file, bool isPart)
{
    m_record = file.toRecord(isPart);
    m_isPart = isPart;
    m_checksum = 0;
    if (file.kind == XPArchivedFile::Kind::File)
        return {};
    const qsizetype size = sizeOf(m_record);
    return push(std::exchange(m_record, {}), size);
}

Error XPArchiveWriter::begin(const XPArchivedFile &document)
{
    return begin(document, false);
}

Error XPArchiveWriter::beginPart(const XPArchivedFile &part)
{
    return begin(part, true);
}

Error XPArchiveWriter::addContents(const QByteArray &bytes)
{
    Error error;
    if (m_record.contains(contentsKey)) {
        m_record.insert(moreKey, PropertyValue::boolean(true));
        const qsizetype size = sizeOf(m_record);
        error = push(std::exchange(m_record, {}), size);
    }
    m_checksum =
        static_cast<quint32>(::crc32(m_checksum, reinterpret_cast<const Bytef *>(bytes.constData()),
                                     static_cast<uInt>(bytes.size())));
    m_record.insert(contentsKey, bytes);
    return error;
}

Error XPArchiveWriter::end(bool dropped)
{
    if (dropped)
        m_record.insert(droppedKey, PropertyValue::boolean(true));
    else if (!m_isBeside)
        m_record.insert(checksumKey, PropertyValue::integer(m_checksum));
    if (!m_isPart && !dropped)
        ++m_documents;
    const qsizetype size = sizeOf(m_record);
    return push(std::exchange(m_record, {}), size);
}

Error XPArchiveWriter::endPackage(bool dropped)
{
    Dictionary record = {{endKey, endOfPackage}};
    if (dropped)
        record.insert(droppedKey, PropertyValue::boolean(true));
    else
        ++m_documents;
    return push(record, 0);
}

Error XPArchiveWriter::finish()
{
    const Dictionary record = {{endKey, endOfArchive},
                               {documentsKey, PropertyValue::integer(m_documents)}};
    const auto error = push(record, 0);
    return error ? error : flush();
}
