#pragma once

#include "KPResultSource.h"

// Decides whether a document belongs to the results of one request: a pure function of the
// document's name, tags and rating, with the request's words and tags prepared once.
//
// Words are compared folded (case and accents), tags by decomposed lower case. What could not be
// read of a document is unknown, not empty: it fulfils no criterion, "no such tag" included.
// Threads: a value.
class KPRequestMatcher
{
public:
    explicit KPRequestMatcher(const KPSearchRequest &request);

    bool matches(const KPFoundDocument &document) const;

private:
    bool matchesWords(const KPFoundDocument &document) const;
    bool matchesTags(const KPFoundDocument &document) const;
    bool matchesRating(const KPFoundDocument &document) const;

    QStringList m_words;
    QStringList m_tags;
    QStringList m_notTags;
    std::optional<KPSearchRequest::Rating> m_rating;
};
