#include "KPSelection.h"

#include <algorithm>
#include <bit>

void KPSelection::reset(int rowCount)
{
    m_rowCount = rowCount;
    m_words.assign((static_cast<size_t>(rowCount) + bits - 1) / bits, 0);
    m_count = 0;
    m_anchor = -1;
    m_current = -1;
}

bool KPSelection::isSelected(int row) const
{
    return row >= 0 && row < m_rowCount &&
           ((m_words[static_cast<size_t>(row / bits)] >> (row % bits)) & 1) != 0;
}

int KPSelection::first() const
{
    for (size_t word = 0; word < m_words.size(); ++word) {
        if (m_words[word] != 0)
            return static_cast<int>(word) * bits + std::countr_zero(m_words[word]);
    }
    return -1;
}

int KPSelection::last() const
{
    for (size_t word = m_words.size(); word-- > 0;) {
        if (m_words[word] != 0)
            return static_cast<int>(word) * bits + bits - 1 - std::countl_zero(m_words[word]);
    }
    return -1;
}

QList<KPSelection::Run> KPSelection::runs() const
{
    QList<Run> result;
    for (int row = first(); row >= 0 && row < m_rowCount;) {
        // Whole words at once, where they are all one or the other.
        const auto word = static_cast<size_t>(row / bits);
        if (row % bits == 0 && m_words[word] == 0) {
            row += bits;
            continue;
        }
        if (!isSelected(row)) {
            ++row;
            continue;
        }
        int end = row + 1;
        while (end < m_rowCount && isSelected(end)) {
            const bool isFull =
                end % bits == 0 && m_words[static_cast<size_t>(end / bits)] == ~Word(0);
            end += isFull ? bits : 1;
        }
        end = std::min(end, m_rowCount);
        result.append({row, end - 1});
        row = end;
    }
    return result;
}

void KPSelection::set(const Run &run, bool isSelected)
{
    const int from = std::max(0, run.first);
    const int to = std::min(run.last, m_rowCount - 1);
    for (int row = from; row <= to;) {
        const int within = row % bits;
        const int length = std::min(bits - within, to - row + 1);
        const Word mask = (length == bits ? ~Word(0) : ((Word(1) << length) - 1)) << within;
        Word &word = m_words[static_cast<size_t>(row / bits)];
        m_count -= std::popcount(word);
        word = isSelected ? word | mask : word & ~mask;
        m_count += std::popcount(word);
        row += length;
    }
}

void KPSelection::clear()
{
    std::fill(m_words.begin(), m_words.end(), 0);
    m_count = 0;
}

void KPSelection::selectAll()
{
    set({0, m_rowCount - 1}, true);
}

void KPSelection::add(const Run &run)
{
    set(run, true);
}

void KPSelection::remove(const Run &run)
{
    set(run, false);
}

void KPSelection::select(int row)
{
    clear();
    set({row, row}, true);
    m_anchor = row;
    m_current = row;
}

void KPSelection::toggle(int row)
{
    set({row, row}, !isSelected(row));
    m_anchor = row;
    m_current = row;
}

void KPSelection::extendByShiftClicking(int row)
{
    if (row < 0 || row >= m_rowCount)
        return;
    m_current = row;
    m_anchor = row;
    if (m_rowCount < 2)
        return;
    const int first = this->first();
    const int last = this->last();
    if (first < 0)
        select(row);
    else if (row > last)
        add({last, row});
    else if (row >= first)
        add({row, last - 1});
    else
        add({row, first - 1});
}

std::optional<int> KPSelection::goTo(int row, bool extends)
{
    if (extends)
        add({row, row});
    else
        select(row);
    m_current = row;
    return row;
}

std::optional<int> KPSelection::modify(int offset, bool extends, bool wraps)
{
    if (m_rowCount < 2)
        return std::nullopt;
    if (isEmpty())
        return goTo(m_rowCount - 1, false);
    const int target = (offset < 0 ? first() : last()) + offset;
    if (target < 0)
        return wraps ? goTo(m_rowCount - 1, extends) : std::nullopt;
    if (target >= m_rowCount)
        return wraps ? goTo(0, extends) : std::nullopt;
    return goTo(target, extends);
}

std::optional<int> KPSelection::selectFirst(bool extends)
{
    return m_rowCount == 0 ? std::nullopt : goTo(0, extends);
}

std::optional<int> KPSelection::selectLast(bool extends)
{
    return m_rowCount == 0 ? std::nullopt : goTo(m_rowCount - 1, extends);
}
