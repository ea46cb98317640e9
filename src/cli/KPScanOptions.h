#pragma once

#include "KPCommandLine.h"
#include "XPPageEdit.h"

// How `murnctl scan` is to scan: from its words, over a profile that was kept.
// Threads: a value; reads and writes settings.
struct KPScanOptions
{
    QString device; // part of a scanner's name; empty: the one last used
    std::optional<int> unit;
    QString mode = QStringLiteral("Color");
    int resolution = 300;
    std::optional<int> paper;
    bool duplex = false;
    bool cleans = false; // crops to the paper and straightens
    bool leavesOutBlank = false;
    bool recognisesText = false;
    int pages = 0; // 0: one of a flatbed, all of a feeder
    QStringList tags;
    std::optional<double> rating;
    QString toPath;

    static XPResult<KPScanOptions> parse(const KPCommandLine &line);
    std::optional<XPError> saveProfile(const QString &name) const;

    static const QString profilesKey; // "KPScanProfiles": by name, dictionaries of these
};
