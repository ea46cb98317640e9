#include "XPPropertyList.h"
#include "XPPropertyListBinary.h"

#include <QVarLengthArray>
#include <QtEndian>
#include <algorithm>
#include <bit>
#include <cmath>
#include <optional>

using namespace XPPropertyListBinary;

namespace {

// Decodes each object once, however often it is referenced; shared ones share their storage.
// So time and memory follow the input's length, while depth and number of values are counted as
// if every reference had its own copy.
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
        enum class State { Unread, BeingRead, Read };
        PropertyValue value;
        qsizetype values = 1; // in the tree below, itself included
        int height = 0;       // containers on the longest way down, itself included
        State state = State::Unread;
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
    const Object *object(quint64 number, qsizetype referencedAt, int depth);
    const Object *child(qsizetype referenceAt, int depth);
    bool readObject(Object &object, qsizetype offset, int depth);
    bool readInteger(Object &object, Header &header);
    bool readReal(Object &object, Header &header);
    bool readDate(Object &object, Header &header);
    bool readString(Object &object, Header &header);
    bool readArray(Object &object, Header &header, int depth);
    bool readDictionary(Object &object, Header &header, int depth);
    bool adopt(Object &parent, const Object &child);

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
    std::optional<XPError> m_error;
};

XPResult<PropertyValue> BinaryReader::read()
{
    const Object *top = readTrailer() ? object(m_top, m_bytes.size() - 16, 0) : nullptr;
    if (!top)
        return *std::move(m_error);
    return top->value;
}

bool BinaryReader::readTrailer()
{
    if (m_bytes.size() > m_limits.bytes)
        return tooLarge("The property list is too long", m_limits.bytes);
    if (!m_bytes.startsWith(QByteArrayView(magic, magicSize)))
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
    if (count > quint64((trailer - m_table) / m_offsetSize))
        return malformed("The offset table is cut off", trailer + trailerObjectCount);
    // A tree within the limit has no more than one key to each value.
    if (qsizetype(count) / 2 > m_limits.objects)
        return tooLarge("Too many objects", trailer + trailerObjectCount);
    m_unclaimed = m_table - magicSize;
    m_objects.resize(qsizetype(count));
    return true;
}

quint64 BinaryReader::bigEndian(qsizetype offset, qsizetype size) const
{
    quint64 result = 0;
    for (qsizetype i = 0; i < size; ++i)
        result = result << 8 | quint8(m_bytes[offset + i]);
    return result;
}

const BinaryReader::Object *BinaryReader::object(quint64 number, qsizetype referencedAt, int depth)
{
    if (number >= quint64(m_objects.size())) {
        malformed("Reference to an object that does not exist", referencedAt);
        return nullptr;
    }
    Object &object = m_objects[qsizetype(number)];
    if (object.state == Object::State::BeingRead) {
        malformed("A container contains itself", referencedAt);
        return nullptr;
    }
    if (object.state == Object::State::Unread) {
        const qsizetype entry = m_table + qsizetype(number) * m_offsetSize;
        const quint64 offset = bigEndian(entry, m_offsetSize);
        if (offset < quint64(magicSize) || offset >= quint64(m_table)) {
            malformed("An object lies outside", entry);
            return nullptr;
        }
        object.state = Object::State::BeingRead;
        if (!readObject(object, qsizetype(offset), depth))
            return nullptr;
        object.state = Object::State::Read;
    } else if (object.height > m_limits.depth - depth) {
        tooLarge("Containers are nested too deeply", referencedAt);
        return nullptr;
    }
    return &object;
}

const BinaryReader::Object *BinaryReader::child(qsizetype referenceAt, int depth)
{
    return object(bigEndian(referenceAt, m_referenceSize), referenceAt, depth);
}

bool BinaryReader::readObject(Object &object, qsizetype offset, int depth)
{
    const quint8 marker = quint8(m_bytes[offset]);
    Header header{offset, quint8(marker & 0xF0), quint8(marker & 0x0F), 0, offset + 1};
    switch (header.kind) {
    case Integer:
        return readInteger(object, header);
    case Real:
        return readReal(object, header);
    case Date:
        return readDate(object, header);
    case Data:
        if (!readCount(header) || !claimPayload(header, 1))
            return false;
        object.value = m_bytes.sliced(header.payload, header.count).toByteArray();
        return true;
    case Ascii:
    case Utf16:
        return readString(object, header);
    case Array:
        return readArray(object, header, depth);
    case Dictionary:
        return readDictionary(object, header, depth);
    default:
        break;
    }
    if (marker != True && marker != False)
        return malformed("An object of an unknown kind", offset);
    object.value = PropertyValue::boolean(marker == True);
    return claimPayload(header, 0);
}

