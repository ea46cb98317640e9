#include "KPRequestMatcher.h"

#include "XPPath.h"
#include "XPText.h"

#include <algorithm>

static QStringList tagKeys(const QStringList &tags)
{
    QStringList keys;
    keys.reserve(tags.size());
    for (const QString &tag : tags)
        keys.append(lowerCase(decomposed(tag)));
    return keys;
}

KPRequestMatcher::KPRequestMatcher(const KPSearchRequest &request)
    : m_words(foldText(request.words.simplified()).split(u' ', Qt::SkipEmptyParts)),
      m_tags(tagKeys(request.tags)), m_notTags(tagKeys(request.notTags)), m_rating(request.rating)
{
}

bool KPRequestMatcher::matches(const KPFoundDocument &document) const
{
    return matchesRating(document) && matchesTags(document) && matchesWords(document);
}

// Scripts that write no blanks between words: a word may begin at each of their characters.
static bool isWrittenWithoutBlanks(QChar c)
{
    const QChar::Script script = c.script();
    return script == QChar::Script_Han || script == QChar::Script_Hiragana ||
           script == QChar::Script_Katakana;
}

static bool beginsWordAt(QStringView text, qsizetype at)
{
    return at == 0 || !text[at].isLetterOrNumber() || !text[at - 1].isLetterOrNumber() ||
           isWrittenWithoutBlanks(text[at]);
}

static bool holdsWordBeginning(QStringView text, QStringView beginning)
{
    for (qsizetype at = text.indexOf(beginning); at >= 0; at = text.indexOf(beginning, at + 1)) {
        if (beginsWordAt(text, at))
            return true;
    }
    return false;
}

bool KPRequestMatcher::matchesWords(const KPFoundDocument &document) const
{
    if (m_words.isEmpty())
        return true;
    QStringList texts = {foldText(XPPath::fileName(document.path))};
    for (const QString &tag : document.tags)
        texts.append(foldText(tag));
    return std::all_of(m_words.begin(), m_words.end(), [&](const QString &word) {
        return std::any_of(texts.begin(), texts.end(),
                           [&](const QString &text) { return holdsWordBeginning(text, word); });
    });
}

bool KPRequestMatcher::matchesTags(const KPFoundDocument &document) const
{
    if (m_tags.isEmpty() && m_notTags.isEmpty())
        return true;
    if (document.tags.isEmpty())
        return m_tags.isEmpty() && document.error.isEmpty();
    const QStringList keys = tagKeys(document.tags);
    const auto isThere = [&](const QString &key) { return keys.contains(key); };
    return std::all_of(m_tags.begin(), m_tags.end(), isThere) &&
           std::none_of(m_notTags.begin(), m_notTags.end(), isThere);
}

static bool compare(double left, KPSearchRequest::Comparison comparison, double right)
{
    using Comparison = KPSearchRequest::Comparison;
    switch (comparison) {
    case Comparison::Less:
        return left < right;
    case Comparison::LessOrEqual:
        return left <= right;
    case Comparison::Equal:
        return left == right;
    case Comparison::NotEqual:
        return left != right;
    case Comparison::GreaterOrEqual:
        return left >= right;
    case Comparison::Greater:
        return left > right;
    }
    return false;
}

bool KPRequestMatcher::matchesRating(const KPFoundDocument &document) const
{
    if (!m_rating)
        return true;
    if (document.rating == 0 && !document.error.isEmpty())
        return false;
    return compare(document.rating, m_rating->comparison, m_rating->stars);
}
