#include "IndexPostings.h"

#include <algorithm>

void IndexPosting::add(IndexSlot slot)
{
    m_rows.add(slot);
    m_snapshot.reset();
}

void IndexPosting::addAll(const std::vector<IndexSlot> &slots)
{
    m_rows.addMany(slots.size(), slots.data());
    m_snapshot.reset();
}

void IndexPosting::addRange(IndexSlot begin, IndexSlot end)
{
    m_rows.addRange(begin, end);
    m_snapshot.reset();
}

void IndexPosting::remove(IndexSlot slot)
{
    m_rows.remove(slot);
    m_snapshot.reset();
}

RowSet IndexPosting::snapshot() const
{
    RowSet rows = std::atomic_load(&m_snapshot);
    if (!rows) {
        rows = std::make_shared<const Roaring>(m_rows);
        std::atomic_store(&m_snapshot, rows);
    }
    return rows;
}

namespace {

// What one value is compared by, each once.
struct Parts
{
    explicit Parts(const IndexValues::Entry &entry)
    {
        entry.collect(&texts, &numbers);
        std::sort(texts.begin(), texts.end());
        texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
    }
    std::vector<IndexTexts::Number> texts;
    std::vector<double> numbers;
};

} // namespace

void IndexAttributePostings::add(IndexSlot slot, const IndexValues::Entry &entry)
{
    if (!entry.isPresent())
        return;
    m_present.add(slot);
    const Parts parts(entry);
    for (const IndexTexts::Number text : parts.texts)
        m_texts[text].add(slot);
    for (const double number : parts.numbers) {
        if (!m_tooManyNumbers)
            m_numbers[number].add(slot);
    }
    if (m_numbers.size() > maximumNumbers) {
        m_numbers.clear();
        m_tooManyNumbers = true;
    }
}

void IndexAttributePostings::remove(IndexSlot slot, const IndexValues::Entry &entry)
{
    if (!entry.isPresent())
        return;
    m_present.remove(slot);
    const Parts parts(entry);
    for (const IndexTexts::Number text : parts.texts) {
        const auto known = m_texts.find(text);
        if (known == m_texts.end())
            continue;
        known->remove(slot);
        if (known->isEmpty())
            m_texts.erase(known);
    }
    for (const double number : parts.numbers) {
        const auto known = m_numbers.find(number);
        if (known == m_numbers.end())
            continue;
        known->second.remove(slot);
        if (known->second.isEmpty())
            m_numbers.erase(known);
    }
}
