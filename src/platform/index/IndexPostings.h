#pragma once

#include "PropertyValue.h"

#include <QHash>
#include <QStringList>
#include <map>
#include <memory>
#include <roaring/roaring.hh>
#include <vector>

// A set of slots as it was at one moment: shared, never changed.
using RowSet = std::shared_ptr<const Roaring>;

// A set of slots that changes, handed out as a shared snapshot that is made again only after a
// change. Changed under the catalog's exclusive lock, read under its shared one.
class IndexPosting
{
public:
    void add(quint32 slot);
    void remove(quint32 slot);
    bool contains(quint32 slot) const { return m_rows.contains(slot); }
    bool isEmpty() const { return m_rows.isEmpty(); }
    const Roaring &rows() const { return m_rows; }
    RowSet snapshot() const;

private:
    Roaring m_rows;
    mutable RowSet m_snapshot; // atomic access: readers may make it at the same time
};

// Who has which value of one attribute.
//
// Texts (the elements of an array each) and numbers, booleans and dates each have a set of rows
// per distinct value. An attribute with very many distinct numbers (times) keeps them as one
// ordered list instead.
class IndexAttributePostings
{
public:
    void add(quint32 slot, const PropertyValue &value);
    void remove(quint32 slot, const PropertyValue &value); // the same value as was added

    // Rows where the attribute has a value; an empty list or text counts as none.
    const IndexPosting &present() const { return m_present; }
    const QHash<QString, IndexPosting> &texts() const { return m_texts; }
    // Adds to `out` the rows that have a number with low <= n <= high.
    void rowsInRange(double low, double high, Roaring &out) const;
    // The posting of exactly that number when there is one of its own.
    const IndexPosting *exact(double number) const;

    static bool isPresent(const PropertyValue &value);
    // The numbers and texts that a value is compared by: an array's elements each.
    static QStringList textsOf(const PropertyValue &value);
    static std::vector<double> numbersOf(const PropertyValue &value);

private:
    void spillNumbers();

    static constexpr size_t maximumNumberSets = 1024;
    IndexPosting m_present;
    QHash<QString, IndexPosting> m_texts;
    std::map<double, IndexPosting> m_numbers;
    std::multimap<double, quint32> m_manyNumbers; // instead of m_numbers once there are too many
    bool m_spilled = false;
};
