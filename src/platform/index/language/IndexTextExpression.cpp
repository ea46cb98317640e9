#include "IndexTextExpression.h"

#include "IndexWords.h"

#include <algorithm>

static bool hasWildcard(const QByteArray &word)
{
    return word.contains(IndexTextExpression::anyOne) || word.contains(IndexTextExpression::anyRun);
}

static bool isWildcardAt(const MDPredicate::Value &value, qsizetype at)
{
    return static_cast<size_t>(at) < value.wildcard.size() &&
           value.wildcard[static_cast<size_t>(at)];
}

bool IndexTextExpression::isBeginning(const QByteArray &word)
{
    return word.size() > 1 && word.endsWith(anyRun) && !hasWildcard(word.chopped(1));
}

IndexTextExpression::IndexTextExpression(const MDPredicate::Value &value)
{
    m_presence = value.type == MDPredicate::Value::Type::Present ||
                 (!value.text.isEmpty() &&
                  std::all_of(value.text.begin(), value.text.end(),
                              [](QChar unit) { return unit == u'*'; }) &&
                  isWildcardAt(value, 0));
    if (m_presence)
        return;
    Phrase words;
    readWords(value, words);
    // Wildcards alone say nothing of a word.
    std::erase_if(words, [](const QByteArray &word) {
        return std::all_of(word.begin(), word.end(),
                           [](char byte) { return byte == anyOne || byte == anyRun; });
    });
    if (words.empty())
        return;
    const auto patterns = std::count_if(words.begin(), words.end(), hasWildcard) -
                          (isBeginning(words.back()) ? 1 : 0);
    if (patterns <= 1) {
        m_phrases.push_back(std::move(words));
        return;
    }
    bool fresh = true;
    for (const QByteArray &word : words) {
        if (fresh || hasWildcard(word))
            m_phrases.emplace_back();
        fresh = hasWildcard(word);
        m_phrases.back().push_back(word);
    }
}

void IndexTextExpression::readWords(const MDPredicate::Value &value, Phrase &words) const
{
    bool open = false; // the last word goes on
    const auto append = [&](const QByteArray &bytes) {
        if (!open)
            words.emplace_back();
        words.back() += bytes;
        open = true;
    };
    for (qsizetype at = 0; at < value.text.size();) {
        if (isWildcardAt(value, at)) {
            const char wildcard = value.text[at] == u'*' ? anyRun : anyOne;
            if (!open || wildcard != anyRun || !words.back().endsWith(anyRun))
                append(QByteArray(1, wildcard));
            ++at;
            continue;
        }
        const qsizetype start = at;
        while (at < value.text.size() && !isWildcardAt(value, at))
            ++at;
        const QString run = value.text.mid(start, at - start);
        // A blank between a wildcard and a word keeps them apart.
        open = open && IndexWords::isWordCharacter(run.front().unicode());
        const auto wordsOfRun = IndexWords::of(run);
        for (const QByteArray &word : wordsOfRun) {
            append(word);
            open = false;
        }
        // A run may hold no word at all: half a character, marks alone.
        open = !wordsOfRun.empty() &&
               (IndexWords::isWordCharacter(run.back().unicode()) || run.back().isSurrogate());
    }
    for (QByteArray &word : words)
        word.truncate(IndexWords::longestWord);
}

qsizetype IndexTextExpression::patternIn(const Phrase &phrase)
{
    for (size_t i = 0; i < phrase.size(); ++i) {
        if (hasWildcard(phrase[i]) && !(i + 1 == phrase.size() && isBeginning(phrase[i])))
            return static_cast<qsizetype>(i);
    }
    return -1;
}

// The start of the next character.
static qsizetype next(const QByteArray &word, qsizetype at)
{
    do
        ++at;
    while (at < word.size() && (static_cast<uchar>(word[at]) & 0xC0) == 0x80);
    return at;
}

bool IndexTextExpression::matches(const QByteArray &pattern, const QByteArray &word)
{
    qsizetype at = 0;
    qsizetype unit = 0;
    qsizetype star = -1;
    qsizetype starAt = 0;
    for (;;) {
        if (unit < pattern.size() && pattern[unit] == anyRun) {
            star = unit++;
            starAt = at;
        } else if (unit < pattern.size() && at < word.size() && pattern[unit] == anyOne) {
            ++unit;
            at = next(word, at);
        } else if (unit < pattern.size() && at < word.size() && pattern[unit] == word[at]) {
            ++unit;
            ++at;
        } else if (unit == pattern.size() && at == word.size()) {
            return true;
        } else if (star < 0 || starAt >= word.size()) {
            return false;
        } else {
            at = starAt = next(word, starAt);
            unit = star + 1;
        }
    }
}

QByteArray IndexTextExpression::headOf(const Phrase &phrase)
{
    if (phrase.size() != 1 || !isBeginning(phrase.front()))
        return {};
    const QByteArray head = phrase.front().chopped(1);
    qsizetype at = 0;
    for (int n = 0; n < longestHead && at < head.size(); ++n)
        at = next(head, at);
    return at == head.size() ? head : QByteArray();
}

QByteArray IndexTextExpression::match(const Phrase &phrase, qsizetype pattern,
                                      const QByteArray &replacement)
{
    // Words hold letters, digits and marks only, so that quoting them is enough.
    QByteArray expression;
    for (size_t i = 0; i < phrase.size(); ++i) {
        const QByteArray &word = static_cast<qsizetype>(i) == pattern ? replacement : phrase[i];
        const bool beginning = isBeginning(word);
        if (!expression.isEmpty())
            expression += " + ";
        expression += '"' + (beginning ? word.chopped(1) : word) + (beginning ? "\" *" : "\"");
    }
    return expression;
}
