#pragma once

#include "IndexValues.h"

#include <QHash>
#include <map>
#include <memory>
#include <roaring/roaring.hh>
#include <vector>

// The number of a row in memory. A renamed item gets a new slot, so that the names of a chunk
// stay in one piece in the order of its rows; the item's number stays the same.
using IndexSlot = quint32;

// A set of slots as it was at one moment: shared, never changed.
using RowSet = std::shared_ptr<const Roaring>;

// A set of slots that changes, handed out as a shared snapshot that is made again only after a
// change. Changed under the catalog's exclusive lock, read under its shared one.
class IndexPosting
{
public:
    void add(IndexSlot slot);
    void addAll(const std::vector<IndexSlot> &slots);
    void addRange(IndexSlot begin, IndexSlot end);
    void remove(IndexSlot slot);
    bool contains(IndexSlot slot) const { return m_rows.contains(slot); }
    bool isEmpty() const { return m_rows.isEmpty(); }
    const Roaring &rows() const { return m_rows; }
    RowSet snapshot() const;

private:
    Roaring m_rows;
    mutable RowSet m_snapshot; // atomic access: readers may make it at the same time
};

// Who has which value of one attribute: a set of rows for each distinct text and number.
//
// An attribute with very many distinct numbers (times) keeps no sets of them: who asks looks at
// the values of the present rows one by one.
class IndexAttributePostings
{
public:
    void add(IndexSlot slot, const IndexValues::Entry &entry);
    void remove(IndexSlot slot, const IndexValues::Entry &entry); // the same as was added

    // Rows where the attribute has a value.
    const IndexPosting &present() const { return m_present; }
    const QHash<IndexTexts::Number, IndexPosting> &texts() const { return m_texts; }
    const std::map<double, IndexPosting> &numbers() const { return m_numbers; }
    bool hasTooManyNumbers() const { return m_tooManyNumbers; }

private:
    static constexpr size_t maximumNumbers = 1024;
    IndexPosting m_present;
    QHash<IndexTexts::Number, IndexPosting> m_texts;
    std::map<double, IndexPosting> m_numbers;
    bool m_tooManyNumbers = false;
};
