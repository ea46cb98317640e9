#pragma once

#include "KPDoc.h"
#include "KPResultSource.h"

// A document of the results as views show it: its record, and what the search said of it.
// Threads: a value.
struct KPShownDocument
{
    // Makes the record when there is none yet; the file is not read.
    explicit KPShownDocument(const KPFoundDocument &found);

    KPDoc *doc;   // never null
    QString path; // as the search knows it: the record may have heard of a rename before
    QStringList tags;
    double rating;
    QString error; // why tags or rating could not be read; empty: they could
};
