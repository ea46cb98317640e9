#pragma once

#include <QStringList>
#include <optional>

// What a search asks for: every criterion must hold. An empty request matches every document.
// Threads: a value.
struct KPSearchRequest
{
    enum class Comparison { Less, LessOrEqual, Equal, NotEqual, GreaterOrEqual, Greater };
    struct Rating
    {
        Comparison comparison = Comparison::GreaterOrEqual;
        double stars = 0;
        bool operator==(const Rating &) const = default;
    };

    QString words;                // each blank-separated word begins a word of the name or of a tag
    QStringList tags;             // all of them
    QStringList notTags;          // none of them
    std::optional<Rating> rating; // an unrated file has 0 stars
    QStringList folders;          // absolute; empty: the user's home

    bool operator==(const KPSearchRequest &) const = default;
};
