#pragma once

#include "KPCommandLine.h"
#include "XPScanProfile.h"

// How `murnctl scan` is to scan: from its words, over a profile that was kept.
// Threads: a value.
struct KPScanOptions : XPScanProfile
{
    QString device; // part of a scanner's name; empty: the one last used
    QStringList tags;
    std::optional<double> rating;
    QString toPath;

    static XPResult<KPScanOptions> parse(const KPCommandLine &line);
};
