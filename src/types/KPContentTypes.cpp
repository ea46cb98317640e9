#include "KPContentTypes.h"

#include "ContentTypeTable.h"
#include "KPDynamicType.h"
#include "KPMimeTypes.h"

#include <algorithm>
#include <atomic>

namespace Table = ContentTypeTable;

static_assert(Table::extensionCount < KPContentTypes::maximumExtensions);

static QStringView view(Table::Text text)
{
    return {Table::text + text.offset, text.size};
}

// Refers to the constant text: no allocation, no reference count that threads would share.
static QString constantString(Table::Text text)
{
    return QString::fromRawData(reinterpret_cast<const QChar *>(Table::text + text.offset),
                                text.size);
}

static std::span<const quint16> span(Table::List list)
{
    return {Table::lists + list.offset, list.size};
}

static constexpr char16_t lowerAscii(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20) : unit;
}

static bool equalIgnoringAsciiCase(QStringView text, QStringView other)
{
    return text.size() == other.size() &&
           std::equal(text.begin(), text.end(), other.begin(), [](QChar a, QChar b) {
               return lowerAscii(a.unicode()) == lowerAscii(b.unicode());
           });
}

static quint32 hashOf(QStringView text)
{
    quint32 hash = 2166136261U;
    for (const QChar unit : text)
        hash = (hash ^ lowerAscii(unit.unicode())) * 16777619U;
    return hash;
}

// The number whose name is `text`, 0 when there is none.
template <size_t size, typename NameOf>
static quint16 find(const quint16 (&slots)[size], QStringView text, NameOf nameOf)
{
    static_assert((size & (size - 1)) == 0);
    for (size_t place = hashOf(text) & (size - 1); slots[place] != 0;
         place = (place + 1) & (size - 1)) {
        if (equalIgnoringAsciiCase(view(nameOf(slots[place])), text))
            return slots[place];
    }
    return 0;
}

namespace {

// Numbers of pooled identifiers by their address: written once per declared type, never moved,
// read without locks. Pooled strings live as long as the process.
class PooledNumbers
{
public:
    KPContentTypes::Number find(const QChar *text, bool *known) const
    {
        for (size_t place = placeOf(text);; place = (place + 1) & mask) {
            const QChar *key = m_slots[place].key.load(std::memory_order_acquire);
            if (key == text) {
                const auto number = m_slots[place].number.load(std::memory_order_acquire);
                *known = number != 0; // 0: claimed by a writer that is not through yet
                return number;
            }
            if (!key)
                return 0;
        }
    }

    void insert(const QChar *text, KPContentTypes::Number number)
    {
        for (size_t place = placeOf(text);; place = (place + 1) & mask) {
            const QChar *key = nullptr;
            if (m_slots[place].key.compare_exchange_strong(key, text) || key == text) {
                m_slots[place].number.store(number, std::memory_order_release);
                return;
            }
        }
    }

private:
    // At most half full: each declared type has one pooled text per spelling, and identifiers in
    // another case than the table's are not entered.
    static constexpr size_t size = Table::identifierSlotCount * 2;
    static constexpr size_t mask = size - 1;

    static size_t placeOf(const QChar *text)
    {
        const auto bits = reinterpret_cast<quintptr>(text);
        return static_cast<size_t>((bits * 0x9E3779B97F4A7C15ULL) >> 32) & mask;
    }

    struct Slot
    {
        std::atomic<const QChar *> key = nullptr;
        std::atomic<KPContentTypes::Number> number = 0;
    };
    Slot m_slots[size];
};

} // namespace

static constinit PooledNumbers pooledNumbers;

KPContentTypes::Number KPContentTypes::count()
{
    return Table::typeCount;
}

KPContentTypes::Number KPContentTypes::numberOf(QStringView identifier)
{
    return find(Table::identifierSlots, identifier,
                [](quint16 number) { return Table::types[number].identifier; });
}

KPContentTypes::Number KPContentTypes::numberOf(KPPooledString identifier)
{
    bool known = false;
    Number number = pooledNumbers.find(identifier.data(), &known);
    if (known)
        return number;
    number = numberOf(identifier.view());
    if (number != none && view(Table::types[number].identifier) == identifier.view())
        pooledNumbers.insert(identifier.data(), number);
    return number;
}

QString KPContentTypes::identifier(Number type)
{
    return type == none ? QString() : constantString(Table::types[type].identifier);
}

