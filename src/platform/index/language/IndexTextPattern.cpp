#include "IndexTextPattern.h"

#include "IndexWords.h"

IndexTextPattern::IndexTextPattern(const MDPredicate::Value &value) : m_words(value.wordBased)
{
    m_folding = static_cast<FoldText>(
        (value.ignoreCase ? static_cast<int>(FoldText::Case) : 0) |
        (value.ignoreDiacritics ? static_cast<int>(FoldText::Diacritics) : 0));
    QString run;
    const auto endRun = [&] {
        const QString folded = foldText(run, m_folding);
        for (const QChar unit : folded)
            m_units.push_back({Unit::Kind::Literal, unit.unicode()});
        if (folded.size() > m_literal.size())
            m_literal = folded;
        run.clear();
    };
    for (qsizetype i = 0; i < value.text.size(); ++i) {
        if (static_cast<size_t>(i) >= value.wildcard.size() ||
            !value.wildcard[static_cast<size_t>(i)]) {
            run += value.text[i];
            continue;
        }
        endRun();
        const bool star = value.text[i] == u'*';
        if (star && !m_units.empty() && m_units.back().kind == Unit::Kind::AnyRun)
            continue;
        m_units.push_back({star ? Unit::Kind::AnyRun : Unit::Kind::AnyOne, 0});
    }
    endRun();
    m_anything = m_units.size() == 1 && m_units[0].kind == Unit::Kind::AnyRun;
    if (m_units.empty() || m_anything)
        return;
    const bool head = m_units.front().kind == Unit::Kind::AnyRun;
    const bool tail = m_units.back().kind == Unit::Kind::AnyRun;
    const size_t stars = (head ? 1U : 0U) + (tail ? 1U : 0U);
    if (static_cast<size_t>(m_literal.size()) + stars != m_units.size())
        return;
    if (m_words) {
        if (!head)
            m_shape = tail ? Shape::WordPrefix : Shape::WordWhole;
        return;
    }
    m_shape =
        head ? (tail ? Shape::Contains : Shape::Suffix) : (tail ? Shape::Prefix : Shape::Whole);
}

static char32_t characterAt(const QString &text, qsizetype at)
{
    if (text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate())
        return QChar::surrogateToUcs4(text[at], text[at + 1]);
    return text[at].unicode();
}

// Where the character begins that the unit belongs to.
static qsizetype characterStart(const QString &text, qsizetype at)
{
    return at > 0 && text[at].isLowSurrogate() && text[at - 1].isHighSurrogate() ? at - 1 : at;
}

static bool isWordUnit(const QString &text, qsizetype at)
{
    return IndexWords::isWordCharacter(characterAt(text, characterStart(text, at)));
}

// Whether a word begins at `at` (or ended just before it).
static bool isWordBoundary(const QString &text, qsizetype at)
{
    if (at <= 0 || at >= text.size())
        return true;
    if (text[at].isLowSurrogate() && text[at - 1].isHighSurrogate())
        return false;
    const bool before = isWordUnit(text, at - 1);
    const bool here = isWordUnit(text, at);
    if (before != here || !here)
        return true;
    // Each sign is a word, with the marks that follow it.
    if (QChar::isMark(characterAt(text, at)))
        return false;
    qsizetype base = characterStart(text, at - 1);
    while (base > 0 && QChar::isMark(characterAt(text, base)))
        base = characterStart(text, base - 1);
    return IndexWords::isSign(characterAt(text, at)) || IndexWords::isSign(characterAt(text, base));
}

bool IndexTextPattern::matchesAt(const QString &text, qsizetype start, bool words) const
{
    // The classic greedy match with one remembered star: linear but for the last star's retries.
    qsizetype at = start;
    size_t unit = 0;
    size_t star = m_units.size(); // none yet
    qsizetype starAt = 0;
    for (;;) {
        if (unit == m_units.size()) {
            if (words ? isWordBoundary(text, at) : at == text.size())
                return true;
        } else if (m_units[unit].kind == Unit::Kind::AnyRun) {
            star = unit++;
            starAt = at;
            continue;
        } else if (at < text.size() && (m_units[unit].kind == Unit::Kind::AnyOne
                                            ? (!words || isWordUnit(text, at))
                                            : m_units[unit].unit == text[at].unicode())) {
            ++unit;
            ++at;
            continue;
        }
        if (star == m_units.size() || starAt >= text.size() || (words && !isWordUnit(text, starAt)))
            return false;
        at = ++starAt;
        unit = star + 1;
    }
}

bool IndexTextPattern::matchesFolded(const QString &text) const
{
    if (!m_words) {
        switch (m_shape) {
        case Shape::Contains:
            return text.contains(m_literal);
        case Shape::Prefix:
            return text.startsWith(m_literal);
        case Shape::Suffix:
            return text.endsWith(m_literal);
        case Shape::Whole:
            return text == m_literal;
        default:
            return m_units.empty() ? text.isEmpty() : matchesAt(text, 0, false);
        }
    }
    if (m_units.empty())
        return false;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (isWordBoundary(text, at) && (isWordUnit(text, at) || !m_literal.isEmpty()) &&
            matchesAt(text, at, true))
            return true;
    }
    return false;
}
