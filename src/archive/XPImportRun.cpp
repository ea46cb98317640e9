#include "XPImportRun.h"

#include "KarvexMerge.h"
#include "XPFileAttributes.h"
#include "XPFileMover.h"
#include "XPFileTree.h"
#include "XPImportedFacts.h"
#include "XPPath.h"
#include "XPRename.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using What = XPArchiveReader::What;
using Kind = XPError::Kind;
using Step = XPDocumentImport::Step;
using Error = std::optional<XPError>;

// Files that wait without a name: open descriptors, and bytes that the disk has not got yet.
static constexpr size_t mostWaiting = 128;
static constexpr qint64 mostWaitingBytes = 64 << 20;
static constexpr int readOnly = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

XPImportRun::XPImportRun(const QString &folder, const XPDocumentImport::Options &options,
                         XPDocumentImport::Summary &summary)
    : m_folder(folder), m_options(options), m_summary(summary)
{
}

Error XPImportRun::open()
{
    const int error = m_place.open(m_folder);
    const bool isToBeMade = m_options.dryRun && error == ENOENT;
    return error == 0 || isToBeMade ? Error() : XPError::fromErrno(error, m_folder);
}

QByteArray XPImportRun::Document::name() const
{
    return XPPath::encode(XPPath::fileName(path));
}

static QByteArray hiddenName()
{
    return ".murn-new-" + QByteArray::number(QRandomGenerator::global()->generate64(), 16);
}

void XPImportRun::take(const Event &event)
{
    switch (event.what) {
    case What::Begin:
        if (m_document && m_document->file.kind == XPArchivedFile::Kind::Package)
            beginPart(event.file);
        else
            begin(event.file);
        break;
    case What::Contents:
        contents(event.bytes);
        break;
    case What::End:
        end(event.isDropped);
        break;
    case What::EndPackage:
        endPackage(event.isDropped);
        break;
    case What::EndArchive:
        break;
    }
}

// --- One document

void XPImportRun::begin(const XPArchivedFile &file)
{
    Document document{file, m_folder + u'/' + file.path};
    int error =
        m_place.isOpen() ? m_place.folderOf(file.path, !m_options.dryRun, document.folder) : ENOENT;
    const bool isFree = m_options.dryRun && error == ENOENT;
    if (error == 0)
        error = file.kind == XPArchivedFile::Kind::Package ? beginPackage(document)
                                                           : beginFile(document);
    if (error != 0 && !isFree)
        document.problem = XPError::fromErrno(error, document.path);
    m_document = std::move(document);
}

int XPImportRun::beginFile(Document &document) const
{
    const auto there = XPFileInfo::readAt(document.folder.get(), document.name().constData());
    if (!there && there.error().kind != Kind::NotFound)
        return EIO;
    if (there) {
        if (!there->isRegular())
            return EEXIST;
        document.there = *there;
        document.isNewer = document.file.modified > there->modified;
        document.isSame = there->size == document.file.size;
        document.thereFile = XPFileDescriptor(
            ::openat(document.folder.get(), document.name().constData(), readOnly));
        if (!document.thereFile.isOpen())
            return errno;
    }
    if (m_options.dryRun || (document.there && !document.isNewer))
        return 0;
    return document.made.open(XPFileDescriptor(::fcntl(document.folder.get(), F_DUPFD_CLOEXEC, 0)));
}

static bool isAt(int file, qint64 at, QByteArrayView bytes)
{
    QByteArray found(bytes.size(), Qt::Uninitialized);
    qsizetype have = 0;
    while (have < bytes.size()) {
        const ssize_t got =
            ::pread(file, found.data() + have, static_cast<size_t>(bytes.size() - have), at + have);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return false;
        have += got;
    }
    return std::memcmp(found.constData(), bytes.data(), static_cast<size_t>(have)) == 0;
}

