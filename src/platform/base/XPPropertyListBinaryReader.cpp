#include "XPPropertyList.h"
#include "XPPropertyListBinary.h"
#include "XPPropertyListRecentTexts.h"

#include <QVarLengthArray>
#include <QtEndian>
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <list>
#include <memory>
#include <optional>

using namespace XPPropertyListBinary;

namespace {

// Decodes each object once, straight to where it is first referenced; later references copy it
// from there and share its storage. So time and memory follow the input's length, while depth
// and number of values are counted as if every reference had its own copy.
class BinaryReader
{
public:
    BinaryReader(QByteArrayView bytes, const XPPropertyList::Limits &limits)
        : m_bytes(bytes), m_limits(limits)
    {
    }

    XPResult<PropertyValue> read();

private:
    struct Object
    {
        // Where the value was decoded to; it stays there until the reader is done.
        const PropertyValue *value = nullptr;
        qsizetype values = 0; // in the tree below, itself included; 0: not begun
        qsizetype height = 0; // containers on the longest way down, itself included
    };

    // The marker of an object, taken apart.
    struct Header
    {
        qsizetype offset;  // of the marker
        quint8 kind;       // its high bits
        quint8 low;        // its low bits
        qsizetype count;   // of units, for the kinds that have a count
        qsizetype payload; // offset of what follows
    };

    bool readTrailer();
    bool readCount(Header &header);
    bool claimPayload(const Header &header, qsizetype unit);
    const Object *reference(qsizetype referenceAt, int depth, PropertyValue &value);
    const Object *object(quint64 number, qsizetype referencedAt, int depth, PropertyValue &value);
    bool readObject(Object &object, qsizetype offset, int depth, PropertyValue &value);
    bool readInteger(Header &header, PropertyValue &value);
    bool readReal(Header &header, PropertyValue &value);
    bool readDate(Header &header, PropertyValue &value);
    bool readData(Header &header, PropertyValue &value);
    bool readString(Header &header, PropertyValue &value);
    bool decodeText(const Header &header, QChar *to);
    bool readArray(Object &object, Header &header, int depth, PropertyValue &value);
    bool readDictionary(Object &object, Header &header, int depth, PropertyValue &value);
    bool enterContainer(Object &object, Header &header, int depth, qsizetype unit);
    bool adopt(Object &parent, const Object *child, const Header &header);

    quint64 bigEndian(qsizetype offset, qsizetype size) const;
    bool malformed(const char *message, qsizetype offset);
    bool tooLarge(const char *message, qsizetype offset);

