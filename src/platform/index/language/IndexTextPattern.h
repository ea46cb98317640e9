#pragma once

#include "MDPredicate.h"
#include "XPText.h"

#include <QString>
#include <vector>

// A quoted value of a query, ready to be compared with texts.
//
// Both sides are decomposed, then folded as the modifiers c and d ask. Without w the pattern must
// match the whole text; with w it must match from the beginning of a word to the end of one (a
// pattern may span words), and its wildcards stay inside a word. A word is a run of letters,
// digits and marks; each ideograph or syllable sign of a script without blanks is one.
// Threads: immutable after construction.
class IndexTextPattern
{
public:
    explicit IndexTextPattern(const MDPredicate::Value &value);

    FoldText folding() const { return m_folding; }
    bool matches(const QString &text) const { return matchesFolded(foldText(text, m_folding)); }
    bool matchesFolded(const QString &text) const;

    // The whole pattern is "*literal*", "literal*", "*literal" or "literal", without w; with w
    // "literal*" or "literal".
    enum class Shape { Contains, Prefix, Suffix, Whole, WordPrefix, WordWhole, Other };
    Shape shape() const { return m_shape; }
    // The longest literal run, folded as the modifiers ask: every match holds it.
    const QString &literal() const { return m_literal; }
    // Only wildcards *: every text matches.
    bool matchesAnything() const { return m_units.empty() ? false : m_anything; }

private:
    struct Unit
    {
        enum class Kind : quint8 { Literal, AnyOne, AnyRun } kind;
        char16_t unit;
    };
    bool matchesAt(const QString &text, qsizetype start, bool words) const;

    std::vector<Unit> m_units;
    FoldText m_folding = FoldText::None;
    bool m_words = false;
    bool m_anything = false;
    Shape m_shape = Shape::Other;
    QString m_literal;
};
