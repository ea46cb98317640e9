#include "XPMoveJournal.h"

#include "PropertyValue.h"
#include "XPAtomicFile.h"
#include "XPFileLock.h"
#include "XPFolderNames.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <atomic>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

static const char ending[] = ".move";
static constexpr qint64 longestNote = 1 << 20;

static QString folder()
{
    return XPFolders::ourApplicationSupport() + QStringLiteral("/Moves");
}

// Notes are made and looked for one process at a time, so that one that is not locked yet is
// never taken for a dead process's.
static XPResult<XPFileLock> lock()
{
    return XPFileLock::take(folder() + QStringLiteral("/lock"));
}

static QByteArray token()
{
    static std::atomic<int> counter;
    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return QByteArray::number(::getpid()) + '-' + QByteArray::number(qint64{now.tv_sec}, 36) +
           QByteArray::number(qint64{now.tv_nsec}, 36) + '-' + QByteArray::number(++counter);
}

XPMoveJournal::Note XPMoveJournal::Note::make(const QString &source, const QString &target,
                                              bool isMove)
{
    Note note;
    note.isMove = isMove;
    note.source = source;
    note.target = target;
    const QByteArray name = token();
    note.temporary = ".murn-copy-" + name + ".tmp";
    note.sourceAside = ".murn-moved-" + name + ".tmp";
    return note;
}

static PropertyValue bytesOf(const QString &path)
{
    return XPPath::encode(path);
}

static PropertyValue number(quint64 value)
{
    return PropertyValue::integer(static_cast<qint64>(value));
}

static QByteArray encoded(const XPMoveJournal::Note &note)
{
    const PropertyValue::Dictionary list = {
        {QStringLiteral("move"), PropertyValue::boolean(note.isMove)},
        {QStringLiteral("attributesMayBeLost"), PropertyValue::boolean(note.attributesMayBeLost)},
        {QStringLiteral("source"), bytesOf(note.source)},
        {QStringLiteral("target"), bytesOf(note.target)},
        {QStringLiteral("temporary"), note.temporary},
        {QStringLiteral("sourceAside"), note.sourceAside},
        {QStringLiteral("targetAside"), note.targetAside},
        {QStringLiteral("device"), number(note.device)},
        {QStringLiteral("inode"), number(note.inode)},
        {QStringLiteral("size"), PropertyValue::integer(note.size)},
        {QStringLiteral("modified"), PropertyValue::integer(note.modified)}};
    return XPPropertyList::writeBinary(list).valueOr({});
}

static bool isName(const QByteArray &name)
{
    return !name.isEmpty() && !name.contains('/') && name != "." && name != "..";
}

// Only what begin() wrote: names without a way out of their folder, and our own for what goes.
static std::optional<XPMoveJournal::Note> decoded(const QByteArray &bytes)
{
    const auto value = XPPropertyList::readBinary(bytes);
    if (!value)
        return {};
    const auto &list = value->dictionary();
    const auto data = [&list](const char *key) { return list.value(QLatin1String(key)).data(); };
    const auto integer = [&list](const char *key) {
        return list.value(QLatin1String(key)).integerValue();
    };
    XPMoveJournal::Note note;
    note.isMove = list.value(QStringLiteral("move")).boolValue();
    note.attributesMayBeLost = list.value(QStringLiteral("attributesMayBeLost")).boolValue();
    note.source = XPPath::decode(data("source"));
    note.target = XPPath::decode(data("target"));
    note.temporary = data("temporary");
    note.sourceAside = data("sourceAside");
    note.targetAside = data("targetAside");
    note.device = static_cast<quint64>(integer("device"));
    note.inode = static_cast<quint64>(integer("inode"));
    note.size = integer("size");
    note.modified = integer("modified");
    const bool isOurs = note.temporary.startsWith(".murn-copy-") && isName(note.temporary) &&
                        note.sourceAside.startsWith(".murn-moved-") && isName(note.sourceAside);
    const bool isUsable = note.source.startsWith(u'/') && note.target.startsWith(u'/') &&
                          (note.targetAside.isEmpty() || isName(note.targetAside));
    return isOurs && isUsable ? std::optional(note) : std::nullopt;
}

XPMoveJournal::XPMoveJournal(XPFileDescriptor file, QByteArray path)
    : m_file(std::move(file)), m_path(std::move(path))
{
}

static void syncFolder()
{
    const XPFileDescriptor opened(
        ::open(XPPath::encode(folder()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.isOpen())
        (void)::fsync(opened.get());
}

XPMoveJournal XPMoveJournal::begin(const Note &note)
{
    const auto locked = lock();
    const QByteArray bytes = encoded(note);
    const QByteArray path = XPPath::encode(folder()) + '/' + note.temporary.mid(1) + ending;
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    XPFileDescriptor file(locked ? ::open(path.constData(), flags, 0600) : -1);
    const auto size = static_cast<size_t>(bytes.size());
    const bool isWritten = file.isOpen() && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 &&
                           ::write(file.get(), bytes.constData(), size) == bytes.size() &&
                           ::fsync(file.get()) == 0;
    if (!isWritten) {
        qCWarning(xpLog) << "no note could be made of a move:" << xpErrnoString(errno);
        if (file.isOpen())
            ::unlink(path.constData());
        return {};
    }
    syncFolder();
    return {std::move(file), path};
}

void XPMoveJournal::end()
{
    if (m_file.isOpen())
        ::unlink(m_path.constData());
    m_file.close();
}

std::vector<XPMoveJournal::Left> XPMoveJournal::takeOver()
{
    std::vector<Left> left;
    const QByteArray notes = XPPath::encode(folder()) + '/';
    if (::access(notes.constData(), F_OK) != 0)
        return left;
    const auto locked = lock();
    if (!locked)
        return left;
    XPFolderNames::forEach(AT_FDCWD, notes.constData(), [&left, &notes](QByteArrayView name) {
        const QByteArray path = notes + name.toByteArray();
        if (!name.endsWith(ending))
            return true;
        XPFileDescriptor file(::open(path.constData(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
        if (!file.isOpen() || ::flock(file.get(), LOCK_EX | LOCK_NB) != 0)
            return true;
        const auto bytes = XPAtomicFile::read(XPPath::decode(path), longestNote);
        const auto note = bytes ? decoded(*bytes) : std::nullopt;
        XPMoveJournal journal(std::move(file), path);
        if (note)
            left.push_back({*note, std::move(journal)});
        else if (bytes)
            journal.end();
        return true;
    });
    return left;
}
