#pragma once

#include "MDPredicate.h"

#include <QByteArray>

// A comparison with contents, taken apart into what the word index can answer.
//
// Contents are compared by words whatever the modifiers: case and marks never count, a pattern
// without wildcards stands for whole words, and words of one pattern must follow one another,
// whatever blanks or punctuation stand between them. Wildcards stay inside a word; a word of
// wildcards alone asks for nothing. A pattern of
// several words with more than one wildcard (a last * apart) only asks that each of its parts
// occurs.
// Threads: immutable after construction.
class IndexTextExpression
{
public:
    explicit IndexTextExpression(const MDPredicate::Value &value);

    // Any text at all will do.
    bool isPresence() const { return m_presence; }

    // Folded words, in which `anyOne` and `anyRun` stand for wildcards.
    static constexpr char anyOne = 1; // one character
    static constexpr char anyRun = 2; // any number of them
    using Phrase = std::vector<QByteArray>;
    // All must occur; none: nothing matches.
    const std::vector<Phrase> &phrases() const { return m_phrases; }

    // The word that the index can only find by going through the words it knows; -1: none. (A
    // last word that ends in anyRun is not meant, the index has beginnings.)
    static qsizetype patternIn(const Phrase &phrase);
    // "lit*": found by its beginning where it is the last word.
    static bool isBeginning(const QByteArray &word);
    static bool matches(const QByteArray &pattern, const QByteArray &word);

    // The beginning that the phrase stands for, when it is one short enough for the index of
    // beginnings; else empty.
    static constexpr int longestHead = 2; // characters
    static QByteArray headOf(const Phrase &phrase);

    // The phrase for FTS5, with `replacement` for the word at `pattern`.
    static QByteArray match(const Phrase &phrase, qsizetype pattern = -1,
                            const QByteArray &replacement = {});

private:
    void readWords(const MDPredicate::Value &value, Phrase &words) const;

    bool m_presence = false;
    std::vector<Phrase> m_phrases;
};
