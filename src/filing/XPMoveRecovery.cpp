#include "XPMoveRecovery.h"

#include "XPFileInfo.h"
#include "XPFilePlace.h"
#include "XPFileStamps.h"
#include "XPFileTree.h"
#include "XPFreeNames.h"
#include "XPLog.h"
#include "XPMoveJournal.h"
#include "XPPath.h"
#include "XPTrash.h"

#include <cerrno>
#include <cstdlib>

using Note = XPMoveJournal::Note;
using Stamp = XPFileStamps::Stamp;

// Some file systems count time in steps of two seconds.
static constexpr qint64 sameTime = 2'000'000'000;

namespace {

// One note's places, and what is found there.
class Case
{
public:
    Case(const Note &note, const XPFilePlace &source, const XPFilePlace &target, QStringList &done)
        : m_note(note), m_source(source), m_target(target), m_done(done)
    {
    }

    // False when something could not be done: the note is kept for another time.
    bool putRight()
    {
        bool isDone = removeUnfinished();
        isDone = settleReplaced() && isDone;
        return settleSource() && isDone;
    }

private:
    static bool isThere(const XPFilePlace &place, const QByteArray &name)
    {
        Stamp stamp;
        return XPFileStamps::readOne(place.folder(), name.constData(), stamp) != ENOENT;
    }

    void tell(const char *what, const QString &path)
    {
        m_done.append(QLatin1String(what) + QStringLiteral(": ") + XPPath::printable(path));
    }

    bool removeUnfinished()
    {
        if (!isThere(m_target, m_note.temporary))
            return true;
        tell("an unfinished copy is removed", m_note.target);
        return XPFileTree::remove(m_target.folder(), m_note.temporary) == 0;
    }

    // The file that was to be put at the target, moved or copied there.
    bool isTargetNew() const
    {
        Stamp stamp;
        if (XPFileStamps::readOne(m_target.folder(), m_target.name().constData(), stamp) != 0)
            return false;
        const bool isItself = stamp.device == m_note.device && stamp.inode == m_note.inode;
        const bool isLike =
            std::llabs(stamp.modified - m_note.modified) <= sameTime && stamp.size == m_note.size;
        return isItself || isLike;
    }

    bool settleReplaced()
    {
        const QByteArray &aside = m_note.targetAside;
        if (aside.isEmpty() || !isThere(m_target, aside))
            return true;
        if (!isThere(m_target, m_target.name())) {
            tell("a file that was to be replaced is back", m_note.target);
            return m_target.rename(aside, m_target.name()) == 0;
        }
        if (!isTargetNew())
            return true; // both can be seen, and nobody but the user knows more
        const QString folder = XPPath::folder(m_note.target);
        tell("a replaced file goes to the trash", m_note.target);
        (void)XPTrash::move(folder + u'/' + XPPath::decode(aside), m_note.target);
        return true;
    }

    bool isWholeAtTarget(const QByteArray &name) const
    {
        return XPFileTree::contains(m_target.folder(), m_target.name(), m_source.folder(), name,
                                    !m_note.attributesMayBeLost) == 0;
    }

    bool settleSource()
    {
        if (!m_note.isMove)
            return true;
        if (isThere(m_source, m_note.sourceAside))
            return settleAside();
        Stamp stamp;
        if (XPFileStamps::readOne(m_source.folder(), m_source.name().constData(), stamp) != 0 ||
            stamp.device != m_note.device || stamp.inode != m_note.inode ||
            !isThere(m_target, m_target.name()) || !isWholeAtTarget(m_source.name()))
            return true;
        return m_source.rename(m_source.name(), m_note.sourceAside) == 0 && settleAside();
    }

    // A folder that was being removed is a part of what is at the target.
    bool settleAside()
    {
        if (isWholeAtTarget(m_note.sourceAside)) {
            tell("a move is finished", m_note.target);
            return XPFileTree::remove(m_source.folder(), m_note.sourceAside) == 0;
        }
        tell("a file is back where it was", m_note.source);
        if (m_source.rename(m_note.sourceAside, m_source.name()) == 0)
            return true;
        const QString free =
            XPFreeNames(XPPath::folder(m_note.source)).take(XPPath::fileName(m_note.source));
        return m_source.rename(m_note.sourceAside, XPPath::encode(XPPath::fileName(free))) == 0;
    }

    const Note &m_note;
    const XPFilePlace &m_source;
    const XPFilePlace &m_target;
    QStringList &m_done;
};

} // namespace

QStringList XPMoveRecovery::run()
{
    QStringList done;
    for (auto &left : XPMoveJournal::takeOver()) {
        const auto source = XPFilePlace::open(left.note.source);
        const auto target = XPFilePlace::open(left.note.target);
        // The volume is away, perhaps: another time.
        if (source && target && Case(left.note, *source, *target, done).putRight())
            left.journal.end();
    }
    for (const QString &line : done)
        qCInfo(xpLog).noquote() << "after a crash:" << line;
    return done;
}
