#include "XPPropertyList.h"
#include "XPPropertyListBinary.h"

#include <QHash>
#include <QVarLengthArray>
#include <QtEndian>
#include <algorithm>
#include <bit>
#include <cmath>

using namespace XPPropertyListBinary;

namespace {

// Which object holds a text. A few texts are compared one by one: cheaper than hashing them.
class TextNumbers
{
public:
    // The number known for the text; else `number`, which is remembered.
    qsizetype findOrInsert(QStringView text, qsizetype number);

private:
    struct Known
    {
        QStringView text;
        qsizetype number = 0;
    };
    QVarLengthArray<Known, 16> m_few;
    QHash<QStringView, qsizetype> m_many;
};

qsizetype TextNumbers::findOrInsert(QStringView text, qsizetype number)
{
    if (m_many.isEmpty()) {
        for (const Known &known : m_few) {
            if (known.text == text)
                return known.number;
        }
        if (m_few.size() < m_few.capacity()) {
            m_few.append({text, number});
            return number;
        }
        for (const Known &known : m_few)
            m_many.insert(known.text, known.number);
    }
    const auto known = m_many.constFind(text);
    if (known != m_many.constEnd())
        return *known;
    m_many.insert(text, number);
    return number;
}

// First numbers all objects, parents before children, then writes them in that order.
class BinaryWriter
{
public:
    explicit BinaryWriter(const XPPropertyList::Limits &limits) : m_limits(limits) {}

    XPResult<QByteArray> write(const PropertyValue &value);

private:
    struct Object
    {
        const PropertyValue *value = nullptr; // nothing for a string
        QStringView text;                     // the string
        qsizetype firstReference = 0;         // of a container, in m_references
    };

    bool number(const PropertyValue &value, int depth, qsizetype reference);
    bool numberText(const QString &text, qsizetype reference);
    bool numberContainer(const PropertyValue &value, int depth, qsizetype reference);
    bool account(qsizetype bytes);
    void writeObject(const Object &object);
    void writeText(QStringView text);
    void writeInteger(qint64 value);
    void writeReferences(const Object &object, qsizetype count);
    void writeCounted(quint8 kind, qsizetype count);
    void writeNumber(quint64 value, qsizetype size);
    void writeTrailer();
    bool fail(XPError::Kind kind, const char *message);

