#pragma once

#include <QStringList>

// A state's list of folders made ready for asking about many paths: real folders, sorted, each
// once and each with a "/" at its end, so that a path is looked up by binary search.
// Threads: a value. No file call, save for the past 7 days of the managed folder.
class KPOptimizedFolders
{
public:
    enum class Reach {
        Below,  // everything below a folder; a folder inside another is left out of the list
        Inside, // what lies directly in a folder
    };

    KPOptimizedFolders() = default;
    // `folders` as KPSearchState holds them: paths and names of places.
    KPOptimizedFolders(const QStringList &folders, Reach reach);

    // The list had no entries. One of entries that name no folder holds nothing.
    bool setsNoCondition() const { return !m_hasEntries; }
    // Neither a folder nor the whole disk.
    bool isEmpty() const { return m_folders.isEmpty() && !m_isWholeDisk; }
    // The list names the whole disk. Other volumes (XPVolumes: removable and network ones) are
    // no part of it.
    bool isWholeDisk() const { return m_isWholeDisk; }
    const QStringList &folders() const { return m_folders; }
    bool holds(QStringView path) const;
    // The path is one of the folders or below one. Of a list with Reach::Below.
    bool holdsOrIs(QStringView path) const;
    // Of a folder: another one of the list has it below.
    bool isInsideAnother(QStringView path) const;

    // The two questions, on folders as folders() answers them.
    static bool isBelow(const QStringList &folders, QStringView path, bool wholeDisk);
    static bool isInside(const QStringList &folders, QStringView path, bool wholeDisk);

private:
    QStringList m_folders;
    Reach m_reach = Reach::Below;
    bool m_hasEntries = false;
    bool m_isWholeDisk = false;
    bool m_isEverything = false; // other volumes too
};