void XPImportRun::contents(const QByteArray &bytes)
{
    if (m_part) {
        QByteArrayView left = bytes;
        while (!m_document->problem && m_partFile.isOpen() && !left.isEmpty()) {
            const ssize_t done =
                ::write(m_partFile.get(), left.data(), static_cast<size_t>(left.size()));
            if (done >= 0)
                left = left.sliced(done);
            else if (errno != EINTR)
                m_document->problem = XPError::fromErrno(errno, m_document->path);
        }
        return;
    }
    Document &document = *m_document;
    if (document.problem)
        return;
    if (document.isSame)
        document.isSame = isAt(document.thereFile.get(), document.at, bytes);
    document.at += bytes.size();
    const int error = document.made.isOpen() ? document.made.write(bytes) : 0;
    if (error != 0)
        document.problem = XPError::fromErrno(error, document.path);
}

void XPImportRun::end(bool isDropped)
{
    if (m_part) {
        const int error =
            m_partFile.isOpen() ? XPImportedFacts::apply(*m_part, m_partFile.get()) : 0;
        if (error != 0 && !m_document->problem)
            m_document->problem = XPError::fromErrno(error, m_document->path);
        m_part.reset();
        m_partFile = {};
        return;
    }
    Document document = std::exchange(m_document, std::nullopt).value();
    ++m_count;
    if (isDropped && !document.problem)
        document.problem = XPError::make(Kind::NotFound,
                                         m_summary.isBeside ? qtTrId("XPNotBesideArchive")
                                                            : qtTrId("XPNotReadForArchive"),
                                         document.path);
    if (document.problem)
        tell({document.path, Action::Failed, {}, {}, document.problem});
    else if (document.there && document.isSame)
        tell(merge(document));
    else if (document.there && !document.isNewer)
        tell({document.path, Action::Kept});
    else if (m_options.dryRun)
        tell({document.path,
              document.there ? Action::Replaced : Action::Added,
              {},
              XPImportedFacts::record(document.file)});
    else
        wait(std::move(document));
}

// What the archive says more of a document that is there.
Step XPImportRun::merge(const Document &document) const
{
    const auto result =
        KarvexMerge::apply(XPImportedFacts::record(document.file), document.path, m_options.dryRun);
    Step step{document.path, result.changes ? Action::Changed : Action::Same, result.before,
              result.after};
    if (!result.failures.isEmpty())
        step.problem = result.failures.first();
    if (!m_options.dryRun && !step.problem && document.thereFile.isOpen()) {
        const int error = XPImportedFacts::addMissing(document.file, document.thereFile.get());
        if (error != 0)
            step.problem = XPError::fromErrno(error, document.path);
    }
    if (step.problem)
        step.action = Action::Failed;
    return step;
}

// --- Packages

int XPImportRun::beginPackage(Document &document)
{
    const auto there = XPFileInfo::readAt(document.folder.get(), document.name().constData());
    if (there) {
        document.there = *there;
        return there->isDirectory() ? 0 : EEXIST;
    }
    if (there.error().kind != Kind::NotFound)
        return EIO;
    if (m_options.dryRun)
        return 0;
    document.package = hiddenName();
    if (::mkdirat(document.folder.get(), document.package.constData(), 0777) != 0)
        return errno;
    m_parts = {};
    return m_parts.open(
        XPFileDescriptor(::openat(document.folder.get(), document.package.constData(),
                                  O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)));
}

