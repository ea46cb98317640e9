#include "XPFileMover.h"

#include "Karvex.h"
#include "KarvexBackup.h"
#include "XPFileInfo.h"
#include "XPFileTransfer.h"
#include "XPFreeNames.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPRename.h"
#include "XPTrash.h"

#include <QCoreApplication>
#include <cerrno>

using Kind = XPError::Kind;
using Note = XPMoveJournal::Note;
using Options = XPFileMover::Options;

static bool isErrno(const XPError &error, int number)
{
    return error.domain == XPError::posixDomain && error.code == number;
}

static Note noteOf(const QString &from, const QString &to, bool isMove, const Options &options)
{
    Note note = Note::make(from, to, isMove);
    note.attributesMayBeLost = options.attributes == XPFileMover::Attributes::MayBeLost;
    return note;
}

static void setSource(Note &note, const XPFileStamps::Stamp &stamp)
{
    note.device = stamp.device;
    note.inode = stamp.inode;
    note.size = stamp.size;
    note.modified = stamp.modified;
}

static std::optional<XPError> errorOf(int error, const QString &path)
{
    return error == 0 ? std::nullopt : std::optional(XPError::fromErrno(error, path));
}

static std::optional<PropertyValue::Date> dateOf(const QString &key, const QString &path)
{
    const auto value = Karvex::getXAttrMetaData(key, path);
    if (!value || value->kind() != PropertyValue::Kind::Date)
        return {};
    return value->date();
}

// Under the name that the file will have, as nothing on it will tell any more.
static std::optional<XPError> keepTagsInBackup(const QString &source, const QString &target)
{
    const auto tags = Karvex::getUserTags(source);
    const auto rating = Karvex::getRating(source);
    if (!tags)
        return tags.error();
    if (!rating)
        return rating.error();
    return KarvexBackup::keep({{target, *tags, *rating, dateOf(Karvex::userTagTimeKey, source),
                                dateOf(Karvex::ratingTimeKey, source)}});
}

// With a journal of the caller's when that has one already.
static std::optional<XPError> transfer(Note note, const Options &options, XPMoveJournal *journal,
                                       bool &isClean)
{
    const auto from = XPFilePlace::open(note.source);
    if (!from)
        return from.error();
    const auto to = XPFilePlace::open(note.target);
    if (!to)
        return to.error();
    XPFileTransfer transfer(*from, *to, note, options);
    if (const int error = transfer.look())
        return errorOf(error, error == EEXIST ? note.target : note.source);
    if (note.attributesMayBeLost) {
        if (auto error = keepTagsInBackup(note.source, note.target))
            return error;
    }
    XPMoveJournal own;
    if (journal == nullptr) {
        setSource(note, transfer.stamps().top());
        own = XPMoveJournal::begin(note);
    }
    auto error = transfer.run();
    isClean = transfer.isClean();
    if (isClean)
        own.end();
    return error;
}

std::optional<XPError> XPFileMover::move(const QString &from, const QString &to,
                                         const Options &options)
{
    auto error = XPRename::toFreeName(from, to);
    if (!error || !isErrno(*error, EXDEV))
        return error;
    bool isClean = true;
    return transfer(noteOf(from, to, true, options), options, nullptr, isClean);
}

std::optional<XPError> XPFileMover::copy(const QString &from, const QString &to,
                                         const Options &options)
{
    bool isClean = true;
    return transfer(noteOf(from, to, false, options), options, nullptr, isClean);
}

// "NAME beingReplaced.EXT", free.
static QString asideOf(const QString &path)
{
    QString name = XPPath::fileName(path);
    const QString extension = XPPath::extension(name);
    if (!extension.isEmpty())
        name.chop(extension.size() + 1);
    name += QStringLiteral(" beingReplaced");
    if (!extension.isEmpty())
        name += u'.' + extension;
    return XPFreeNames(XPPath::folder(path)).take(name);
}

static std::optional<XPError> putInPlace(const Note &note, const Options &options,
                                         XPMoveJournal &journal, bool &isClean)
{
    if (note.isMove) {
        auto error = XPRename::toFreeName(note.source, note.target);
        if (!error || !isErrno(*error, EXDEV))
            return error;
    }
    return transfer(note, options, &journal, isClean);
}

static XPResult<XPFileMover::Replaced> replace(Note note, const Options &options)
{
    const auto source = XPFilePlace::open(note.source);
    if (!source)
        return source.error();
    XPFileStamps::Stamp stamp;
    if (const int error =
            XPFileStamps::readOne(source->folder(), source->name().constData(), stamp))
        return XPError::fromErrno(error, note.source);
    const auto old = XPFileInfo::read(note.target);
    if (old && old->device == stamp.device && old->inode == stamp.inode)
        return XPError::make(Kind::InvalidArgument, qtTrId("XPReplacesItself"), note.source);
    setSource(note, stamp);
    const QString aside = asideOf(note.target);
    note.targetAside = XPPath::encode(XPPath::fileName(aside));
    XPMoveJournal journal = XPMoveJournal::begin(note);
    if (auto error = XPRename::toFreeName(note.target, aside)) {
        journal.end();
        return *error;
    }
    bool isClean = true;
    if (auto error = putInPlace(note, options, journal, isClean)) {
        if (XPRename::toFreeName(aside, note.target))
            isClean = false;
        if (isClean)
            journal.end();
        return *error;
    }
    XPFileMover::Replaced done;
    const auto inTrash = XPTrash::move(aside, note.target);
    if (inTrash) {
        done.inTrash = *inTrash;
    } else {
        qCWarning(xpLog).noquote()
            << "no trash takes" << XPPath::printable(aside) << inTrash.error().message;
        done.keptAside = aside;
    }
    if (isClean)
        journal.end();
    return done;
}

static XPResult<XPFileMover::Replaced> asResult(const std::optional<XPError> &error)
{
    if (error)
        return *error;
    return XPFileMover::Replaced();
}

static bool isThere(const QString &path)
{
    const auto info = XPFileInfo::read(path);
    return info || info.error().kind != Kind::NotFound;
}

XPResult<XPFileMover::Replaced> XPFileMover::moveReplacing(const QString &from, const QString &to,
                                                           const Options &options)
{
    return isThere(to) ? replace(noteOf(from, to, true, options), options)
                       : asResult(move(from, to, options));
}

XPResult<XPFileMover::Replaced> XPFileMover::copyReplacing(const QString &from, const QString &to,
                                                           const Options &options)
{
    return isThere(to) ? replace(noteOf(from, to, false, options), options)
                       : asResult(copy(from, to, options));
}
