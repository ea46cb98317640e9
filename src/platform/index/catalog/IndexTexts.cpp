#include "IndexTexts.h"

IndexTexts::Number IndexTexts::numberOf(const QString &text)
{
    const auto known = m_numbers.constFind(text);
    if (known != m_numbers.cend())
        return *known;
    const Number number = size();
    m_texts.push_back(text);
    m_numbers.insert(text, number);
    m_folded.append(IndexFoldedList::foldedText(text));
    return number;
}

void IndexTexts::restore(const QString &text)
{
    if (!text.isEmpty())
        m_numbers.insert(text, size());
    m_texts.push_back(text);
    m_folded.append(IndexFoldedList::foldedText(text));
}

std::optional<IndexTexts::Number> IndexTexts::find(const QString &text) const
{
    const auto known = m_numbers.constFind(text);
    return known == m_numbers.cend() ? std::nullopt : std::optional(*known);
}

std::vector<IndexTexts::Number> IndexTexts::matching(const IndexTextPattern &pattern) const
{
    std::vector<Number> numbers;
    const IndexNeedle needle(pattern);
    m_folded.find(
        needle, 0, [&](quint32 row) { return pattern.matches(m_texts[row]); }, numbers);
    // Halves of surrogate pairs, which no UTF-8 text keeps.
    if (needle.decides())
        std::erase_if(numbers, [&](Number number) {
            return !m_texts[number].isValidUtf16() && !pattern.matches(m_texts[number]);
        });
    return numbers;
}
