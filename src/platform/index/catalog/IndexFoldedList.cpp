#include "IndexFoldedList.h"

#include "IndexScan.h"
#include "XPPath.h"

#include <algorithm>

void IndexFoldedList::append(QByteArrayView folded)
{
    m_bytes.append(folded);
    m_bytes.append('\0');
    m_starts.push_back(static_cast<quint32>(m_bytes.size()));
}

void IndexFoldedList::squeeze()
{
    m_bytes.squeeze();
    m_starts.shrink_to_fit();
}

bool IndexFoldedList::restore(QByteArray bytes, std::vector<quint32> starts)
{
    const auto size = static_cast<quint32>(bytes.size());
    if (starts.empty() || size == 0 || starts.front() != 1 || starts.back() != size || bytes[0])
        return false;
    for (size_t i = 1; i < starts.size(); ++i) {
        if (starts[i] <= starts[i - 1] || starts[i] > size || bytes[starts[i] - 1] != '\0')
            return false;
    }
    m_bytes = std::move(bytes);
    m_starts = std::move(starts);
    return true;
}

QByteArray IndexFoldedList::foldedText(const QString &text)
{
    QByteArray folded = foldText(text).toUtf8();
    folded.replace('\0', '\1');
    return folded;
}

QByteArray IndexFoldedList::foldedName(QByteArrayView name)
{
    quint8 all = 0;
    for (const char byte : name)
        all |= static_cast<quint8>(byte);
    if (all >= 0x80)
        return XPPath::encode(foldText(XPPath::decode(name)));
    QByteArray folded(name.data(), name.size());
    for (char &byte : folded) {
        if (byte >= 'A' && byte <= 'Z')
            byte = static_cast<char>(byte + ('a' - 'A'));
    }
    return folded;
}

static bool isAsciiWordByte(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
           (byte >= 'A' && byte <= 'Z');
}

IndexNeedle::IndexNeedle(const IndexTextPattern &pattern)
{
    using Shape = IndexTextPattern::Shape;
    const Shape shape = pattern.shape();
    const QByteArray literal = XPPath::encode(foldText(pattern.literal()));
    if (literal.isEmpty())
        return;
    const bool folds = pattern.folding() == FoldText::CaseAndDiacritics;
    const bool foldsCase = folds || pattern.folding() == FoldText::Case;
    const bool word = shape == Shape::WordPrefix || shape == Shape::WordWhole;
    const bool anchored = foldsCase && !word && shape != Shape::Other;
    m_decided = anchored && folds;
    m_decidesAscii = anchored;
    m_words = folds && word && isAsciiWordByte(literal.front()) && isAsciiWordByte(literal.back());
    m_wholeWord = shape == Shape::WordWhole;
    // The zeros around a text anchor a pattern that must begin or end with it.
    if (anchored && (shape == Shape::Prefix || shape == Shape::Whole))
        m_bytes.append('\0');
    m_bytes.append(literal);
    if (anchored && (shape == Shape::Suffix || shape == Shape::Whole))
        m_bytes.append('\0');
}

bool IndexNeedle::standsIn(QByteArrayView name) const
{
    const bool ascii =
        std::all_of(m_bytes.begin(), m_bytes.end(), [](char byte) { return !(byte & 0x80); });
    if (!ascii)
        return false;
    // With the zeros that the pattern's own ones stand for.
    QByteArray text(1, '\0');
    text.append(name);
    text.append('\0');
    for (char &byte : text) {
        if (byte >= 'A' && byte <= 'Z')
            byte = static_cast<char>(byte + ('a' - 'A'));
    }
    return text.contains(m_bytes);
}

IndexNeedle::Verdict IndexNeedle::verdict(const char *hit) const
{
    if (m_decided)
        return Verdict::Matches;
    if (!m_words)
        return Verdict::Unknown;
    const char before = hit[-1];
    const char behind = m_wholeWord ? hit[m_bytes.size()] : '\0';
    if (isAsciiWordByte(before) || isAsciiWordByte(behind))
        return Verdict::Fails;
    const bool ascii = !((before | behind) & 0x80);
    return ascii ? Verdict::Matches : Verdict::Unknown;
}

// The row that holds that place, which is not before row `from`. Steps wider and wider, then
// halves: what is looked for ascends.
quint32 IndexFoldedList::rowAt(quint32 offset, quint32 from) const
{
    quint32 step = 1;
    while (from + step < size() && m_starts[from + step] <= offset) {
        from += step;
        step *= 2;
    }
    const auto end = m_starts.begin() + std::min(from + step, size());
    return static_cast<quint32>(std::upper_bound(m_starts.begin() + from + 1, end, offset) -
                                m_starts.begin()) -
           1;
}

void IndexFoldedList::find(const IndexNeedle &needle, quint32 base, const Verify &verify,
                           std::vector<quint32> &rows) const
{
    using Verdict = IndexNeedle::Verdict;
    if (needle.isEmpty()) {
        for (quint32 row = 0; row < size(); ++row) {
            if (verify(row))
                rows.push_back(base + row);
        }
        return;
    }
    const quint32 shift = needle.bytes()[0] == '\0' ? 1 : 0; // a hit begins at the zero before
    quint32 next = 0;                                        // rows before this one are done
    const auto end = static_cast<size_t>(m_bytes.size());
    indexScan(m_bytes, needle.bytes(), 0, end, [&](quint32 hit) {
        const Verdict verdict = needle.verdict(m_bytes.constData() + hit);
        if (verdict == Verdict::Fails)
            return hit + 1;
        if (next >= size())
            return static_cast<quint32>(m_bytes.size());
        const quint32 row = rowAt(hit + shift, next);
        if (verdict == Verdict::Matches || verify(row))
            rows.push_back(base + row);
        next = row + 1;
        return m_starts[next] - shift;
    });
}

bool IndexFoldedList::matches(const IndexNeedle &needle, quint32 row, const Verify &verify) const
{
    using Verdict = IndexNeedle::Verdict;
    if (needle.isEmpty())
        return verify(row);
    bool found = false;
    // From the zero before it; what begins in a text and matches also ends in it.
    const quint32 end = m_starts[row + 1];
    indexScan(m_bytes, needle.bytes(), m_starts[row] - 1, end - 1, [&](quint32 hit) {
        const Verdict verdict = needle.verdict(m_bytes.constData() + hit);
        if (verdict == Verdict::Fails)
            return hit + 1;
        found = verdict == Verdict::Matches || verify(row);
        return end;
    });
    return found;
}
