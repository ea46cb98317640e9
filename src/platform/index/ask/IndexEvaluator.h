#pragma once

#include "IndexCatalog.h"
#include "IndexText.h"
#include "IndexTextPattern.h"
#include "MDPredicate.h"

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
    // `texts`: what the text store answered for this predicate. Null: no content matches.
    explicit IndexEvaluator(const IndexCatalog &catalog, const IndexTextAnswers *texts = nullptr)
        : m_catalog(catalog), m_texts(texts)
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
    struct Test;
    void addTests(const MDPredicate &predicate, std::vector<Test> &tests) const;
    RowSet andRows(const MDPredicate &predicate, RowSet within) const;
    RowSet compare(const MDPredicate &predicate, const RowSet &within) const;
    RowSet equalOrOrdered(const MDPredicate &predicate, const RowSet &within) const;
    RowSet systemRows(const MDPredicate &predicate) const;
    RowSet typeRows(const MDPredicate &predicate, const RowSet &within) const;
    RowSet contentRows(const MDPredicate &predicate) const;
    RowSet typesUnited(const MDPredicate &predicate) const;
    static int cost(const MDPredicate &predicate);
    quint64 estimate(const MDPredicate &predicate) const;

    const IndexCatalog &m_catalog;
    const IndexTextAnswers *m_texts;
};
