#pragma once

#include "XPFileMover.h"
#include "XPFilePlace.h"
#include "XPFileStamps.h"
#include "XPMoveJournal.h"

// One copy between two open places, and for a move the end of its source: the steps that a rename
// cannot take. Used once. Threads: one; blocking file calls.
class XPFileTransfer
{
public:
    using Note = XPMoveJournal::Note;
    using Options = XPFileMover::Options;

    XPFileTransfer(const XPFilePlace &from, const XPFilePlace &to, const Note &note,
                   const Options &options);

    // What can be known before anything is made: 0 or the errno.
    int look();
    // All of it; after a failure the copy is gone again. `isClean` says whether nothing of it is
    // left.
    std::optional<XPError> run();
    bool isClean() const { return m_isClean; }
    const XPFileStamps &stamps() const { return m_before; }

private:
    int copy();
    int check();
    int place();
    int removeSource();
    int putSourceBack();
    void undo(const QByteArray &name);
    XPError failure(int error) const;

    const XPFilePlace &m_from;
    const XPFilePlace &m_to;
    const Note &m_note;
    const Options &m_options;
    XPFileStamps m_before;
    bool m_isClean = true;
    bool m_hasChanged = false;
};
