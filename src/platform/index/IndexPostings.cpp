#include "IndexPostings.h"

#include <cmath>

void IndexPosting::add(quint32 slot)
{
    m_rows.add(slot);
    std::atomic_store(&m_snapshot, RowSet());
}

void IndexPosting::remove(quint32 slot)
{
    m_rows.remove(slot);
    std::atomic_store(&m_snapshot, RowSet());
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

bool IndexAttributePostings::isPresent(const PropertyValue &value)
{
    switch (value.kind()) {
    case PropertyValue::Kind::Null:
        return false;
    case PropertyValue::Kind::String:
        return !value.string().isEmpty();
    case PropertyValue::Kind::Array:
        return !value.array().isEmpty();
    default:
        return true;
    }
}

QStringList IndexAttributePostings::textsOf(const PropertyValue &value)
{
    if (value.isString())
        return {value.string()};
    QStringList texts = value.strings();
    texts.removeDuplicates();
    return texts;
}

static void appendNumber(const PropertyValue &value, std::vector<double> &out)
{
    switch (value.kind()) {
    case PropertyValue::Kind::Bool:
    case PropertyValue::Kind::Integer:
    case PropertyValue::Kind::Real:
        out.push_back(value.doubleValue());
        break;
    case PropertyValue::Kind::Date:
        out.push_back(value.date().secondsSince2001);
        break;
    default:
        break;
    }
}

std::vector<double> IndexAttributePostings::numbersOf(const PropertyValue &value)
{
    std::vector<double> numbers;
    appendNumber(value, numbers);
    for (const PropertyValue &element : value.array())
        appendNumber(element, numbers);
    // Not-a-number has no place in an order, and matches nothing.
    std::erase_if(numbers, [](double number) { return std::isnan(number); });
    return numbers;
}

void IndexAttributePostings::add(quint32 slot, const PropertyValue &value)
{
    if (!isPresent(value))
        return;
    m_present.add(slot);
    for (const QString &text : textsOf(value))
        m_texts[text].add(slot);
    for (const double number : numbersOf(value)) {
        if (m_spilled)
            m_manyNumbers.emplace(number, slot);
        else
            m_numbers[number].add(slot);
    }
    if (!m_spilled && m_numbers.size() > maximumNumberSets)
        spillNumbers();
}

void IndexAttributePostings::remove(quint32 slot, const PropertyValue &value)
{
    if (!isPresent(value))
        return;
    m_present.remove(slot);
    for (const QString &text : textsOf(value)) {
        const auto entry = m_texts.find(text);
        if (entry == m_texts.end())
            continue;
        entry->remove(slot);
        if (entry->isEmpty())
            m_texts.erase(entry);
    }
    for (const double number : numbersOf(value)) {
        if (m_spilled) {
            const auto [first, last] = m_manyNumbers.equal_range(number);
            for (auto entry = first; entry != last; ++entry) {
                if (entry->second == slot) {
                    m_manyNumbers.erase(entry);
                    break;
                }
            }
            continue;
        }
        const auto entry = m_numbers.find(number);
        if (entry == m_numbers.end())
            continue;
        entry->second.remove(slot);
        if (entry->second.isEmpty())
            m_numbers.erase(entry);
    }
}

void IndexAttributePostings::spillNumbers()
{
    for (const auto &[number, posting] : m_numbers) {
        for (const quint32 slot : posting.rows())
            m_manyNumbers.emplace(number, slot);
    }
    m_numbers.clear();
    m_spilled = true;
}

void IndexAttributePostings::rowsInRange(double low, double high, Roaring &out) const
{
    for (auto entry = m_numbers.lower_bound(low); entry != m_numbers.end() && entry->first <= high;
         ++entry)
        out |= entry->second.rows();
    for (auto entry = m_manyNumbers.lower_bound(low);
         entry != m_manyNumbers.end() && entry->first <= high; ++entry)
        out.add(entry->second);
}

const IndexPosting *IndexAttributePostings::exact(double number) const
{
    const auto entry = m_numbers.find(number);
    return entry == m_numbers.end() ? nullptr : &entry->second;
}