void XPImportRun::beginPart(const XPArchivedFile &part)
{
    const bool isFolder = part.kind == XPArchivedFile::Kind::Folder;
    if (!isFolder)
        m_part = part;
    if (m_document->problem || m_document->package.isEmpty())
        return;
    XPFileDescriptor folder;
    const QByteArray name = XPPath::encode(XPPath::fileName(part.path));
    int error = m_parts.folderOf(part.path, false, folder);
    if (error == 0 && isFolder && ::mkdirat(folder.get(), name.constData(), 0777) != 0)
        error = errno;
    if (error == 0 && !isFolder) {
        m_partFile =
            XPFileDescriptor(::openat(folder.get(), name.constData(),
                                      O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
        error = m_partFile.isOpen() ? 0 : errno;
    }
    if (error != 0)
        m_document->problem = XPError::fromErrno(error, m_document->path);
}

void XPImportRun::endPackage(bool isDropped)
{
    Document document = std::exchange(m_document, std::nullopt).value();
    ++m_count;
    const int folder = document.folder.get();
    Step step{
        document.path, Action::Added, {}, XPImportedFacts::record(document.file), document.problem};
    if (isDropped && !step.problem)
        step.problem = XPError::make(Kind::NotFound, qtTrId("XPNotReadForArchive"), document.path);
    if (document.there && !step.problem) {
        step = merge(document);
        step.action = step.action == Action::Same ? Action::Kept : step.action;
    }
    if (!document.package.isEmpty()) {
        int error =
            step.problem ? ECANCELED : XPImportedFacts::apply(document.file, m_parts.root());
        if (error == 0 && ::syncfs(m_parts.root()) != 0)
            error = errno;
        if (error == 0)
            error = XPRename::toFreeNameAt(folder, document.package.constData(), folder,
                                           document.name().constData());
        if (error != 0)
            (void)XPFileTree::remove(folder, document.package);
        if (error != 0 && !step.problem)
            step.problem = XPError::fromErrno(error, document.path);
    }
    m_parts = {};
    if (step.problem)
        step.action = Action::Failed;
    tell(step);
}

// --- New files

void XPImportRun::wait(Document document)
{
    int error = XPImportedFacts::apply(document.file, document.made.file());
    if (error != 0) {
        tell({document.path, Action::Failed, {}, {}, XPError::fromErrno(error, document.path)});
        return;
    }
    m_waitingBytes += document.file.size;
    m_waiting.push_back(std::move(document));
    if (m_waiting.size() >= mostWaiting || m_waitingBytes >= mostWaitingBytes)
        flush();
}

void XPImportRun::flush()
{
    struct stat root = {};
    int error = ::fstat(m_place.root(), &root) == 0 && ::syncfs(m_place.root()) == 0 ? 0 : errno;
    for (Document &document : m_waiting) {
        struct stat status = {};
        // Another volume may be mounted below.
        const bool isElsewhere =
            ::fstat(document.made.file(), &status) != 0 || status.st_dev != root.st_dev;
        const int own = error == 0 && isElsewhere ? document.made.sync() : error;
        if (own != 0)
            tell({document.path, Action::Failed, {}, {}, XPError::fromErrno(own, document.path)});
        else
            tell(document.there ? replace(document) : give(document));
    }
    m_waiting.clear();
    m_waitingBytes = 0;
}

Step XPImportRun::give(Document &document) const
{
    Step step{document.path, Action::Added, {}, XPImportedFacts::record(document.file)};
    if (const int error = document.made.give(document.name())) {
        step.action = Action::Failed;
        step.problem = XPError::fromErrno(error, document.path);
    }
    return step;
}

// What stood on the old one stands on the new one too, but for what the archive has later.
Step XPImportRun::replace(Document &document) const
{
    Step step{document.path, Action::Failed};
    const QByteArray hidden = hiddenName();
    int error = XPFileAttributes::copy(document.thereFile.get(), document.made.file(), false);
    if (error == 0)
        error = document.made.give(hidden);
    if (error != 0) {
        step.problem = XPError::fromErrno(error, document.path);
        return step;
    }
    const auto replaced = XPFileMover::moveReplacing(
        XPPath::folder(document.path) + u'/' + XPPath::decode(hidden), document.path);
    if (!replaced) {
        (void)::unlinkat(document.folder.get(), hidden.constData(), 0);
        step.problem = replaced.error();
        return step;
    }
    document.thereFile = {};
    step = merge(document);
    step.action = step.problem ? step.action : Action::Replaced;
    step.keptAside = replaced->keptAside;
    return step;
}

void XPImportRun::finish()
{
    // A package whose archive ended in the middle of it.
    if (m_document && !m_document->package.isEmpty())
        (void)XPFileTree::remove(m_document->folder.get(), m_document->package);
    if (!m_waiting.empty())
        flush();
    if (m_place.isOpen() && !m_options.dryRun)
        (void)::syncfs(m_place.root());
}

void XPImportRun::tell(const Step &step)
{
    ++m_summary.counts[static_cast<int>(step.action)];
    if (m_options.told)
        m_options.told(step);
}
