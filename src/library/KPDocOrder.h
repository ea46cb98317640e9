#pragma once

#include "KPNameOrder.h"
#include "KPShownDocument.h"

// The order in which documents are shown. Equal documents of one order follow each other by name
// (numbers by value: "9" before "10"), then by path, so that every order is total and stable.
// Threads: a value.
struct KPDocOrder
{
    enum class Key { Name, Modified, Rating, Size };

    Key key = Key::Name;
    bool ascending = true;

    bool operator==(const KPDocOrder &) const = default;

    // Saved form: "name", "modified", "rating", "size", with "-" in front when descending.
    QString toText() const;
    static KPDocOrder fromText(const QString &text); // anything else: by name
};

// A document with what it is compared by: the collation key of its name, and facts of the record
// as they were when it took its place, for they may change at any time.
struct KPOrderedDocument
{
    KPShownDocument document;
    qint64 modified;
    qint64 size;
    QCollatorSortKey nameKey;
    int row = 0; // its place in the model

    KPOrderedDocument(const KPShownDocument &shown, const QCollator &collator);
};

// Whether `a` comes before `b`.
bool kpComesBefore(const KPDocOrder &order, const KPOrderedDocument &a, const KPOrderedDocument &b);
