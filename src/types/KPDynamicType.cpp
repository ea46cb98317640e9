#include "KPDynamicType.h"

#include "XPPath.h"

#include <array>

static constexpr QStringView prefix = u"dyn.a";
static constexpr char digits[] = "abcdefghkmnpqrstuvwxyz0123456789";
static constexpr int bitsPerDigit = 5;

// What the single characters of the text stand for.
static constexpr struct
{
    char letter = 0;
    QStringView name;
} abbreviations[] = {
    {'0', u"UTTypeConformsTo"},
    {'1', u"public.filename-extension"},
    {'2', u"com.apple.ostype"},
    {'3', u"public.mime-type"},
    {'4', u"com.apple.nspboard-type"},
    {'5', u"public.url-scheme"},
    {'6', u"public.data"},
    {'7', u"public.text"},
    {'8', u"public.plain-text"},
    {'9', u"public.utf16-plain-text"},
    {'A', u"com.apple.traditional-mac-plain-text"},
    {'B', u"public.image"},
    {'C', u"public.video"},
    {'D', u"public.audio"},
    {'E', u"public.directory"},
    {'F', u"public.folder"},
};

static QString base32(const QByteArray &bytes)
{
    QString out = prefix.toString();
    unsigned pending = 0;
    int bits = 0;
    for (const char byte : bytes) {
        pending = (pending << 8 | static_cast<quint8>(byte)) & 0xFFFF;
        for (bits += 8; bits >= bitsPerDigit; bits -= bitsPerDigit)
            out.append(QLatin1Char(digits[pending >> (bits - bitsPerDigit) & 31]));
    }
    if (bits > 0)
        out.append(QLatin1Char(digits[pending << (bitsPerDigit - bits) & 31]));
    return out;
}

static std::optional<QByteArray> fromBase32(QStringView text)
{
    QByteArray out;
    unsigned pending = 0;
    int bits = 0;
    for (const QChar unit : text) {
        const qsizetype value = QByteArrayView(digits).indexOf(unit.toLatin1());
        if (unit.unicode() >= 0x80 || value < 0)
            return {};
        pending = (pending << bitsPerDigit | static_cast<unsigned>(value)) & 0xFFFF;
        bits += bitsPerDigit;
        if (bits >= 8) {
            bits -= 8;
            out.append(static_cast<char>(pending >> bits & 0xFF));
        }
    }
    return out;
}

// Characters with a meaning in the text stand behind a backslash inside a name.
static bool hasMeaning(char c)
{
    return c == '\\' || c == ':' || c == '=' || c == ',' || c == '?';
}

static QString name(const QByteArray &piece, bool isTag)
{
    if (piece.size() == 1 && !isTag) {
        for (const auto &abbreviation : abbreviations) {
            if (abbreviation.letter == piece.front())
                return abbreviation.name.toString();
        }
    }
    return XPPath::decode(piece);
}

namespace {

// One "key=value,value" of the text.
struct Field
{
    QByteArray key;
    QList<QByteArray> values;
};

} // namespace

static std::optional<QList<Field>> fields(const QByteArray &text)
{
    if (!text.startsWith('?'))
        return {};
    QList<Field> result(1);
    QByteArray piece;
    bool inValue = false;
    const auto endPiece = [&] {
        if (inValue)
            result.last().values.append(piece);
        else
            result.last().key = piece;
        piece.clear();
    };
    for (qsizetype i = 1; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\\' && i + 1 < text.size()) {
            piece.append(text[++i]);
        } else if (c == '=' && !inValue) {
            endPiece();
            inValue = true;
        } else if (c == ',' && inValue) {
            endPiece();
        } else if (c == ':') {
            endPiece();
            if (!inValue)
                return {};
            inValue = false;
            result.emplace_back();
        } else {
            piece.append(c);
        }
    }
    endPiece();
    if (!inValue)
        return {};
    return result;
}

QString KPDynamicType::forExtension(const QString &extension)
{
    const QByteArray bytes = XPPath::encode(extension);
    if (bytes.isEmpty())
        return {};
    QByteArray text("?0=6:1=");
    for (const char c : bytes) {
        if (hasMeaning(c))
            text.append('\\');
        text.append(c);
    }
    return base32(text);
}

std::optional<KPDynamicType> KPDynamicType::decode(QStringView identifier)
{
    if (!identifier.startsWith(prefix))
        return {};
    const auto text = fromBase32(identifier.mid(prefix.size()));
    if (!text)
        return {};
    const auto found = fields(*text);
    if (!found)
        return {};
    KPDynamicType type;
    for (const Field &field : *found) {
        const QString key = name(field.key, false);
        if (key == u"UTTypeConformsTo") {
            for (const QByteArray &value : field.values)
                type.conformsTo.append(name(value, false));
        } else if (type.tagClass.isEmpty()) {
            type.tagClass = key;
            type.tag = name(field.values.first(), true);
        }
    }
    if (type.tagClass.isEmpty())
        return {};
    return type;
}

static QString tagOfClass(QStringView identifier, QStringView tagClass)
{
    const auto type = KPDynamicType::decode(identifier);
    return type && type->tagClass == tagClass ? type->tag : QString();
}

QString KPDynamicType::extensionOf(QStringView identifier)
{
    return tagOfClass(identifier, u"public.filename-extension");
}

QString KPDynamicType::osTypeOf(QStringView identifier)
{
    return tagOfClass(identifier, u"com.apple.ostype");
}
