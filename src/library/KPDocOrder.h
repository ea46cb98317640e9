#pragma once

#include "KPResultSource.h"

#include <QCollator>

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

// A document with what comparing it costs once: the collation key of its name.
struct KPOrderedDocument
{
    KPFoundDocument document;
    QCollatorSortKey nameKey;
    int row = 0; // its place in the model

    KPOrderedDocument(const KPFoundDocument &found, const QCollator &collator);
};

// Whether `a` comes before `b`.
bool kpComesBefore(const KPDocOrder &order, const KPOrderedDocument &a, const KPOrderedDocument &b);

// The user's collation, numbers by value.
QCollator kpNameCollator();
