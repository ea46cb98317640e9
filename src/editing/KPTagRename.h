#pragma once

#include <QJsonObject>
#include <QStringList>

// Another name for a tag, or none: what it makes of the tags of one file. A tag with "/" in it is
// a path of tags; renaming one renames what is below it. Case aside, as tags are compared.
// Threads: a value.
struct KPTagRename
{
    QString from;
    QString to;                // empty: the tag is taken off
    bool withBranch = true;    // what is below it too
    QStringList alsoFrom = {}; // other spellings that get the new name with it

    bool isDeletion() const { return to.isEmpty(); }
    // The renamed one in the place of the old; where the new one is there already, they merge.
    QStringList applied(const QStringList &tags) const;
    QStringList allFrom() const { return QStringList{from} + alsoFrom; }
    bool operator==(const KPTagRename &) const = default;

    // As it stands in the lists of waiting changes and the journals of edits. What is not given
    // there is empty, `withBranch` true.
    QJsonObject toJson() const;
    static KPTagRename fromJson(const QJsonObject &object);

private:
    QString meant(const QString &tag) const; // as which of the old names; empty: as none

public:
    // Posted, on the main thread in the end, after one was made over the library: "from" and "to"
    // in the user information. Who keeps names of tags (saved searches) follows.
    static const QString renamedNotification; // "KPNotificationTagRenamed"
};
