#pragma once

#include <QList>
#include <QString>
#include <optional>

// What documents are sorted or grouped by, and in which direction.
// Threads: a value.
struct KPSortKey
{
    // Added: when the file came to be on this disk; a file that another program of the convention
    // dated says so itself (kMDItemDateAdded). Tags: the user's. Folder: where it lies.
    enum class Field { Name, Type, Size, Modified, Created, Added, Rating, Tags, Folder };

    Field field = Field::Name;
    bool ascending = true;

    bool operator==(const KPSortKey &) const = default;

    // "name", "type", "size", "modified", "created", "added", "rating", "tags", "folder", with "-"
    // in front when descending. Case aside; nothing for any other text.
    QString toText() const;
    static std::optional<KPSortKey> fromText(const QString &text);
    static QStringList names();
};

// How results are shown: in groups or not, and in each by several keys, the first first. Equal
// documents follow each other by name, then by path: every order is total.
struct KPSortOrder
{
    QList<KPSortKey> keys = {KPSortKey()};
    std::optional<KPSortKey> group;

    bool operator==(const KPSortOrder &) const = default;

    // Keys with "," between. Nothing where one is none, or stands twice.
    static std::optional<QList<KPSortKey>> keysFromText(const QString &text);
};
