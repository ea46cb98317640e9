#include "XPText.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>

static_assert(sizeof(QChar) == sizeof(UChar));

static const UChar *units(const QString &text)
{
    // Not utf16(), which copies a text that refers to raw memory.
    return reinterpret_cast<const UChar *>(text.constData());
}

static bool isAscii(const QString &text)
{
    char16_t all = 0;
    for (const QChar unit : text)
        all |= unit.unicode();
    return all < 0x80;
}

// Runs an ICU function of the shape (buffer, capacity, status) -> length, growing the buffer.
template <typename Function>
static QString collect(qsizetype guess, Function function)
{
    QString out(guess, Qt::Uninitialized);
    for (;;) {
        UErrorCode status = U_ZERO_ERROR;
        const int32_t length = function(reinterpret_cast<UChar *>(out.data()),
                                        static_cast<int32_t>(out.size()), status);
        if (status == U_BUFFER_OVERFLOW_ERROR) {
            out.resize(length);
            continue;
        }
        if (U_FAILURE(status))
            return {};
        out.resize(length);
        return out;
    }
}

QString decomposed(const QString &text)
{
    if (isAscii(text))
        return text;
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2 *nfd = icu::Normalizer2::getNFDInstance(status);
    if (U_FAILURE(status))
        return text;
    const icu::UnicodeString source(false, units(text), static_cast<int32_t>(text.size()));
    const int32_t done = nfd->spanQuickCheckYes(source, status);
    if (U_FAILURE(status) || done == text.size())
        return text;
    const icu::UnicodeString out = nfd->normalize(source, status);
    if (U_FAILURE(status))
        return text;
    return QString(reinterpret_cast<const QChar *>(out.getBuffer()), out.length());
}

QString lowerCase(const QString &text)
{
    if (isAscii(text)) {
        for (const QChar unit : text) {
            if (unit >= u'A' && unit <= u'Z')
                return text.toLower();
        }
        return text;
    }
    return collect(text.size() + 8, [&](UChar *out, int32_t capacity, UErrorCode &status) {
        return u_strToLower(out, capacity, units(text), static_cast<int32_t>(text.size()), "",
                            &status);
    });
}

static QString withoutMarks(const QString &text)
{
    QString out;
    out.reserve(text.size());
    const qsizetype size = text.size();
    for (qsizetype i = 0; i < size;) {
        const qsizetype start = i;
        UChar32 c = 0;
        U16_NEXT(units(text), i, size, c);
        if (u_charType(c) != U_NON_SPACING_MARK)
            out.append(QStringView(text).mid(start, i - start));
    }
    return out;
}

QString foldText(const QString &text, FoldText how)
{
    const bool foldCase = how == FoldText::Case || how == FoldText::CaseAndDiacritics;
    const bool dropMarks = how == FoldText::Diacritics || how == FoldText::CaseAndDiacritics;
    if (isAscii(text))
        return foldCase ? lowerCase(text) : text;
    QString out = decomposed(text);
    if (dropMarks)
        out = withoutMarks(out);
    if (foldCase) {
        const QString before = out;
        out = collect(before.size() + 8, [&](UChar *buffer, int32_t capacity, UErrorCode &status) {
            return u_strFoldCase(buffer, capacity, units(before),
                                 static_cast<int32_t>(before.size()), U_FOLD_CASE_DEFAULT, &status);
        });
        // Folding can compose anew (the Greek iota below becomes a letter of its own).
        out = decomposed(out);
        if (dropMarks)
            out = withoutMarks(out);
    }
    return out;
}