QString KPContentTypes::description(Number type)
{
    return type == none ? QString() : constantString(Table::types[type].description);
}

bool KPContentTypes::conforms(Number type, Number other)
{
    const quint64 word = Table::conformance[type * Table::wordsPerRow + other / 64];
    return (word >> (other % 64)) & 1;
}

bool KPContentTypes::isOfFolders(Number type)
{
    static const Number directory = numberOf(u"public.directory");
    return conforms(type, directory);
}

std::span<const KPContentTypes::Number> KPContentTypes::parents(Number type)
{
    return span(Table::types[type].parents);
}

std::span<const KPContentTypes::Number> KPContentTypes::ancestors(Number type)
{
    return span(Table::types[type].ancestors);
}

static QStringList names(Table::List list, const Table::Tag *tags)
{
    QStringList result;
    for (const quint16 number : span(list))
        result.append(constantString(tags[number].name));
    return result;
}

static QString firstName(Table::List list, const Table::Tag *tags)
{
    return list.size == 0 ? QString() : constantString(tags[span(list).front()].name);
}

QString KPContentTypes::preferredExtension(Number type)
{
    return firstName(Table::types[type].extensions, Table::extensions);
}

QStringList KPContentTypes::extensions(Number type)
{
    return names(Table::types[type].extensions, Table::extensions);
}

QString KPContentTypes::preferredMimeType(Number type)
{
    return firstName(Table::types[type].mimeTypes, Table::mimeTypes);
}

QStringList KPContentTypes::mimeTypes(Number type)
{
    return names(Table::types[type].mimeTypes, Table::mimeTypes);
}

quint16 KPContentTypes::extensionNumber(QStringView extension)
{
    return find(Table::extensionSlots, extension,
                [](quint16 number) { return Table::extensions[number].name; });
}

std::span<const KPContentTypes::Number> KPContentTypes::typesForExtensionNumber(quint16 number)
{
    return span(Table::extensions[number].types);
}

std::span<const KPContentTypes::Number> KPContentTypes::typesForExtension(QStringView extension)
{
    return typesForExtensionNumber(extensionNumber(extension));
}

std::span<const KPContentTypes::Number> KPContentTypes::typesForMimeType(QStringView mimeType)
{
    const quint16 number =
        find(Table::mimeTypeSlots, mimeType, [](quint16 n) { return Table::mimeTypes[n].name; });
    return span(Table::mimeTypes[number].types);
}

KPContentTypes::Number KPContentTypes::typeForOSType(QStringView code)
{
    const QByteArray bytes = code.toLatin1();
    if (bytes.size() != 4)
        return none;
    quint32 value = 0;
    for (const char byte : bytes)
        value = value << 8 | static_cast<quint8>(byte);
    const auto *end = std::end(Table::osTypes);
    const auto *found =
        std::lower_bound(std::begin(Table::osTypes), end, value,
                         [](const Table::OSType &a, quint32 b) { return a.code < b; });
    return found != end && found->code == value ? found->type : none;
}

static void appendWithAncestors(QStringList &tree, KPContentTypes::Number type)
{
    const auto append = [&tree](KPContentTypes::Number number) {
        const QString name = KPContentTypes::identifier(number);
        if (number != KPContentTypes::none && !tree.contains(name))
            tree.append(name);
    };
    append(type);
    std::ranges::for_each(KPContentTypes::ancestors(type), append);
}

QStringList KPContentTypes::typeTree(const QString &identifier)
{
    if (identifier.isEmpty())
        return {};
    QStringList tree{identifier};
    if (const Number number = numberOf(identifier); number != none) {
        tree.clear();
        appendWithAncestors(tree, number);
    } else if (const auto dynamic = KPDynamicType::decode(identifier)) {
        if (dynamic->tagClass == u"public.filename-extension")
            for (const Number parent : KPMimeTypes::typesForExtension(dynamic->tag))
                appendWithAncestors(tree, parent);
        for (const QString &parent : dynamic->conformsTo)
            appendWithAncestors(tree, numberOf(parent));
    }
    return tree;
}

bool KPContentTypes::conformsTo(const QString &identifier, const QString &other)
{
    const Number type = numberOf(identifier);
    const Number parent = numberOf(other);
    if (type != none && parent != none)
        return conforms(type, parent);
    return typeTree(identifier).contains(other);
}
