#pragma once

#include "XPError.h"
#include "XPFileDescriptor.h"

#include <QByteArray>
#include <QString>
#include <vector>

// Notes of the moves and copies that are under way, for whoever starts after a crash.
//
// Each is a small file of its own (a property list) in the program's support folder, synced before
// the first change and gone after the last, and locked (flock) by the process that works on it:
// a note that can be locked is that of a dead process. See docs/formats.md.
// Threads: any; one note belongs to one thread. Blocking file calls.
class XPMoveJournal
{
public:
    struct Note
    {
        bool isMove = false;
        bool attributesMayBeLost = false;
        QString source;
        QString target;
        QByteArray temporary;   // the name of the unfinished copy in the target's folder
        QByteArray sourceAside; // the name of a source on its way out, in its folder
        QByteArray targetAside; // the name of a replaced file, in the target's folder; or empty
        // The source as it was.
        quint64 device = 0;
        quint64 inode = 0;
        qint64 size = 0;
        qint64 modified = 0; // nanoseconds since 1970

        // With names that nobody else uses.
        static Note make(const QString &source, const QString &target, bool isMove);
    };

    XPMoveJournal() = default; // no note
    XPMoveJournal(XPMoveJournal &&) = default;
    XPMoveJournal &operator=(XPMoveJournal &&) = default;

    // One that cannot be written is no reason to do nothing: without it a crash leaves more behind,
    // but nothing is lost.
    static XPMoveJournal begin(const Note &note);
    // The work is done or undone: the note goes.
    void end();

    struct Left;
    // What dead processes left. Notes that cannot be read are none: they never were complete.
    static std::vector<Left> takeOver();

private:
    XPMoveJournal(XPFileDescriptor file, QByteArray path);

    XPFileDescriptor m_file;
    QByteArray m_path;
};

// A note, locked by us now.
struct XPMoveJournal::Left
{
    Note note;
    XPMoveJournal journal;
};
