#include "XPFileTransfer.h"

#include "XPFileTree.h"
#include "XPFreeNames.h"
#include "XPLog.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

XPFileTransfer::XPFileTransfer(const XPFilePlace &from, const XPFilePlace &to, const Note &note,
                               const Options &options)
    : m_from(from), m_to(to), m_note(note), m_options(options)
{
}

int XPFileTransfer::look()
{
    if (const int error = m_before.read(m_from.folder(), m_from.name()))
        return error;
    const auto &top = m_before.top();
    if (S_ISDIR(top.mode) && m_to.isInside(top.device, top.inode))
        return EINVAL;
    XPFileStamps::Stamp there;
    const int error = XPFileStamps::readOne(m_to.folder(), m_to.name().constData(), there);
    if (error != ENOENT)
        return error == 0 ? EEXIST : error;
    if (!m_note.isMove)
        return 0;
    if (::faccessat(m_from.folder(), ".", W_OK | X_OK, AT_EACCESS) != 0)
        return errno;
    return XPFileTree::mayRemove(m_from.folder(), m_from.name());
}

std::optional<XPError> XPFileTransfer::run()
{
    int error = copy();
    if (error == 0)
        error = check();
    if (error == 0)
        error = place();
    if (error != 0) {
        undo(m_note.temporary);
        return failure(error);
    }
    error = m_to.sync();
    if (error == 0 && !m_to.isStillThere())
        error = ENOENT;
    if (error == 0 && m_note.isMove)
        error = removeSource();
    if (error == 0)
        return {};
    undo(m_to.name());
    return failure(error);
}

int XPFileTransfer::copy()
{
    XPFileTree::Copy copy;
    copy.attributesMayBeLost = m_options.attributes == XPFileMover::Attributes::MayBeLost;
    copy.progress = m_options.progress;
    return XPFileTree::copy(m_from.folder(), m_from.name(), m_to.folder(), m_note.temporary, copy);
}

// The source is what it was, and the copy looks like it.
int XPFileTransfer::check()
{
    XPFileStamps now;
    XPFileStamps made;
    int error = now.read(m_from.folder(), m_from.name());
    if (error == 0)
        error = made.read(m_to.folder(), m_note.temporary);
    if (error != 0)
        return error;
    m_hasChanged = !now.isSameAs(m_before) || now.top().changed != m_before.top().changed;
    return m_hasChanged || !made.looksLike(m_before) ? EILSEQ : 0;
}

int XPFileTransfer::place()
{
    if (!m_to.isStillThere())
        return ENOENT;
    return m_to.rename(m_note.temporary, m_to.name());
}

// The source is first given a name that nobody else knows: whatever is under it then is the file
// that goes, also when another program puts a newer one in its place just now.
int XPFileTransfer::removeSource()
{
    if (const int error = m_from.rename(m_from.name(), m_note.sourceAside))
        return error;
    XPFileStamps now;
    int error = now.read(m_from.folder(), m_note.sourceAside);
    m_hasChanged = error == 0 && !now.isSameAs(m_before);
    if (error == 0 && m_hasChanged)
        error = EILSEQ;
    if (error != 0)
        return putSourceBack() == 0 ? error : 0;
    error = XPFileTree::remove(m_from.folder(), m_note.sourceAside);
    if (error == 0) {
        (void)m_from.sync(); // it may come back after a power failure: the note then tells of it
        return 0;
    }
    // The copy is whole and the source is not, or not surely: what is left of it is removed later.
    const bool isWhole = !S_ISDIR(m_before.top().mode);
    if (isWhole && putSourceBack() == 0)
        return error;
    qCWarning(xpLog) << "a moved file's remains could not be removed:" << xpErrnoString(error);
    m_isClean = false;
    return 0;
}

// Under its name, or a free one where that was taken meanwhile.
int XPFileTransfer::putSourceBack()
{
    int error = m_from.rename(m_note.sourceAside, m_from.name());
    if (error == EEXIST) {
        XPFreeNames names(XPPath::folder(m_from.path()));
        const QString path = names.take(XPPath::decode(m_from.name()));
        error = m_from.rename(m_note.sourceAside, XPPath::encode(XPPath::fileName(path)));
    }
    m_isClean = m_isClean && error == 0;
    return error;
}

void XPFileTransfer::undo(const QByteArray &name)
{
    if (XPFileTree::remove(m_to.folder(), name) != 0)
        m_isClean = false;
}

XPError XPFileTransfer::failure(int error) const
{
    using Kind = XPError::Kind;
    if (m_hasChanged)
        return XPError::make(Kind::Io, qtTrId("XPChangedWhileCopied"), m_from.path());
    if (error == EILSEQ)
        return XPError::make(Kind::Io, qtTrId("XPCopyDiffers"), m_from.path());
    if (error == ECANCELED)
        return XPError::make(Kind::Cancelled, QStringLiteral("stopped"), m_from.path());
    return XPError::fromErrno(error, m_from.path());
}
