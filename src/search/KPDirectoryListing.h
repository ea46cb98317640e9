#pragma once

#include "XPError.h"
#include "XPFileInfo.h"

#include <functional>
#include <vector>

// What lies directly in a folder, with the facts of each: for the views that show folders.
//
// Names in which a "." comes first are left out unless asked for. A child that vanishes while the
// folder is read is no child; one whose facts cannot be read is listed without them.
// Threads: a value; reading is a blocking file call, one statx for each child.
class KPDirectoryListing
{
public:
    struct Child
    {
        QString name; // the display name is the name on disk
        XPFileInfo info;
        bool hasFacts = true;
        bool isFolder = false; // to be entered: no package, and no link
        bool isPackage = false;
    };
    struct Options
    {
        bool invisible;
        bool foldersOnly;           // packages are none
        std::function<bool()> stop; // may be empty
    };

    // The folder must be there and readable; a link to one counts. Cancelled when `stop` said so.
    static XPResult<KPDirectoryListing> of(const QString &folder, const Options &options);
    static XPResult<KPDirectoryListing> of(const QString &folder) { return of(folder, {}); }

    const QString &folder() const { return m_folder; }
    const std::vector<Child> &children() const { return m_children; } // in no order until sorted
    QString pathOf(const Child &child) const;

    // As file managers do: by name in the user's language, case aside, numbers by value; names
    // that are equal so by their code units.
    void displayNameSortFinderStyle();

private:
    QString m_folder;
    std::vector<Child> m_children;
};
