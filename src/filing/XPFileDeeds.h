#pragma once

#include "XPFileReport.h"

#include <QList>

// One thing that was done to a file and can be taken back.
struct XPFileDeed
{
    enum class Kind {
        Moved,
        Made,     // a copy, or a new document
        Trashed,  // `after` is in the trash
        Restored, // `before` was in the trash
        Marked,   // or unmarked, as `mark` says; `before` equals `after`
    };

    Kind kind = Kind::Moved;
    QString before; // where the file was; empty for one that was made
    QString after;  // where it is
    XPMarkChange mark = {};

    bool operator==(const XPFileDeed &) const = default;
};

// What was done to files, and taking it back: the part of undo that touches the disk.
//
// Taking back is a deed too, which can be taken back again. Nothing is ever replaced by it, and
// nothing deleted: what was made goes to the trash, and a file whose old name is taken stays.
// Threads: any; blocking file calls, those of XPFileMover and XPTrash. Values.
namespace XPFileDeeds {

// All that was done to one document, in order; taken back as one.
using Chain = QList<XPFileDeed>;

// Of what was done for a request, those that can be taken back.
QList<Chain> of(const XPFileReport &report);

struct Outcome
{
    QList<Chain> deeds; // what was done now
    QList<Chain> left;  // what was not come to, as a stop was asked for
    QList<XPError> failures;
};
// Takes everything back, the last first. A document of which not all can be taken back is left as
// it is, with the reason; others are not.
Outcome takeBack(const QList<Chain> &deeds, const XPFileRunOptions &options = {});

} // namespace XPFileDeeds