// Reads the count of a string, data or container and moves the payload behind it.
bool BinaryReader::readCount(Header &header)
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
bool BinaryReader::claimPayload(const Header &header, qsizetype unit)
{
    if (unit != 0 && header.count > (m_table - header.payload) / unit)
        return malformed("An object is cut off", header.offset);
    m_unclaimed -= header.payload - header.offset + header.count * unit;
    return m_unclaimed >= 0 || malformed("Objects overlap", header.offset);
}

// One, two and four bytes hold unsigned numbers, eight and sixteen signed ones.
bool BinaryReader::readInteger(Object &object, Header &header)
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
    object.value =
        PropertyValue::integer(qint64(bigEndian(low, std::min<qsizetype>(header.count, 8))));
    return true;
}

bool BinaryReader::readReal(Object &object, Header &header)
{
    header.count = qsizetype(1) << header.low;
    if (header.count != 4 && header.count != 8)
        return malformed("A real of an impossible size", header.offset);
    if (!claimPayload(header, 1))
        return false;
    const quint64 bits = bigEndian(header.payload, header.count);
    object.value =
        PropertyValue::real(header.count == 4 ? double(std::bit_cast<float>(quint32(bits)))
                                              : std::bit_cast<double>(bits));
    return true;
}

bool BinaryReader::readDate(Object &object, Header &header)
{
    header.count = 8;
    if (header.low != 3)
        return malformed("A date of an impossible size", header.offset);
    if (!claimPayload(header, 1))
        return false;
    const double seconds = std::bit_cast<double>(bigEndian(header.payload, 8));
    if (!std::isfinite(seconds))
        return malformed("A date that is no time", header.offset);
    object.value = PropertyValue::Date{seconds};
    return true;
}

static bool isAscii(const char *bytes, qsizetype count)
{
    char all = 0;
    for (qsizetype i = 0; i < count; ++i)
        all = char(all | bytes[i]);
    return (all & 0x80) == 0;
}

bool BinaryReader::readString(Object &object, Header &header)
{
    const bool wide = header.kind == Utf16;
    if (!readCount(header) || !claimPayload(header, wide ? 2 : 1))
        return false;
    const char *bytes = m_bytes.data() + header.payload;
    if (wide) {
        QString text(header.count, Qt::Uninitialized);
        qFromBigEndian<char16_t>(bytes, header.count, text.data());
        object.value = text;
        return true;
    }
    if (!isAscii(bytes, header.count))
        return malformed("An ASCII string with other bytes", header.offset);
    object.value = QString::fromLatin1(bytes, header.count);
    return true;
}

// Counts a child in; false when the tree has become too large.
bool BinaryReader::adopt(Object &parent, const Object &child)
{
    parent.values += child.values;
    parent.height = std::max(parent.height, 1 + child.height);
    return parent.values <= m_limits.objects;
}

bool BinaryReader::readArray(Object &object, Header &header, int depth)
{
    if (depth >= m_limits.depth)
        return tooLarge("Containers are nested too deeply", header.offset);
    if (!readCount(header) || !claimPayload(header, m_referenceSize))
        return false;
    if (header.count >= m_limits.objects)
        return tooLarge("Too many values", header.offset);
    PropertyValue::Array array;
    array.reserve(header.count);
    object.height = 1;
    for (qsizetype i = 0; i < header.count; ++i) {
        const Object *element = child(header.payload + i * m_referenceSize, depth + 1);
        if (!element)
            return false;
        if (!adopt(object, *element))
            return tooLarge("Too many values", header.offset);
        array.append(element->value);
    }
    object.value = array;
    return true;
}

bool BinaryReader::readDictionary(Object &object, Header &header, int depth)
{
    if (depth >= m_limits.depth)
        return tooLarge("Containers are nested too deeply", header.offset);
    if (!readCount(header) || !claimPayload(header, 2 * m_referenceSize))
        return false;
    PropertyValue::Dictionary dictionary;
    object.height = 1;
    for (qsizetype i = 0; i < header.count; ++i) {
        const qsizetype keyAt = header.payload + i * m_referenceSize;
        const Object *key = child(keyAt, depth + 1);
        if (!key)
            return false;
        if (!key->value.isString())
            return malformed("A dictionary key that is no string", keyAt);
        const Object *value = child(keyAt + header.count * m_referenceSize, depth + 1);
        if (!value)
            return false;
        if (!adopt(object, *value))
            return tooLarge("Too many values", header.offset);
        dictionary.insert(dictionary.cend(), key->value.string(), value->value);
        if (dictionary.size() != i + 1)
            return malformed("A dictionary key appears twice", keyAt);
    }
    object.value = dictionary;
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
