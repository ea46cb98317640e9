#pragma once

#include "KPDoc.h"

#include <optional>

// What the selected documents have in common. Threads: any; a value.
struct KPSelectionFacts
{
    explicit KPSelectionFacts(const KPDoc::Docs &documents = {});

    QStringList paths;
    QStringList commonTags;       // by lower case, in the order and spelling of the last document
    std::optional<double> rating; // nothing: they differ
    qint64 size = 0;              // of all together
    qsizetype unreadable = 0;     // documents whose tags could not be read
    QString error;                // why, for the first of them

    // Nobody can tell what would be overwritten.
    bool canEdit() const { return !paths.isEmpty() && unreadable < paths.size(); }
};
