#pragma once

#include "KPTagRename.h"
#include "KarvexRepair.h"
#include "XPError.h"

#include <QStringList>
#include <functional>
#include <optional>

// Changing the tags, the rating and the comment of files, one at a time, so that it can be undone.
// Threads: any; blocking file calls. Values.

// What the user asked for.
struct KPFileEdit
{
    struct Tags
    {
        QStringList before; // what all the files had in common
        QStringList after;  // what the user made of it
        bool operator==(const Tags &) const = default;
    };

    QStringList paths;
    std::optional<Tags> tags;
    std::optional<double> rating;
    std::optional<KPTagRename> rename = {}; // instead of `tags`
    std::optional<QString> comment = {};    // empty: none
    bool repairs = false;                   // takes off attributes that nobody can understand

    bool isEmpty() const { return !changesTags() && !rating && !comment && !repairs; }
    bool changesTags() const { return tags || rename; }
    bool operator==(const KPFileEdit &) const = default;
};

// What came of it on one file.
struct KPFileChange
{
    struct Tags
    {
        QStringList before;
        QStringList after;
    };
    struct Rating
    {
        double before = 0;
        double after = 0;
    };
    struct Comment
    {
        QString before;
        QString after;
    };

    QString path;
    std::optional<Tags> tags;
    std::optional<Rating> rating;
    std::optional<Comment> comment = {};
    QList<KarvexRepair::Bytes> repaired = {};

    bool isEmpty() const { return !tags && !rating && !comment && repaired.isEmpty(); }
    KPFileChange reversed() const;
};

struct KPFileOutcome
{
    KPFileChange change; // what was done, also when the rest failed
    std::optional<XPError> error;
};

namespace KPFileEditing {

// Told of each change just before the file is written, so that it can be taken back even if the
// program ends in the middle of it. It may be told again, or of one that then fails.
using Intend = std::function<void(const KPFileChange &change)>;

// The tags that a file has besides the common ones survive, ahead of these.
KPFileOutcome apply(const KPFileEdit &edit, const QString &path, const Intend &intend = {});

// Makes the change once more, or a reversed one for the first time: `before` becomes `after`, but
// only where the file still has `before`, so that nothing that somebody else wrote since is lost
// (Kind::InvalidArgument, said in words). What is `after` already is left alone.
KPFileOutcome repeat(const KPFileChange &change);

} // namespace KPFileEditing
