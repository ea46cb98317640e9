#pragma once

#include "XPError.h"

#include <QStringList>
#include <optional>

// How paper is scanned and what is done to the pages: as the settings have it, or as it is kept
// under a name (setting "KPScanProfiles": dictionaries by name).
// Threads: values; the static functions read and write settings.
struct XPScanProfile
{
    std::optional<int> unit; // the part of the scanner; nothing: the one it has or was used last
    QString mode = QStringLiteral("Color"); // as SANE names it: Color, Gray, Lineart
    int resolution = 300;                   // dots an inch
    std::optional<int> paper;               // XPPaperSizes; nothing: the one used last
    int pages = 0; // no more than these; 0: one of a flatbed, all of a feeder
    bool duplex = false;
    bool cleans = false; // crops to the paper and straightens
    bool turnsUpright = false;
    bool leavesOutBlank = false;
    bool separates = false; // a blank page ends a document
    bool recognisesText = false;

    static QStringList names(); // in the order of the alphabet
    // Nothing: none is kept under that name.
    static std::optional<XPScanProfile> named(const QString &name);
    std::optional<XPError> save(const QString &name) const; // in place of one of that name
    static std::optional<XPError> remove(const QString &name);

    static XPScanProfile ofSettings();
    void useForSettings() const; // all but the part of the scanner and the number of pages

    static const QString profilesKey;
    // The settings, which the preferences have too.
    static const QString modeKey, resolutionKey, cleansKey, turnsUprightKey, leavesOutBlankKey,
        separatesKey, recognisesTextKey;
};
