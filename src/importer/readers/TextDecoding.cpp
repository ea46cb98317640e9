#include "TextDecoding.h"

#include <QStringDecoder>
#include <algorithm>
#include <memory>
#include <optional>
#include <uchardet/uchardet.h>
#include <unicode/ucnv.h>

static constexpr qsizetype longestLine = 1000;
static constexpr qsizetype judgedBytes = 64 << 10;

// --- Encodings

static std::optional<QString> decodeWith(QByteArrayView bytes, const char *encoding)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(encoding, &status),
                                                                       &ucnv_close);
    if (U_FAILURE(status) || !converter)
        return {};
    QString text(bytes.size() * 2 + 16, Qt::Uninitialized);
    const char *source = bytes.data();
    auto *target = reinterpret_cast<UChar *>(text.data());
    UChar *end = target;
    while (true) {
        ucnv_toUnicode(converter.get(), &end, reinterpret_cast<UChar *>(text.data()) + text.size(),
                       &source, bytes.data() + bytes.size(), nullptr, true, &status);
        const qsizetype used = end - reinterpret_cast<UChar *>(text.data());
        if (status != U_BUFFER_OVERFLOW_ERROR) {
            text.truncate(used);
            return U_FAILURE(status) ? std::nullopt : std::optional(text);
        }
        status = U_ZERO_ERROR;
        text.resize(text.size() * 2);
        end = reinterpret_cast<UChar *>(text.data()) + used;
    }
}

// Without a last character that a limit cut in two.
static QByteArrayView withoutCutCharacter(QByteArrayView bytes)
{
    qsizetype start = bytes.size();
    while (start > 0 && bytes.size() - start < 4 &&
           (static_cast<uchar>(bytes[start - 1]) & 0xC0) == 0x80)
        --start;
    if (start == 0 || static_cast<uchar>(bytes[start - 1]) < 0xC0)
        return bytes;
    const auto lead = static_cast<uchar>(bytes[start - 1]);
    const qsizetype length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    return bytes.size() - start + 1 < length ? bytes.first(start - 1) : bytes;
}

// UTF-16 without a mark: every second byte of western text is zero.
static const char *unmarkedWide(QByteArrayView bytes)
{
    const qsizetype judged = std::min<qsizetype>(bytes.size(), 4096) & ~qsizetype{1};
    if (judged < 8)
        return nullptr;
    qsizetype zeros[2] = {0, 0};
    for (qsizetype at = 0; at < judged; ++at)
        zeros[at & 1] += bytes[at] == '\0';
    if (zeros[1] * 10 > judged * 4 && zeros[0] * 50 < judged)
        return "UTF-16LE";
    return zeros[0] * 10 > judged * 4 && zeros[1] * 50 < judged ? "UTF-16BE" : nullptr;
}

static QByteArray guessed(QByteArrayView bytes)
{
    const std::unique_ptr<std::remove_pointer_t<uchardet_t>, decltype(&uchardet_delete)> detector(
        uchardet_new(), &uchardet_delete);
    const QByteArrayView judged = bytes.first(std::min(bytes.size(), judgedBytes));
    if (uchardet_handle_data(detector.get(), judged.data(), static_cast<size_t>(judged.size())) !=
        0)
        return {};
    uchardet_data_end(detector.get());
    return uchardet_get_charset(detector.get());
}

QString TextDecoding::detect(QByteArrayView bytes, bool isCut)
{
    const auto marked = QStringConverter::encodingForData(bytes);
    if (marked && *marked != QStringConverter::Utf8)
        return QStringDecoder(*marked)(bytes);
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes = bytes.sliced(3);
    if (const char *wide = unmarkedWide(bytes))
        return decodeWith(bytes, wide).value_or(QString());
    if (isCut)
        bytes = withoutCutCharacter(bytes);
    if (bytes.isValidUtf8())
        return QString::fromUtf8(bytes);
    // Few letters above ASCII decide nothing: then it is the encoding most used in the west.
    constexpr qsizetype fewest = 6;
    const auto isHigh = [](char c) { return static_cast<uchar>(c) >= 0x80; };
    const QByteArray name =
        std::count_if(bytes.begin(), bytes.end(), isHigh) < fewest ? QByteArray() : guessed(bytes);
    if (!name.isEmpty() && name != "ASCII" && name != "UTF-8" && name != "ISO-8859-1") {
        if (const auto text = decodeWith(bytes, name.constData()))
            return *text;
    }
    return decodeWith(bytes, "windows-1252").value_or(QString::fromLatin1(bytes));
}

QString TextDecoding::decode(QByteArrayView bytes, const QByteArray &encoding)
{
    const QByteArray name = encoding.trimmed().toLower();
    // Western text that calls itself ASCII or Latin-1 is Windows' superset of both in practice.
    if (name == "iso-8859-1" || name == "latin1")
        return decodeWith(bytes, "windows-1252").value_or(QString::fromLatin1(bytes));
    if (!name.isEmpty() && name != "us-ascii" && name != "utf-8" && name != "utf8" &&
        name.size() < 60) {
        if (const auto text = decodeWith(bytes, name.constData()))
            return *text;
    }
    return detect(bytes);
}

