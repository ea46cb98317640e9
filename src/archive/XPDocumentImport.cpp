#include "XPDocumentImport.h"

#include "XPFolders.h"
#include "XPImportRun.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <sys/statvfs.h>

using What = XPArchiveReader::What;
using Kind = XPError::Kind;
using Options = XPDocumentImport::Options;
using Summary = XPDocumentImport::Summary;
using Error = std::optional<XPError>;

namespace {

// One archive that stays the same file for both readings.
struct Archive
{
    XPFileDescriptor file;
    QString path;
    struct stat status = {};

    Error open()
    {
        const QByteArray bytes = XPPath::encode(path);
        file = XPFileDescriptor(::open(bytes.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        if (!file.isOpen() || ::fstat(file.get(), &status) != 0)
            return XPError::fromErrno(errno, path);
        if (!S_ISREG(status.st_mode))
            return XPError::make(Kind::InvalidArgument, qtTrId("XPNotAFile"), path);
        return {};
    }
    bool hasChanged() const
    {
        struct stat now = {};
        return ::fstat(file.get(), &now) != 0 || now.st_size != status.st_size ||
               now.st_mtim.tv_sec != status.st_mtim.tv_sec ||
               now.st_mtim.tv_nsec != status.st_mtim.tv_nsec;
    }
};

} // namespace

// Calls `take` with each event until the end. False from it stops.
static Error readAll(const Archive &archive, Summary &summary,
                     const std::function<bool(const XPArchiveReader::Event &)> &take)
{
    auto opened = XPArchiveReader::open(archive.file.get(), XPPath::folder(archive.path));
    if (!opened)
        return opened.error();
    XPArchiveReader reader = std::move(opened).value();
    summary.isBeside = reader.isBeside();
    for (;;) {
        auto event = reader.next();
        if (!event)
            return event.error();
        if (event->what == What::EndArchive)
            return {};
        if (!take(*event))
            return XPError::make(Kind::Cancelled, QStringLiteral("stopped"));
    }
}

static Error withPath(Error error, const QString &path)
{
    if (error && error->path.isEmpty())
        error->path = path;
    return error;
}

namespace {

// The bytes that the documents of an archive need: of those that are whole in it and have no file
// of their name. Sizes are claims until their document ends, and never overflow.
class Room
{
public:
    explicit Room(const QString &folder) : m_folder(folder) {}

    void take(const XPArchiveReader::Event &event)
    {
        if (event.what == What::Begin && !m_isPackage) {
            m_isNew = !XPFileInfo::read(m_folder + u'/' + event.file.path);
            m_isPackage = event.file.kind == XPArchivedFile::Kind::Package;
            m_document = 0;
        }
        if (event.what == What::Begin)
            m_document = sum(m_document, event.file.size);
        const bool ends =
            event.what == What::EndPackage || (event.what == What::End && !m_isPackage);
        if (ends && !event.isDropped && m_isNew)
            m_bytes = sum(m_bytes, m_document);
        if (event.what == What::EndPackage)
            m_isPackage = false;
    }
    qint64 bytes() const { return m_bytes; }
    bool isInPackage() const { return m_isPackage; }

private:
    static qint64 sum(qint64 one, qint64 other)
    {
        constexpr qint64 most = std::numeric_limits<qint64>::max();
        return one > most - other ? most : one + other;
    }

    const QString m_folder;
    qint64 m_bytes = 0;
    qint64 m_document = 0;
    bool m_isNew = false;
    bool m_isPackage = false;
};

} // namespace

static Error checkRoom(const Summary &summary, QString folder)
{
    struct statvfs room = {};
    while (::statvfs(XPPath::encode(folder).constData(), &room) != 0 && folder.size() > 1)
        folder = XPPath::folder(folder);
    const auto free = static_cast<double>(room.f_bavail) * static_cast<double>(room.f_frsize);
    return static_cast<double>(summary.bytes) <= free ? Error()
                                                      : XPError::fromErrno(ENOSPC, folder);
}

static void check(const Archive &archive, const QString &folder, const Options &options,
                  Summary &summary)
{
    Room room(folder);
    const auto take = [&](const XPArchiveReader::Event &event) {
        if (event.what == What::Begin && !room.isInPackage())
            ++summary.documents;
        room.take(event);
        return !options.progress || options.progress(0, summary.documents);
    };
    summary.error = withPath(readAll(archive, summary, take), archive.path);
    summary.bytes = room.bytes();
    summary.stopped = summary.error && summary.error->kind == Kind::Cancelled;
    if (!summary.error)
        summary.error = checkRoom(summary, folder);
}

QString XPDocumentImport::usualFolder(const QString &archive)
{
    QString name = XPPath::fileName(archive);
    if (const QString extension = XPPath::extension(name); !extension.isEmpty())
        name.chop(extension.size() + 1);
    return XPFolders::documents() + u'/' + name;
}

Summary XPDocumentImport::check(const QString &archive, const QString &folder,
                                const Options &options)
{
    Archive file{{}, archive};
    Summary summary;
    summary.error = file.open();
    if (!summary.error)
        ::check(file, folder, options, summary);
    return summary;
}

static Error import(const Archive &archive, const QString &folder, const Options &options,
                    Summary &summary)
{
    if (!options.dryRun) {
        if (auto error = XPFolders::create(folder))
            return error;
    }
    XPImportRun run(folder, options, summary);
    if (auto error = run.open())
        return error;
    // Asked with each piece of a file, as a document may be as large as the disk.
    const auto take = [&](const XPArchiveReader::Event &event) {
        if (options.progress && !options.progress(run.documentCount(), summary.documents))
            return false;
        run.take(event);
        return true;
    };
    Error error = archive.hasChanged() ? XPError::make(Kind::Io, qtTrId("XPChangedWhileRead"))
                                       : readAll(archive, summary, take);
    run.finish();
    return error;
}

Summary XPDocumentImport::run(const QString &archive, const QString &folder, const Options &options)
{
    Archive file{{}, archive};
    Summary summary;
    summary.error = file.open();
    if (!summary.error)
        ::check(file, folder, options, summary);
    if (!summary.error && options.agrees && !options.agrees(summary))
        summary.error = XPError::make(Kind::Cancelled, QStringLiteral("stopped"));
    if (!summary.error)
        summary.error = withPath(import(file, folder, options, summary), archive);
    summary.stopped = summary.error && summary.error->kind == Kind::Cancelled;
    if (summary.stopped)
        summary.error.reset();
    return summary;
}
