#include "IndexValues.h"

#include <algorithm>
#include <cmath>
#include <cstring>

// A row is a sequence of entries: (name * 4 + origin), then a value. A value is a byte for its
// kind, then its content; whole numbers are written seven bits a byte, the lowest first. Values
// that are no plain ones (dictionaries, nested arrays) stand as a binary property list.

namespace IndexValues {

namespace {

enum Kind : char { Null, False, True, Integer, Real, Date, Text, EmptyText, Data, Array, List };

// Reads forward; after a failure everything reads as zero.
class Bytes
{
public:
    explicit Bytes(QByteArrayView bytes) : m_rest(bytes) {}

    quint64 number()
    {
        quint64 value = 0;
        for (int shift = 0; shift < 64; shift += 7) {
            const auto byte = static_cast<quint8>(fixed<char>());
            value |= quint64{byte & 0x7FU} << shift;
            if (!(byte & 0x80))
                return value;
        }
        m_failed = true;
        return 0;
    }
    template <typename T>
    T fixed()
    {
        T value{};
        const QByteArrayView bytes = take(sizeof(T));
        if (!m_failed)
            std::memcpy(&value, bytes.data(), sizeof(T));
        return value;
    }
    QByteArrayView take(quint64 count)
    {
        if (m_failed || count > static_cast<quint64>(m_rest.size())) {
            m_failed = true;
            return {};
        }
        const QByteArrayView taken = m_rest.first(static_cast<qsizetype>(count));
        m_rest = m_rest.sliced(static_cast<qsizetype>(count));
        return taken;
    }
    QByteArrayView rest() const { return m_rest; }
    bool failed() const { return m_failed; }

private:
    QByteArrayView m_rest;
    bool m_failed = false;
};

} // namespace

static void putNumber(QByteArray &out, quint64 value)
{
    for (; value >= 0x80; value >>= 7)
        out.append(static_cast<char>(value | 0x80));
    out.append(static_cast<char>(value));
}

template <typename T>
static void putFixed(QByteArray &out, Kind kind, T value)
{
    out.append(kind);
    out.append(reinterpret_cast<const char *>(&value), sizeof value);
}

static void putBytes(QByteArray &out, Kind kind, const QByteArray &bytes)
{
    out.append(kind);
    putNumber(out, static_cast<quint64>(bytes.size()));
    out.append(bytes);
}

static void putPropertyList(QByteArray &out, const PropertyValue &value)
{
    if (const auto bytes = XPPropertyList::writeBinary(value, indexValueLimits))
        putBytes(out, List, *bytes);
    else
        out.append(Null);
}

static bool isPlain(const PropertyValue &value)
{
    return !value.isArray() && !value.isDictionary() && !value.isNull();
}

static void putValue(QByteArray &out, const PropertyValue &value, IndexTexts &texts)
{
    switch (value.kind()) {
    case PropertyValue::Kind::Null:
        out.append(Null);
        break;
    case PropertyValue::Kind::Bool:
        out.append(value.boolValue() ? True : False);
        break;
    case PropertyValue::Kind::Integer:
        putFixed(out, Integer, value.integerValue());
        break;
    case PropertyValue::Kind::Real:
        putFixed(out, Real, value.doubleValue());
        break;
    case PropertyValue::Kind::Date:
        putFixed(out, Date, value.date().secondsSince2001);
        break;
    case PropertyValue::Kind::String:
        if (value.string().isEmpty()) {
            out.append(EmptyText);
            break;
        }
        out.append(Text);
        putNumber(out, texts.numberOf(value.string()));
        break;
    case PropertyValue::Kind::Data:
        putBytes(out, Data, value.data());
        break;
    case PropertyValue::Kind::Array:
        if (!std::all_of(value.array().begin(), value.array().end(), isPlain)) {
            putPropertyList(out, value);
            break;
        }
        out.append(Array);
        putNumber(out, static_cast<quint64>(value.array().size()));
        for (const PropertyValue &element : value.array())
            putValue(out, element, texts); // NOLINT(misc-no-recursion): one level, see isPlain()
        break;
    case PropertyValue::Kind::Dictionary:
        putPropertyList(out, value);
        break;
    }
}

void append(QByteArray &out, Origin origin, quint32 name, const PropertyValue &value,
            IndexTexts &texts)
{
    putNumber(out, quint64{name} * 4 + static_cast<quint64>(origin));
    putValue(out, value, texts);
}

// --- Reading

// Passes over one value; `inArray`: where no further array may stand.
static void skipValue(Bytes &in, bool inArray)
{
    switch (in.fixed<char>()) {
    case Null:
    case False:
    case True:
    case EmptyText:
        break;
    case Integer:
    case Real:
    case Date:
        in.take(8);
        break;
    case Text:
        in.number();
        break;
    case Data:
    case List:
        in.take(in.number());
        break;
    case Array:
        if (!inArray) {
            for (quint64 left = in.number(); left > 0 && !in.failed(); --left)
                skipValue(in, true); // NOLINT(misc-no-recursion): one level
            break;
        }
        [[fallthrough]];
    default:
        in.take(~0ULL); // fails
    }
}

bool Reader::next(Entry *entry)
{
    if (m_rest.isEmpty() || m_damaged)
        return false;
    Bytes in(m_rest);
    const quint64 head = in.number();
    const QByteArrayView from = in.rest();
    skipValue(in, false);
    m_damaged = in.failed() || head % 4 >= origins || head / 4 > 0xFFFFFFFFULL;
    if (m_damaged)
        return false;
    entry->origin = static_cast<Origin>(head % 4);
    entry->name = static_cast<quint32>(head / 4);
    entry->value = from.first(from.size() - in.rest().size());
    m_rest = in.rest();
    return true;
}

bool Entry::isPresent() const
{
    if (value[0] == Null || value[0] == EmptyText)
        return false;
    return value[0] != Array || value[1] != 0;
}

static void collectValue(Bytes &in, std::vector<IndexTexts::Number> *texts,
                         std::vector<double> *numbers)
{
    double number = 0;
    switch (in.fixed<char>()) {
    case False:
        break;
    case True:
        number = 1;
        break;
    case Integer:
        number = static_cast<double>(in.fixed<qint64>());
        break;
    case Real:
    case Date:
        number = in.fixed<double>();
        break;
    case Text: {
        const auto text = static_cast<IndexTexts::Number>(in.number());
        if (texts)
            texts->push_back(text);
        return;
    }
    case Array:
        for (quint64 left = in.number(); left > 0 && !in.failed(); --left)
            collectValue(in, texts, numbers); // NOLINT(misc-no-recursion): one level
        return;
    case Data:
    case List:
        in.take(in.number());
        return;
    default:
        return;
    }
    // Not-a-number has no place in an order, and matches nothing.
    if (numbers && !std::isnan(number))
        numbers->push_back(number);
}

void Entry::collect(std::vector<IndexTexts::Number> *texts, std::vector<double> *numbers) const
{
    Bytes in(value);
    collectValue(in, texts, numbers);
}

static PropertyValue decodedValue(Bytes &in, const IndexTexts &texts)
{
    switch (in.fixed<char>()) {
    case False:
        return PropertyValue::boolean(false);
    case True:
        return PropertyValue::boolean(true);
    case Integer:
        return PropertyValue::integer(in.fixed<qint64>());
    case Real:
        return PropertyValue::real(in.fixed<double>());
    case Date:
        return PropertyValue::Date{in.fixed<double>()};
    case Text:
        return texts.text(static_cast<IndexTexts::Number>(in.number()));
    case EmptyText:
        return QString();
    case Data:
        return in.take(in.number()).toByteArray();
    case List: {
        const auto value = XPPropertyList::readBinary(in.take(in.number()), indexValueLimits);
        return value ? *value : PropertyValue();
    }
    case Array: {
        PropertyValue::Array array;
        for (quint64 left = in.number(); left > 0 && !in.failed(); --left)
            array.append(decodedValue(in, texts)); // NOLINT(misc-no-recursion): one level
        return array;
    }
    default:
        return {};
    }
}

PropertyValue Entry::decoded(const IndexTexts &texts) const
{
    Bytes in(value);
    return decodedValue(in, texts);
}

std::vector<Entry> effective(QByteArrayView row)
{
    std::vector<Entry> entries;
    Reader reader(row);
    for (Entry entry; reader.next(&entry);)
        entries.push_back(entry);
    // Stable, and origins come in order: the first of a name is the one that counts.
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry &a, const Entry &b) { return a.name < b.name; });
    const auto end = std::unique(entries.begin(), entries.end(),
                                 [](const Entry &a, const Entry &b) { return a.name == b.name; });
    entries.erase(end, entries.end());
    return entries;
}

bool isSound(QByteArrayView row, quint32 names, quint32 texts)
{
    Reader reader(row);
    std::vector<IndexTexts::Number> used;
    for (Entry entry; reader.next(&entry);) {
        used.clear();
        entry.collect(&used, nullptr);
        if (entry.name >= names ||
            std::any_of(used.begin(), used.end(), [&](auto text) { return text >= texts; }))
            return false;
    }
    return !reader.isDamaged();
}

quint32 Names::numberOf(const QString &name)
{
    if (const auto known = find(name))
        return *known;
    const quint32 number = size();
    m_names.push_back(name);
    m_numbers.insert(name, number);
    return number;
}

std::optional<quint32> Names::find(const QString &name) const
{
    const auto known = m_numbers.constFind(name);
    return known == m_numbers.cend() ? std::nullopt : std::optional(*known);
}

} // namespace IndexValues
