#pragma once

#include <QStringList>
#include <memory>

// What a search state asks about places: which folders the entries of its lists stand for, and
// where the metadata index is of no use.
//
// Entries are paths ("~" too) or names of places: everywhere, one of the scope constants of
// MDQuery, or the user's own locations, which are the roots of the index. An entry that is none
// of these stands for nothing.
// Threads: any; install() at start-up and in tests alone, when no other thread asks. No file call.
class KPSearchPlaces
{
public:
    struct Real
    {
        QStringList folders;
        bool everything = false; // the whole computer with all its volumes
    };

    virtual ~KPSearchPlaces() = default;

    virtual Real realFolders(const QStringList &entries) const;
    // Whether a folder of the list is the path or has it below.
    virtual bool pathInFolderArray(const QStringList &entries, const QString &path) const;
    // Where the volumes are mounted that the index does not cover: removable and network ones on
    // which none of its roots lies. (Spelled so.)
    virtual QStringList spotlightNotAvaialableVolumeList() const;

    static const KPSearchPlaces &current();
    static void install(std::unique_ptr<KPSearchPlaces> places);

    // On a removable or a network volume, which "/" does not stand for.
    static bool isOnOtherVolume(const QString &path);

    static const QString everywhere; // "KPQueryScopeEverywhere"
    // The user's locations.
    static const QString preferredLocations; // "KPQueryScopePreferredLocations"
    static const QString preferredShort;     // "KPPrefLoc"
};
