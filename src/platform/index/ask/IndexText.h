#pragma once

#include "IndexItem.h"
#include "MDPredicate.h"

#include <QHash>

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

// What the text store answers to the comparisons of a predicate with kMDItemTextContent.
//
// Asked before the catalog's lock is taken: a store that waits for a slow disk then holds up
// only who asks.
// Threads: a value.
class IndexTextAnswers
{
public:
    IndexTextAnswers() = default;
    // `limit` holds where the predicate is nothing but one such comparison.
    static IndexTextAnswers ask(const MDPredicate &predicate, const IndexText *text,
                                qsizetype limit = 0, const std::vector<IndexItem> *among = nullptr);

    // Null: was not asked.
    const std::vector<IndexItem> *answerTo(const MDPredicate &comparison) const;

private:
    void askBelow(const MDPredicate &predicate, const IndexText &text, qsizetype limit,
                  const std::vector<IndexItem> *among);

    QHash<const MDPredicate *, std::vector<IndexItem>> m_answers;
};
