#pragma once

#include <QString>
#include <memory>
#include <optional>
#include <vector>

// A metadata query as a tree: what the query text says, before anything is looked up.
//
// Threads: an immutable value after parsing; shared freely.
struct MDPredicate
{
    enum class Kind {
        And,     // all of `children`
        Or,      // any of `children`
        Not,     // not children[0]
        Compare, // attribute op value
        InRange, // low <= attribute <= high
        True,    // everything: the text "true"
        False,
    };
    enum class Op { Equal, NotEqual, Less, Greater, LessOrEqual, GreaterOrEqual };

    // What a comparison is made with. Text is kept as it was written between the quotes, with
    // escapes resolved: `wildcard[i]` tells whether unit i is an unescaped * or ?.
    struct Value
    {
        enum class Type {
            Present, // a bare *: the attribute has any value
            Text,
            Number, // dates too: seconds since 2001 (`isDate`)
        };
        Type type = Type::Text;
        QString text;
        std::vector<bool> wildcard;
        bool quoted = false;           // a bare word may also be a number
        bool ignoreCase = false;       // c
        bool ignoreDiacritics = false; // d
        bool wordBased = false;        // w
        double number = 0;
        bool isDate = false;
    };

    Kind kind = Kind::True;
    Op op = Op::Equal;
    QString attribute; // "*": any textual attribute but content and path
    Value value;       // Compare; InRange: the low end
    Value high;        // InRange
    std::vector<std::shared_ptr<const MDPredicate>> children;
};

using MDPredicatePtr = std::shared_ptr<const MDPredicate>;
