#include "XPDocumentExport.h"

#include "XPArchiveKeys.h"
#include "XPArchiveReader.h"
#include "XPArchiveWriter.h"
#include "XPFileFacts.h"
#include "XPFolderNames.h"
#include "XPPath.h"
#include "XPUnnamedFile.h"

#include <QCoreApplication>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

using Kind = XPError::Kind;
using Error = std::optional<XPError>;

static constexpr int deepestPart = 90;

namespace {

class Export
{
public:
    Export(int file, const QString &folder) : m_writer(file, false), m_folder(folder) {}

    // Why the document is not in the archive. `m_failure` is set when there can be no archive.
    Error add(const QString &path);
    XPResult<qint64> finish()
    {
        if (auto error = m_writer.finish())
            return *error;
        return m_writer.documentCount();
    }

    qint64 bytes() const { return m_bytes; }
    const Error &failure() const { return m_failure; }

private:
    void write(const Error &error) { m_failure = m_failure ? m_failure : error; }
    Error addFile(const QString &absolute, const QString &path, bool isPart);
    Error addPackage(const QString &absolute, const QString &path);
    Error addParts(const QString &folder, const QString &path, int depth);
    Error addPart(const QString &absolute, const QString &path, int depth);
    Error addContents(const QString &absolute, qint64 size);

    XPArchiveWriter m_writer;
    const QString m_folder; // with a slash at its end
    qint64 m_bytes = 0;
    Error m_failure;
};

Error Export::add(const QString &path)
{
    const QString relative = path.mid(m_folder.size());
    if (!XPArchivedFile::isSafe(relative, true))
        return XPError::make(Kind::InvalidArgument, qtTrId("XPHiddenOrTooLong"), path);
    return IsPackage(path) ? addPackage(path, relative) : addFile(path, relative, false);
}

bool isSameFile(const XPFileInfo &one, const XPFileInfo &other)
{
    return one.inode == other.inode && one.device == other.device && one.size == other.size &&
           one.modified == other.modified && one.changed == other.changed;
}

Error Export::addContents(const QString &absolute, qint64 size)
{
    const XPFileDescriptor file(::open(XPPath::encode(absolute).constData(),
                                       O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen())
        return XPError::fromErrno(errno, absolute);
    while (size > 0 && !m_failure) {
        QByteArray bytes(std::min<qint64>(size, XPArchiveKeys::pieceSize), Qt::Uninitialized);
        const ssize_t got = ::read(file.get(), bytes.data(), static_cast<size_t>(bytes.size()));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return XPError::fromErrno(errno, absolute);
        if (got == 0)
            break;
        bytes.resize(got);
        write(m_writer.addContents(bytes));
        m_bytes += got;
        size -= got;
    }
    return {};
}

Error Export::addFile(const QString &absolute, const QString &path, bool isPart)
{
    const auto before = XPFileInfo::read(absolute);
    const auto file = XPArchivedFile::read(absolute, path, XPArchivedFile::Kind::File);
    if (!before || !file)
        return before ? file.error() : before.error();
    write(isPart ? m_writer.beginPart(*file) : m_writer.begin(*file));
    Error error = addContents(absolute, file->size);
    const auto after = XPFileInfo::read(absolute);
    if (!error && (!after || !isSameFile(*before, *after)))
        error = XPError::make(Kind::Io, qtTrId("XPChangedWhileRead"), absolute);
    write(m_writer.end(error.has_value()));
    return error;
}

Error Export::addPackage(const QString &absolute, const QString &path)
{
    const auto package = XPArchivedFile::read(absolute, path, XPArchivedFile::Kind::Package);
    if (!package)
        return package.error();
    write(m_writer.begin(*package));
    Error error = addParts(absolute, {}, 0);
    write(m_writer.endPackage(error.has_value()));
    return error;
}

Error Export::addParts(const QString &folder, const QString &path, int depth)
{
    if (depth > deepestPart)
        return XPError::make(Kind::TooLarge, qtTrId("XPNestedTooDeeply"), folder);
    QStringList names;
    const int problem = XPFolderNames::forEach(AT_FDCWD, XPPath::encode(folder).constData(),
                                               [&names](QByteArrayView name) {
                                                   names.append(XPPath::decode(name));
                                                   return true;
                                               });
    Error error = problem == 0 ? Error() : XPError::fromErrno(problem, folder);
    names.sort();
    for (const QString &name : names) {
        if (!error && !m_failure)
            error =
                addPart(folder + u'/' + name, path.isEmpty() ? name : path + u'/' + name, depth);
    }
    return error;
}

Error Export::addPart(const QString &absolute, const QString &path, int depth)
{
    const auto info = XPFileInfo::read(absolute);
    if (!info)
        return info.error();
    if (!info->isDirectory())
        return addFile(absolute, path, true);
    const auto folder = XPArchivedFile::read(absolute, path, XPArchivedFile::Kind::Folder);
    if (!folder)
        return folder.error();
    write(m_writer.beginPart(*folder));
    return addParts(absolute, path, depth + 1);
}

// What was written is read once more, with all its checksums and counts.
Error verify(int file)
{
    auto archive = XPArchiveReader::open(file, {});
    if (!archive)
        return archive.error();
    XPArchiveReader reader = std::move(archive).value();
    for (;;) {
        const auto event = reader.next();
        if (!event)
            return event.error();
        if (event->what == XPArchiveReader::What::EndArchive)
            return {};
    }
}

} // namespace

QString XPDocumentExport::commonFolder(const QStringList &paths)
{
    if (paths.isEmpty())
        return QStringLiteral("/");
    QString common = XPPath::folder(paths.first());
    for (const QString &path : paths) {
        while (common.size() > 1 && !path.startsWith(common + u'/'))
            common = XPPath::folder(common);
    }
    return common;
}

static Error writeTo(XPUnnamedFile &archive, const QStringList &paths,
                     const XPDocumentExport::Options &options, XPDocumentExport::Result &result)
{
    const QString common = XPDocumentExport::commonFolder(paths);
    Export documents(archive.file(), common == u"/" ? common : common + u'/');
    qint64 done = 0;
    for (const QString &path : paths) {
        if (options.progress && !options.progress(done++))
            return XPError::make(Kind::Cancelled, QStringLiteral("stopped"));
        const Error error = documents.add(path);
        if (documents.failure())
            return documents.failure();
        if (error && options.failed)
            options.failed(path, *error);
    }
    const auto count = documents.finish();
    if (!count)
        return count.error();
    result.documents = *count;
    result.bytes = documents.bytes();
    if (const int error = archive.sync())
        return XPError::fromErrno(error);
    return verify(archive.file());
}

XPDocumentExport::Result XPDocumentExport::run(const QStringList &paths, const QString &archive,
                                               const Options &options)
{
    Result result;
    const QString folder = XPPath::folder(archive);
    XPFileDescriptor place(
        ::open(XPPath::encode(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    XPUnnamedFile file;
    int error = place.isOpen() ? file.open(std::move(place)) : errno;
    // Known before the work, though it may be taken meanwhile.
    if (error == 0 && XPFileInfo::read(archive))
        error = EEXIST;
    if (error == 0)
        result.error = writeTo(file, paths, options, result);
    struct stat status = {};
    if (error == 0 && !result.error && ::fstat(file.file(), &status) == 0)
        result.archiveSize = status.st_size;
    if (error == 0 && !result.error)
        error = file.give(XPPath::encode(XPPath::fileName(archive)));
    if (error != 0)
        result.error = XPError::fromErrno(error, archive);
    else if (!result.error)
        file.syncFolder();
    return result;
}