    const XPPropertyList::Limits m_limits;
    QVarLengthArray<Object, 16> m_objects;
    QVarLengthArray<qsizetype, 32> m_references;
    QVarLengthArray<qsizetype, 32> m_offsets;
    TextNumbers m_texts;
    qsizetype m_values = 0;
    qsizetype m_atLeast = 0; // bytes that the output will surely have
    qsizetype m_referenceSize = 1;
    QByteArray m_output;
    std::optional<XPError> m_error;
};

// The sizes that all readers take; others are allowed but rare.
static qsizetype sizeFor(quint64 value)
{
    if (value <= 0xFF)
        return 1;
    if (value <= 0xFFFF)
        return 2;
    return value <= 0xFFFFFFFF ? 4 : 8;
}

XPResult<QByteArray> BinaryWriter::write(const PropertyValue &value)
{
    m_references.append(0);
    if (!number(value, 0, 0))
        return *std::move(m_error);
    m_referenceSize = sizeFor(quint64(m_objects.size()));
    // Room for markers and counts, the offset table and the trailer.
    m_output.reserve(m_atLeast + m_references.size() * m_referenceSize + m_objects.size() * 13 +
                     40);
    m_output.append(magic, magicSize);
    for (const Object &object : m_objects) {
        m_offsets.append(m_output.size());
        writeObject(object);
    }
    writeTrailer();
    if (m_output.size() > m_limits.bytes) {
        fail(XPError::Kind::TooLarge, "The property list is too long");
        return *std::move(m_error);
    }
    return m_output;
}

bool BinaryWriter::number(const PropertyValue &value, int depth, qsizetype reference)
{
    if (++m_values > m_limits.objects)
        return fail(XPError::Kind::TooLarge, "Too many values");
    switch (value.kind()) {
    case PropertyValue::Kind::Null:
        return fail(XPError::Kind::InvalidArgument, "Nothing cannot be stored in a property list");
    case PropertyValue::Kind::String:
        return numberText(value.string(), reference);
    case PropertyValue::Kind::Array:
    case PropertyValue::Kind::Dictionary:
        return numberContainer(value, depth, reference);
    case PropertyValue::Kind::Date:
        if (!std::isfinite(value.date().secondsSince2001))
            return fail(XPError::Kind::InvalidArgument, "A date that is no time");
        break;
    default:
        break;
    }
    m_references[reference] = m_objects.size();
    m_objects.append({&value, {}});
    return account(value.data().size());
}

bool BinaryWriter::numberText(const QString &text, qsizetype reference)
{
    const qsizetype number = m_texts.findOrInsert(text, m_objects.size());
    m_references[reference] = number;
    if (number != m_objects.size())
        return true;
    if (m_limits.portable && !text.isValidUtf16())
        return fail(XPError::Kind::InvalidArgument, "A text that is no valid Unicode");
    m_objects.append({nullptr, text});
    return account(text.size());
}

bool BinaryWriter::numberContainer(const PropertyValue &value, int depth, qsizetype reference)
{
    if (depth >= m_limits.depth)
        return fail(XPError::Kind::InvalidArgument, "Containers are nested too deeply");
    const PropertyValue::Dictionary &dictionary = value.dictionary();
    const qsizetype count = value.array().size() + 2 * dictionary.size();
    qsizetype next = m_references.size();
    m_references[reference] = m_objects.size();
    m_objects.append({&value, {}, next});
    if (!account(count))
        return false;
    for (qsizetype i = 0; i < count; ++i) // resize() would grow by just as much, each time
        m_references.append(0);
    for (const PropertyValue &element : value.array()) {
        if (!number(element, depth + 1, next++))
            return false;
    }
    for (auto it = dictionary.keyBegin(); it != dictionary.keyEnd(); ++it) {
        if (!numberText(*it, next++))
            return false;
    }
    for (const PropertyValue &element : dictionary) {
        if (!number(element, depth + 1, next++))
            return false;
    }
    return true;
}

// Stops early, before a tree that shares its parts grows out of bounds.
bool BinaryWriter::account(qsizetype bytes)
{
    m_atLeast += 1 + bytes;
    return m_atLeast <= m_limits.bytes ||
           fail(XPError::Kind::TooLarge, "The property list is too long");
}

void BinaryWriter::writeObject(const Object &object)
{
    if (!object.value)
        return writeText(object.text);
    const PropertyValue &value = *object.value;
    switch (value.kind()) {
    case PropertyValue::Kind::Bool:
        m_output.append(char(value.boolValue() ? True : False));
        break;
    case PropertyValue::Kind::Integer:
        writeInteger(value.integerValue());
        break;
    case PropertyValue::Kind::Real:
        m_output.append(char(Real | 3));
        writeNumber(std::bit_cast<quint64>(value.doubleValue()), 8);
        break;
    case PropertyValue::Kind::Date:
        m_output.append(char(Date | 3));
        writeNumber(std::bit_cast<quint64>(value.date().secondsSince2001), 8);
        break;
    case PropertyValue::Kind::Data:
        writeCounted(Data, value.data().size());
        m_output.append(value.data());
        break;
    case PropertyValue::Kind::Array:
        writeCounted(Array, value.array().size());
        writeReferences(object, value.array().size());
        break;
    case PropertyValue::Kind::Dictionary:
        writeCounted(Dictionary, value.dictionary().size());
        writeReferences(object, 2 * value.dictionary().size());
        break;
    case PropertyValue::Kind::Null:
    case PropertyValue::Kind::String:
        Q_UNREACHABLE();
    }
}

void BinaryWriter::writeText(QStringView text)
{
    const bool ascii =
        std::all_of(text.begin(), text.end(), [](QChar c) { return c < QChar(0x80); });
    writeCounted(ascii ? Ascii : Utf16, text.size());
    const qsizetype start = m_output.size();
    m_output.resize(start + text.size() * (ascii ? 1 : 2));
    char *to = m_output.data() + start;
    if (ascii)
        std::transform(text.begin(), text.end(), to, [](QChar c) { return c.toLatin1(); });
    else
        qToBigEndian<char16_t>(text.utf16(), text.size(), to);
}

// Up to four bytes hold unsigned numbers, so a negative one takes eight.
void BinaryWriter::writeInteger(qint64 value)
{
    const qsizetype size = sizeFor(quint64(value));
    m_output.append(char(Integer | std::countr_zero(quint64(size))));
    writeNumber(quint64(value), size);
}

void BinaryWriter::writeReferences(const Object &object, qsizetype count)
{
    for (qsizetype i = 0; i < count; ++i)
        writeNumber(quint64(m_references[object.firstReference + i]), m_referenceSize);
}

void BinaryWriter::writeCounted(quint8 kind, qsizetype count)
{
    m_output.append(char(kind | std::min<qsizetype>(count, countFollows)));
    if (count >= countFollows)
        writeInteger(count);
}

void BinaryWriter::writeNumber(quint64 value, qsizetype size)
{
    char bytes[8];
    qToBigEndian(value, bytes);
    m_output.append(bytes + 8 - size, size);
}

void BinaryWriter::writeTrailer()
{
    const qsizetype table = m_output.size();
    const qsizetype offsetSize = sizeFor(quint64(table));
    for (const qsizetype offset : m_offsets)
        writeNumber(quint64(offset), offsetSize);
    m_output.append(trailerPadding, '\0');
    m_output.append(char(offsetSize));
    m_output.append(char(m_referenceSize));
    writeNumber(quint64(m_objects.size()), 8);
    writeNumber(0, 8); // the top object comes first
    writeNumber(quint64(table), 8);
}

bool BinaryWriter::fail(XPError::Kind kind, const char *message)
{
    m_error = XPError::make(kind, QString::fromLatin1(message));
    return false;
}

} // namespace

XPResult<QByteArray> XPPropertyList::writeBinary(const PropertyValue &value, const Limits &limits)
{
    return BinaryWriter(limits).write(value);
}