bool TextDecoding::isText(QByteArrayView bytes)
{
    const auto marked = QStringConverter::encodingForData(bytes);
    if ((marked && *marked != QStringConverter::Utf8) || unmarkedWide(bytes))
        return true;
    const QByteArrayView start = bytes.first(std::min<qsizetype>(bytes.size(), 4096));
    const auto controls = std::count_if(start.begin(), start.end(), [](char byte) {
        const auto code = static_cast<uchar>(byte);
        return (code < 0x20 && !(code >= '\t' && code <= '\r') && code != 0x1B) || code == 0x7F;
    });
    return !bytes.contains('\0') && controls * 20 <= start.size();
}

QString TextDecoding::asLine(QStringView text)
{
    QString line = text.first(std::min<qsizetype>(text.size(), 8 * longestLine)).toString();
    for (QChar &c : line) {
        if (c.category() == QChar::Other_Control)
            c = u' ';
    }
    line = line.simplified();
    line.truncate(longestLine);
    return line;
}

// --- Encoded words

namespace {

struct EncodedWord
{
    QByteArray encoding;
    QByteArray bytes;
    qsizetype end = 0; // behind the closing mark
};

bool isTokenByte(char c)
{
    return c > ' ' && c < 0x7F && c != '?';
}

// "=?ENCODING?B or Q?TEXT?=" that begins at `at`.
std::optional<EncodedWord> wordAt(QByteArrayView value, qsizetype at)
{
    if (!value.sliced(at).startsWith("=?"))
        return {};
    qsizetype marks[3] = {-1, -1, -1}; // the three question marks that follow
    qsizetype from = at + 2;
    for (qsizetype &mark : marks) {
        mark = from;
        while (mark < value.size() && (isTokenByte(value[mark]) || value[mark] == ' '))
            ++mark;
        if (mark >= value.size() || value[mark] != '?' || mark - at > 4000)
            return {};
        from = mark + 1;
    }
    const QByteArrayView kind = value.sliced(marks[0] + 1, marks[1] - marks[0] - 1);
    if (marks[0] == at + 2 || kind.size() != 1 || from >= value.size() || value[from] != '=')
        return {};
    EncodedWord word;
    word.end = from + 1;
    word.encoding = value.sliced(at + 2, marks[0] - at - 2).toByteArray().toLower();
    if (const qsizetype language = word.encoding.indexOf('*'); language >= 0)
        word.encoding.truncate(language);
    QByteArray text = value.sliced(marks[1] + 1, marks[2] - marks[1] - 1).toByteArray();
    if (kind[0] == 'b' || kind[0] == 'B')
        word.bytes = QByteArray::fromBase64(text);
    else if (kind[0] == 'q' || kind[0] == 'Q')
        word.bytes = QByteArray::fromPercentEncoding(text.replace('_', ' '), '=');
    else
        return {};
    return word;
}

// Calls `plain` and `decoded` for the pieces of a header, in order.
template <typename Plain, typename Decoded>
void forEachPiece(QByteArrayView value, Plain plain, Decoded decoded)
{
    QByteArray pending;
    QByteArray encoding;
    bool isAfterWord = false;
    qsizetype plainFrom = 0;
    const auto flush = [&] {
        if (!pending.isEmpty())
            decoded(TextDecoding::decode(std::exchange(pending, {}), encoding));
    };
    qsizetype at = value.indexOf("=?");
    while (at >= 0) {
        const auto word = wordAt(value, at);
        if (word) {
            const QByteArrayView between = value.sliced(plainFrom, at - plainFrom);
            if (!isAfterWord || !between.trimmed().isEmpty()) {
                flush();
                plain(between);
            } else if (word->encoding != encoding) {
                flush();
            }
            encoding = word->encoding;
            pending += word->bytes;
            plainFrom = word->end;
            isAfterWord = true;
        }
        at = value.indexOf("=?", word ? word->end : at + 2);
    }
    flush();
    plain(value.sliced(plainFrom));
}

} // namespace

QString TextDecoding::decodeWords(QByteArrayView value)
{
    QString text;
    forEachPiece(
        value, [&text](QByteArrayView plain) { text += detect(plain); },
        [&text](const QString &word) { text += word; });
    return text;
}

QByteArray TextDecoding::wordsAsUtf8(QByteArrayView value)
{
    QByteArray header;
    forEachPiece(
        value, [&header](QByteArrayView plain) { header += detect(plain).toUtf8(); },
        [&header](const QString &word) {
            header += "=?UTF-8?B?" + word.toUtf8().toBase64() + "?=";
        });
    return header;
}
