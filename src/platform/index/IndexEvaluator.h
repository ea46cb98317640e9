#pragma once

#include "IndexCatalog.h"
#include "IndexTextPattern.h"
#include "MDPredicate.h"

// Who knows the files' text (the text store; none in a test).
class IndexText
{
public:
    virtual ~IndexText() = default;
    // Items whose text matches, in no order. `limit`: at most so many (0: all). `among`: only
    // these are of interest (null: all); a few are tested one by one. Any thread.
    virtual std::vector<IndexItem> itemsMatching(const MDPredicate::Value &value, qsizetype limit,
                                                 const std::vector<IndexItem> *among) const = 0;
};

// Finds the rows of a catalog that satisfy a predicate.
//
// Sets of rows come from the postings where there are some, from passes over columns and names
// elsewhere; in an AND the cheapest test goes first and the others look only at what is left.
// Built for the duration of one catalog Reading, which the caller holds. Any thread.
//
// What a comparison means: both sides are decomposed and folded as the modifiers say; on a
// many-valued attribute == is true when any value matches, and != is its negation, so true for
// an absent attribute; < and > are false for an absent one. Texts compare with texts, numbers,
// booleans and dates with numbers. The attribute * stands for name, kind and every attribute that
// holds text, not for content, path and the type identifiers (which are no words of the file's).
class IndexEvaluator
{
public:
    IndexEvaluator(const IndexCatalog &catalog, const IndexText *text)
        : m_catalog(catalog), m_text(text)
    {
    }

    // The matching rows, or those among `within`.
    RowSet rows(const MDPredicate &predicate, const RowSet &within = {}) const;
    RowSet rows(const MDPredicatePtr &predicate, const RowSet &within = {}) const
    {
        return rows(*predicate, within);
    }

private:
    RowSet all(const RowSet &within) const;
    RowSet andRows(const MDPredicate &predicate, RowSet within) const;
    RowSet compare(const MDPredicate &predicate, const RowSet &within) const;
    RowSet equalOrOrdered(const MDPredicate &predicate, const RowSet &within) const;
    RowSet nameRows(const MDPredicate &predicate, const RowSet &within) const;
    void scanNames(const IndexTextPattern &pattern, Roaring &out) const;
    RowSet anyText(const MDPredicate &predicate, const RowSet &within) const;
    RowSet typeRows(const MDPredicate &predicate) const;
    RowSet attributeRows(const IndexAttributePostings &postings,
                         const MDPredicate &predicate) const;
    RowSet pathRows(const MDPredicate &predicate, const RowSet &within) const;
    RowSet contentRows(const MDPredicate &predicate) const;
    RowSet columnRows(const MDPredicate &predicate, const RowSet &within) const;
    static int cost(const MDPredicate &predicate);
    QString nameText(IndexSlot slot) const;

    const IndexCatalog &m_catalog;
    const IndexText *m_text;
};
