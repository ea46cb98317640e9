#include "XPAliasRecord.h"

#include "XPPath.h"

#include <QtEndian>

namespace {
constexpr qsizetype headSize = 150; // of version 2
constexpr qsizetype versionAt = 6;
constexpr quint16 version = 2;
constexpr quint16 pathTag = 18;
constexpr quint16 mountTag = 19;
constexpr quint16 endTag = 0xFFFF;
} // namespace

static quint16 number(QByteArrayView record, qsizetype at)
{
    return qFromBigEndian<quint16>(record.data() + at);
}

static XPError malformed(qsizetype offset)
{
    return XPError::malformed(QStringLiteral("not an alias record that names a path"), offset);
}

XPResult<QString> XPAliasRecord::path(QByteArrayView record)
{
    if (record.size() < headSize || number(record, versionAt) != version)
        return malformed(0);
    QByteArray onVolume;
    QByteArray mountPoint;
    qsizetype at = headSize;
    while (at + 4 <= record.size() && number(record, at) != endTag) {
        const quint16 tag = number(record, at);
        const qsizetype size = number(record, at + 2);
        at += 4;
        if (at + size > record.size())
            return malformed(at);
        if (tag == pathTag)
            onVolume = record.sliced(at, size).toByteArray();
        else if (tag == mountTag)
            mountPoint = record.sliced(at, size).toByteArray();
        at += size + size % 2; // fields begin at even offsets
    }
    if (onVolume.isEmpty() || onVolume.contains('\0') || mountPoint.contains('\0'))
        return malformed(at);
    return XPPath::absolute(XPPath::decode('/' + mountPoint + '/' + onVolume));
}