    const QByteArrayView m_bytes;
    const XPPropertyList::Limits m_limits;
    qsizetype m_offsetSize = 0;
    qsizetype m_referenceSize = 0;
    qsizetype m_table = 0;     // where the offset table begins and the objects end
    qsizetype m_unclaimed = 0; // bytes of objects that no object read so far has used
    quint64 m_top = 0;
    QVarLengthArray<Object, 16> m_objects;
    std::list<PropertyValue> m_keys; // objects first referenced as a key, which a map copies
    std::optional<XPError> m_error;
};

// Sets a value that is null, so that there is nothing to destroy.
template <typename T>
static void fill(PropertyValue &value, T &&content)
{
    std::construct_at(&value, std::forward<T>(content));
}

XPResult<PropertyValue> BinaryReader::read()
{
    PropertyValue value;
    if (!readTrailer() || !object(m_top, m_bytes.size() - 16, 0, value))
        return *std::move(m_error);
    return value;
}

bool BinaryReader::readTrailer()
{
    if (m_bytes.size() > m_limits.bytes)
        return tooLarge("The property list is too long", m_limits.bytes);
    if (m_bytes.size() < magicSize || std::memcmp(m_bytes.data(), magic, magicSize) != 0)
        return malformed("Not a binary property list", 0);
    const qsizetype trailer = m_bytes.size() - trailerSize;
    if (trailer < magicSize)
        return malformed("The property list is cut off", m_bytes.size());
    m_offsetSize = quint8(m_bytes[trailer + trailerOffsetSize]);
    m_referenceSize = quint8(m_bytes[trailer + trailerReferenceSize]);
    if (m_offsetSize < 1 || m_offsetSize > 8 || m_referenceSize < 1 || m_referenceSize > 8)
        return malformed("Impossible number sizes", trailer + trailerOffsetSize);
    const quint64 count = bigEndian(trailer + trailerObjectCount, 8);
    const quint64 table = bigEndian(trailer + trailerTableOffset, 8);
    m_top = bigEndian(trailer + trailerTopObject, 8);
    if (table < quint64(magicSize) || table > quint64(trailer))
        return malformed("The offset table lies outside", trailer + trailerTableOffset);
    m_table = qsizetype(table);
    if (count > table || count * quint64(m_offsetSize) > quint64(trailer) - table)
        return malformed("The offset table is cut off", trailer + trailerObjectCount);
    // A tree within the limit has no more than one key to each value.
    if (qsizetype(count) / 2 > m_limits.objects)
        return tooLarge("Too many objects", trailer + trailerObjectCount);
    m_unclaimed = m_table - magicSize;
    m_objects.resize(qsizetype(count));
    return true;
}

Q_ALWAYS_INLINE quint64 BinaryReader::bigEndian(qsizetype offset, qsizetype size) const
{
    if (size == 1)
        return quint8(m_bytes[offset]);
    if (size == 8)
        return qFromBigEndian<quint64>(m_bytes.data() + offset);
    quint64 result = 0;
    for (qsizetype i = 0; i < size; ++i)
        result = result << 8 | quint8(m_bytes[offset + i]);
    return result;
}

// Decodes the object to `value`, or copies it there when it has been read before.
const BinaryReader::Object *BinaryReader::object(quint64 number, qsizetype referencedAt, int depth,
                                                 PropertyValue &value)
{
    if (number >= quint64(m_objects.size())) {
        malformed("Reference to an object that does not exist", referencedAt);
        return nullptr;
    }
    Object &object = m_objects[qsizetype(number)];
    if (object.value) {
        if (object.height > m_limits.depth - depth) {
            tooLarge("Containers are nested too deeply", referencedAt);
            return nullptr;
        }
        value = *object.value;
        return &object;
    }
    if (object.values != 0) {
        malformed("A container contains itself", referencedAt);
        return nullptr;
    }
    object.values = 1;
    const qsizetype entry = m_table + qsizetype(number) * m_offsetSize;
    const quint64 offset = bigEndian(entry, m_offsetSize);
    if (offset < quint64(magicSize) || offset >= quint64(m_table)) {
        malformed("An object lies outside", entry);
        return nullptr;
    }
    if (!readObject(object, qsizetype(offset), depth, value))
        return nullptr;
    object.value = &value;
    return &object;
}

const BinaryReader::Object *BinaryReader::reference(qsizetype referenceAt, int depth,
                                                    PropertyValue &value)
{
    return object(bigEndian(referenceAt, m_referenceSize), referenceAt, depth, value);
}

bool BinaryReader::readObject(Object &object, qsizetype offset, int depth, PropertyValue &value)
{
    const quint8 marker = quint8(m_bytes[offset]);
    Header header{offset, quint8(marker & 0xF0), quint8(marker & 0x0F), 0, offset + 1};
    switch (header.kind) {
    case Integer:
        return readInteger(header, value);
    case Real:
        return readReal(header, value);
    case Date:
        return readDate(header, value);
    case Data:
        return readData(header, value);
    case Ascii:
    case Utf16:
        return readString(header, value);
    case Array:
        return readArray(object, header, depth, value);
    case Dictionary:
        return readDictionary(object, header, depth, value);
    default:
        break;
    }
    if (marker != True && marker != False)
        return malformed("An object of an unknown kind", offset);
    value = PropertyValue::boolean(marker == True);
    return claimPayload(header, 0);
}

// Reads the count of a string, data or container and moves the payload behind it.
Q_ALWAYS_INLINE bool BinaryReader::readCount(Header &header)
{
    if (header.low != countFollows) {
        header.count = header.low;
        return true;
    }
    const quint8 marker = header.payload < m_table ? quint8(m_bytes[header.payload]) : 0;
    const qsizetype size = qsizetype(1) << (marker & 0x0F);
    if ((marker & 0xF0) != Integer || size > 8 || size >= m_table - header.payload)
        return malformed("A length that is no number", header.payload);
    const quint64 count = bigEndian(header.payload + 1, size);
    if (count > quint64(m_table))
        return malformed("An object is longer than the property list", header.payload);
    header.count = qsizetype(count);
    header.payload += 1 + size;
    return true;
}

// True when the payload lies within the objects. Distinct objects share no byte in what any
// writer makes; without this rule a few bytes could stand for very many long strings.
Q_ALWAYS_INLINE bool BinaryReader::claimPayload(const Header &header, qsizetype unit)
{
    const qsizetype size = header.count * unit; // a count is no larger than the input
    if (size > m_table - header.payload)
        return malformed("An object is cut off", header.offset);
    m_unclaimed -= header.payload - header.offset + size;
    return m_unclaimed >= 0 || malformed("Objects overlap", header.offset);
}

// One, two and four bytes hold unsigned numbers, eight and sixteen signed ones.
bool BinaryReader::readInteger(Header &header, PropertyValue &value)
{
    header.count = qsizetype(1) << header.low;
    if (header.count > 16)
        return malformed("An integer of an impossible size", header.offset);
    if (!claimPayload(header, 1))
        return false;
    qsizetype low = header.payload;
    if (header.count == 16) {
        low += 8;
        const qint64 high = qint64(bigEndian(header.payload, 8));
        if (high != (qint64(bigEndian(low, 8)) < 0 ? -1 : 0))
            return malformed("An integer of more than 64 bits", header.offset);
    }
    value = PropertyValue::integer(qint64(bigEndian(low, std::min<qsizetype>(header.count, 8))));
    return true;
}

bool BinaryReader::readReal(Header &header, PropertyValue &value)
{
    header.count = qsizetype(1) << header.low;
    if (header.count != 4 && header.count != 8)
        return malformed("A real of an impossible size", header.offset);
    if (!claimPayload(header, 1))
        return false;
    const quint64 bits = bigEndian(header.payload, header.count);
    value = PropertyValue::real(header.count == 4 ? double(std::bit_cast<float>(quint32(bits)))
                                                  : std::bit_cast<double>(bits));
    return true;
}

bool BinaryReader::readDate(Header &header, PropertyValue &value)
{
    header.count = 8;
    if (header.low != 3)
        return malformed("A date of an impossible size", header.offset);
    if (!claimPayload(header, 1))
        return false;
    const double seconds = std::bit_cast<double>(bigEndian(header.payload, 8));
    if (!std::isfinite(seconds))
        return malformed("A date that is no time", header.offset);
    value = PropertyValue::Date{seconds};
    return true;
}

bool BinaryReader::readData(Header &header, PropertyValue &value)
{
    if (!readCount(header) || !claimPayload(header, 1))
        return false;
    value = m_bytes.sliced(header.payload, header.count).toByteArray();
    return true;
}

bool BinaryReader::readString(Header &header, PropertyValue &value)
{
    const qsizetype unit = header.kind == Utf16 ? 2 : 1;
    if (!readCount(header) || !claimPayload(header, unit))
        return false;
    const qsizetype end = header.payload + header.count * unit;
    const QByteArrayView object = m_bytes.sliced(header.offset, end - header.offset);
    auto *recent = XPPropertyListRecentTexts::entryFor(object);
    if (recent && recent->isFor(object)) {
        fill(value, recent->text());
        return true;
    }
    QString text(header.count, Qt::Uninitialized);
    if (!decodeText(header, text.data()))
        return false;
    if (recent)
        recent->set(object, text);
    fill(value, std::move(text));
    return true;
}

bool BinaryReader::decodeText(const Header &header, QChar *to)
{
    const char *from = m_bytes.data() + header.payload;
    if (header.kind == Utf16) {
        qFromBigEndian<char16_t>(from, header.count, to);
        return true;
    }
    char all = 0;
    for (qsizetype i = 0; i < header.count; ++i) {
        all = char(all | from[i]);
        to[i] = QLatin1Char(from[i]);
    }
    return (all & 0x80) == 0 || malformed("An ASCII string with other bytes", header.offset);
}

bool BinaryReader::enterContainer(Object &object, Header &header, int depth, qsizetype unit)
{
    if (depth >= m_limits.depth)
        return tooLarge("Containers are nested too deeply", header.offset);
    if (!readCount(header) || !claimPayload(header, unit))
        return false;
    object.height = 1;
    return header.count < m_limits.objects || tooLarge("Too many values", header.offset);
}

// Counts a child in, when there is one.
Q_ALWAYS_INLINE bool BinaryReader::adopt(Object &parent, const Object *child, const Header &header)
{
    if (!child)
        return false;
    parent.values += child->values;
    parent.height = std::max(parent.height, 1 + child->height);
    return parent.values <= m_limits.objects || tooLarge("Too many values", header.offset);
}

bool BinaryReader::readArray(Object &object, Header &header, int depth, PropertyValue &value)
{
    if (!enterContainer(object, header, depth, m_referenceSize))
        return false;
    PropertyValue::Array array(header.count);
    qsizetype at = header.payload;
    for (PropertyValue &element : array) {
        if (!adopt(object, reference(at, depth + 1, element), header))
            return false;
        at += m_referenceSize;
    }
    fill(value, std::move(array)); // the elements stay where they are
    return true;
}

bool BinaryReader::readDictionary(Object &object, Header &header, int depth, PropertyValue &value)
{
    if (!enterContainer(object, header, depth, 2 * m_referenceSize))
        return false;
    PropertyValue::Dictionary dictionary;
    qsizetype keyAt = header.payload;
    for (qsizetype i = 0; i < header.count; ++i) {
        PropertyValue &key = m_keys.emplace_back();
        if (!reference(keyAt, depth + 1, key))
            return false;
        if (!key.isString())
            return malformed("A dictionary key that is no string", keyAt);
        PropertyValue &element = *dictionary.insert(dictionary.cend(), key.string(), {});
        if (dictionary.size() != i + 1)
            return malformed("A dictionary key appears twice", keyAt);
        const qsizetype valueAt = keyAt + header.count * m_referenceSize;
        if (!adopt(object, reference(valueAt, depth + 1, element), header))
            return false;
        keyAt += m_referenceSize;
    }
    fill(value, std::move(dictionary));
    return true;
}

bool BinaryReader::malformed(const char *message, qsizetype offset)
{
    m_error = XPError::malformed(QString::fromLatin1(message), offset);
    return false;
}

bool BinaryReader::tooLarge(const char *message, qsizetype offset)
{
    m_error = XPError::make(XPError::Kind::TooLarge, QString::fromLatin1(message));
    m_error->offset = offset;
    return false;
}

} // namespace

XPResult<PropertyValue> XPPropertyList::readBinary(QByteArrayView bytes, const Limits &limits)
{
    return BinaryReader(bytes, limits).read();
}
