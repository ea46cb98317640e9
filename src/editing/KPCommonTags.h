#pragma once

#include "XPError.h"

#include <QList>
#include <QStringList>
#include <optional>

// What the tags and ratings of a selection have in common, read from the files.
// Threads: read() any, blocking; a value then.
struct KPCommonTags
{
    struct Some
    {
        QString tag;
        qsizetype count = 0; // files that have it; not all do
    };

    QStringList paths;            // that could be read: only these may be edited
    QStringList common;           // in the order of the last file
    QList<Some> some;             // most often first
    std::optional<double> rating; // none: they differ
    QList<XPError> unreadable;

    static KPCommonTags read(const QStringList &paths);
};
