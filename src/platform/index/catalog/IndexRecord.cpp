#include "IndexRecord.h"

#include <QDataStream>
#include <QIODevice>
#include <QStringList>

// Qt's stream with a fixed version: bounded reads, a sticky status, no layout of our own to
// keep. Attributes travel as one binary property list, empty ones as an empty array.

static void setUp(QDataStream &stream)
{
    stream.setVersion(QDataStream::Qt_6_0);
    stream.setByteOrder(QDataStream::LittleEndian);
}

// A value that cannot be kept costs itself, not those beside it.
static QByteArray bytesOf(const IndexRecord::Attributes &attributes)
{
    const auto all = XPPropertyList::writeBinary(PropertyValue(attributes), indexValueLimits);
    if (all)
        return *all;
    IndexRecord::Attributes kept = attributes;
    kept.removeIf([](const std::pair<const QString &, PropertyValue &> &entry) {
        return !XPPropertyList::writeBinary(
            PropertyValue(IndexRecord::Attributes{{entry.first, entry.second}}), indexValueLimits);
    });
    const auto rest = XPPropertyList::writeBinary(PropertyValue(kept), indexValueLimits);
    return rest ? *rest : QByteArray();
}

static void write(QDataStream &out, const IndexRecord::Attributes &attributes)
{
    out << (attributes.isEmpty() ? QByteArray() : bytesOf(attributes));
}

static bool read(QDataStream &in, IndexRecord::Attributes &attributes)
{
    QByteArray bytes;
    in >> bytes;
    attributes.clear();
    if (in.status() != QDataStream::Ok || bytes.isEmpty())
        return in.status() == QDataStream::Ok;
    const auto value = XPPropertyList::readBinary(bytes, indexValueLimits);
    if (!value || !value->isDictionary())
        return false;
    attributes = value->dictionary();
    return true;
}

static void write(QDataStream &out, const XPFileInfo &info)
{
    out << info.mode << info.size << info.modified << info.changed << info.birth << info.device
        << info.inode << info.links;
}

static void read(QDataStream &in, XPFileInfo &info)
{
    in >> info.mode >> info.size >> info.modified >> info.changed >> info.birth >> info.device >>
        info.inode >> info.links;
}

static void write(QDataStream &out, const IndexChange &change)
{
    const IndexRecord &record = change.record;
    out << static_cast<quint8>(change.kind) << record.item;
    switch (change.kind) {
    case IndexChange::Kind::Put:
        out << record.parent << record.name << record.type.toUtf8();
        write(out, record.info);
        write(out, record.attributes);
        break;
    case IndexChange::Kind::Move:
        out << record.parent << record.name << record.type.toUtf8();
        write(out, record.info);
        break;
    case IndexChange::Kind::Remove:
        break;
    case IndexChange::Kind::Import:
        write(out, record.imported);
        out << record.importedModified << record.importedSize;
        break;
    case IndexChange::Kind::Attribute: {
        // A property list holds no null, which takes an attribute away.
        IndexRecord::Attributes given = record.attributes;
        QStringList taken;
        for (auto entry = record.attributes.begin(); entry != record.attributes.end(); ++entry) {
            if (entry->isNull()) {
                taken.append(entry.key());
                given.remove(entry.key());
            }
        }
        out << taken;
        write(out, given);
        break;
    }
    }
}

static bool read(QDataStream &in, IndexChange &change)
{
    quint8 kind = 0;
    in >> kind >> change.record.item;
    if (in.status() != QDataStream::Ok || kind < static_cast<quint8>(IndexChange::Kind::Put) ||
        kind > static_cast<quint8>(IndexChange::Kind::Attribute))
        return false;
    change.kind = static_cast<IndexChange::Kind>(kind);
    IndexRecord &record = change.record;
    QByteArray type;
    switch (change.kind) {
    case IndexChange::Kind::Put:
        in >> record.parent >> record.name >> type;
        record.type = QString::fromUtf8(type);
        read(in, record.info);
        return read(in, record.attributes);
    case IndexChange::Kind::Move:
        in >> record.parent >> record.name >> type;
        record.type = QString::fromUtf8(type);
        read(in, record.info);
        break;
    case IndexChange::Kind::Remove:
        break;
    case IndexChange::Kind::Import:
        if (!read(in, record.imported))
            return false;
        in >> record.importedModified >> record.importedSize;
        break;
    case IndexChange::Kind::Attribute: {
        QStringList taken;
        in >> taken;
        if (!read(in, record.attributes))
            return false;
        for (const QString &name : taken)
            record.attributes.insert(name, PropertyValue());
        break;
    }
    }
    return in.status() == QDataStream::Ok;
}

QByteArray encodeIndexBatch(const IndexBatch &batch)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    setUp(out);
    out << static_cast<quint32>(batch.size());
    for (const IndexChange &change : batch)
        write(out, change);
    return bytes;
}

XPResult<IndexBatch> decodeIndexBatch(QByteArrayView bytes)
{
    const QByteArray raw = QByteArray::fromRawData(bytes.data(), bytes.size());
    QDataStream in(raw);
    setUp(in);
    quint32 count = 0;
    in >> count;
    IndexBatch batch;
    for (quint32 i = 0; i < count; ++i) {
        IndexChange change;
        if (!read(in, change))
            return XPError::malformed(QStringLiteral("damaged change in the index's journal"),
                                      in.device()->pos());
        batch.push_back(std::move(change));
    }
    if (in.status() != QDataStream::Ok || !in.atEnd())
        return XPError::malformed(QStringLiteral("damaged batch in the index's journal"),
                                  in.device()->pos());
    return batch;
}
