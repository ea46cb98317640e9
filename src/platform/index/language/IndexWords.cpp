#include "IndexWords.h"

#include "XPText.h"

#include <algorithm>
#include <array>
#include <unicode/uchar.h>
#include <unicode/uscript.h>
#include <unicode/utf8.h>

bool IndexWords::isWordCharacter(char32_t c)
{
    return QChar::isLetterOrNumber(c) || QChar::isMark(c);
}

bool IndexWords::isSign(char32_t c)
{
    if (c < 0x0E00) // the first of these scripts, Thai, begins here
        return false;
    UErrorCode status = U_ZERO_ERROR;
    switch (uscript_getScript(static_cast<UChar32>(c), &status)) {
    case USCRIPT_HAN:
    case USCRIPT_HIRAGANA:
    case USCRIPT_KATAKANA:
    case USCRIPT_THAI:
    case USCRIPT_LAO:
    case USCRIPT_KHMER:
    case USCRIPT_MYANMAR:
        return true;
    default:
        return false;
    }
}

// --- What one character folds to, for the alphabets that are read most

namespace {

// Latin, Greek, Cyrillic, Hebrew: each character folds by itself, whatever stands beside it.
constexpr char32_t tabled = 0x600;

struct FoldedCharacter
{
    enum class Kind : quint8 { Separator, Folded, NeedsContext };
    Kind kind = Kind::Separator;
    quint8 size = 0;
    std::array<char, 10> bytes{};
};

using Table = std::array<FoldedCharacter, tabled>;

} // namespace

static FoldedCharacter foldedCharacter(char32_t c)
{
    FoldedCharacter entry;
    if (!IndexWords::isWordCharacter(c))
        return entry;
    const QString folded = foldText(QString::fromUcs4(&c, 1));
    const QByteArray bytes = folded.toUtf8();
    const bool whole = std::all_of(folded.begin(), folded.end(), [](QChar unit) {
        return IndexWords::isWordCharacter(unit.unicode());
    });
    if (!whole || bytes.size() > static_cast<qsizetype>(entry.bytes.size())) {
        entry.kind = FoldedCharacter::Kind::NeedsContext;
        return entry;
    }
    entry.kind = FoldedCharacter::Kind::Folded;
    entry.size = static_cast<quint8>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), entry.bytes.begin());
    return entry;
}

static const Table &table()
{
    static const Table entries = [] {
        Table made;
        for (char32_t c = 0; c < tabled; ++c)
            made[c] = foldedCharacter(c);
        return made;
    }();
    return entries;
}

// --- Splitting

// The character at `at`, which moves behind it; no character (U+FFFF, never part of a word) where
// the bytes are no UTF-8.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion" // inside ICU's macro
static char32_t nextCharacter(const char *text, int &at, int size)
{
    UChar32 c = 0;
    U8_NEXT(text, at, size, c);
    return c < 0 ? 0xFFFF : static_cast<char32_t>(c);
}
#pragma GCC diagnostic pop

namespace {

class Splitter
{
public:
    Splitter(const char *text, int size, void *context, IndexWords::Take take)
        : m_text(text), m_size(size), m_context(context), m_take(take)
    {
    }

    int run()
    {
        while (m_at < m_size && m_stopped == 0) {
            m_start = m_at;
            m_length = 0;
            if (readByTable())
                emitWord(m_word.data(), m_length, m_at);
            else
                readAny();
        }
        return m_stopped;
    }

private:
    // Folds the word at hand into m_word; false when the table does not do.
    bool readByTable()
    {
        while (m_at < m_size) {
            const auto byte = static_cast<quint8>(m_text[m_at]);
            char32_t c = byte;
            int next = m_at + 1;
            if (byte >= 0x80) {
                next = m_at;
                c = nextCharacter(m_text, next, m_size);
                if (c >= tabled && IndexWords::isWordCharacter(c))
                    return false;
                if (c >= tabled)
                    c = U' ';
            }
            const FoldedCharacter &entry = m_table[c];
            if (entry.kind == FoldedCharacter::Kind::NeedsContext)
                return false;
            if (entry.kind == FoldedCharacter::Kind::Separator) {
                if (m_length > 0)
                    return true;
                m_at = next;
                m_start = m_at;
                continue;
            }
            if (m_length + entry.size <= IndexWords::longestWord && !m_full) {
                std::copy_n(entry.bytes.begin(), entry.size, m_word.begin() + m_length);
                m_length += entry.size;
            } else {
                m_full = true;
            }
            m_at = next;
        }
        return true;
    }

    // The same for any characters, a whole run of words at once.
    void readAny()
    {
        m_at = m_start;
        while (m_at < m_size) {
            int next = m_at;
            if (!IndexWords::isWordCharacter(nextCharacter(m_text, next, m_size)))
                break;
            m_at = next;
        }
        const int end = m_at;
        if (m_at < m_size)
            nextCharacter(m_text, m_at, m_size); // past the separator
        const QByteArray folded =
            foldText(QString::fromUtf8(m_text + m_start, end - m_start)).toUtf8();
        emitFolded(folded.constData(), static_cast<int>(folded.size()), end);
    }

    void emitFolded(const char *folded, int size, int end)
    {
        int start = 0;
        bool afterSign = false;
        for (int at = 0; at < size;) {
            const int before = at;
            const char32_t character = nextCharacter(folded, at, size);
            if (!IndexWords::isWordCharacter(character)) {
                emitWord(folded + start, before - start, end);
                start = at;
                afterSign = false;
            } else if (!QChar::isMark(character)) {
                const bool sign = IndexWords::isSign(character);
                if (sign || afterSign) {
                    emitWord(folded + start, before - start, end);
                    start = before;
                }
                afterSign = sign;
            }
        }
        emitWord(folded + start, size - start, end);
    }

    void emitWord(const char *word, int length, int end)
    {
        m_full = false;
        if (length > IndexWords::longestWord) {
            length = IndexWords::longestWord;
            while (length > 0 && U8_IS_TRAIL(word[length]))
                --length;
        }
        if (length > 0 && m_stopped == 0)
            m_stopped = m_take(m_context, word, length, m_start, end);
    }

    const Table &m_table = table();
    const char *const m_text;
    const int m_size;
    void *const m_context;
    const IndexWords::Take m_take;
    int m_at = 0;
    int m_start = 0;
    int m_length = 0;
    bool m_full = false; // the rest of a long word is passed over
    int m_stopped = 0;
    std::array<char, IndexWords::longestWord> m_word{};
};

} // namespace

int IndexWords::forEach(const char *text, int size, void *context, Take take)
{
    return Splitter(text, size, context, take).run();
}

std::vector<QByteArray> IndexWords::of(const QString &text)
{
    std::vector<QByteArray> words;
    const QByteArray bytes = text.toUtf8();
    forEach(bytes.constData(), static_cast<int>(bytes.size()), &words,
            [](void *context, const char *word, int size, int, int) {
                static_cast<std::vector<QByteArray> *>(context)->emplace_back(word, size);
                return 0;
            });
    return words;
}
