#include "IndexText.h"

IndexTextAnswers IndexTextAnswers::ask(const MDPredicate &predicate, const IndexText *text,
                                       qsizetype limit, const std::vector<IndexItem> *among)
{
    IndexTextAnswers answers;
    if (text)
        answers.askBelow(predicate, *text, limit, among);
    return answers;
}

void IndexTextAnswers::askBelow(const MDPredicate &predicate, const IndexText &text,
                                qsizetype limit, const std::vector<IndexItem> *among)
{
    const bool compares = predicate.kind == MDPredicate::Kind::Compare ||
                          predicate.kind == MDPredicate::Kind::InRange;
    if (compares) {
        // What is to be found absent must be known whole.
        const bool negated = predicate.op == MDPredicate::Op::NotEqual;
        if (predicate.attribute == u"kMDItemTextContent")
            m_answers[&predicate] = text.itemsMatching(predicate.value, negated ? 0 : limit, among);
        return;
    }
    for (const MDPredicatePtr &child : predicate.children)
        askBelow(*child, text, 0, among); // NOLINT(misc-no-recursion): the parser limits the depth
}

const std::vector<IndexItem> *IndexTextAnswers::answerTo(const MDPredicate &comparison) const
{
    const auto answer = m_answers.constFind(&comparison);
    return answer == m_answers.cend() ? nullptr : &*answer;
}
