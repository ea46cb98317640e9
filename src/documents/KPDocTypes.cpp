// KPDoc: content type and sizes.
#include "KPContentTypes.h"
#include "KPDoc.h"
#include "KPFileType.h"
#include "XPPath.h"
#include "XPVolumes.h"

#include <fcntl.h>
#include <fts.h>
#include <sys/stat.h>

static const QString packageUTI = QStringLiteral("com.apple.package");
static const QString bundleUTI = QStringLiteral("com.apple.bundle");

KPTagName *KPDoc::utiTagName() const
{
    if (KPTagName *known = m_utiTagName.load(std::memory_order_acquire))
        return known;
    const quint32 asOf = stateNumber();
    const KPPooledString path = pooledPath();
    if (path.isEmpty() || path == gonePath())
        return nullptr;
    KPTagName *tag = KPTagName::utiTagNameForPath(path.toString(), unixFileMode());
    const KPDocLocker lock(m_lock);
    if (m_state == asOf)
        m_utiTagName.store(tag, std::memory_order_release);
    return tag;
}

QString KPDoc::fileType() const
{
    const KPTagName *tag = utiTagName();
    return tag ? tag->uti() : QString();
}

QString KPDoc::fileTypeExtension() const
{
    const QString extension = KPFileType::fileExtensionForUTI(fileType());
    return extension.isEmpty() ? XPPath::extension(fsName()) : extension;
}

bool KPDoc::conformsTo(const QString &uti) const
{
    return KPContentTypes::conformsTo(fileType(), uti);
}

bool KPDoc::isPackage() const
{
    return isDirectoryOrPackage() && (conformsTo(packageUTI) || conformsTo(bundleUTI));
}

bool KPDoc::isDirectory() const
{
    return isDirectoryOrPackage() && !isPackage();
}

bool KPDoc::isAliasFile() const
{
    return conformsTo(KPFileType::aliasUTI);
}

static bool endsIn(KPPooledString path, QStringView extension)
{
    return path.view().endsWith(extension, Qt::CaseInsensitive);
}

bool KPDoc::isEmailMessage() const
{
    return endsIn(pooledPath(), u".emlx");
}

bool KPDoc::isAddressBookCard() const
{
    return endsIn(pooledPath(), u".abcdp");
}

bool KPDoc::isBookmark() const
{
    return endsIn(pooledPath(), u".webbookmark");
}

KPTagName::Tags KPDoc::tagNamesOfTypeUTType() const
{
    KPTagName::Tags tags;
    const QString name = fsName();
    for (const QString &uti : KPContentTypes::typeTree(fileType())) {
        if (KPTagName *tag = KPTagName::tagNameForUTITag(uti, name))
            tags.append(tag);
    }
    return tags;
}

// --- Sizes

QString KPDoc::volumeID() const
{
    return XPVolumes::volumeOf(filePath()).mountPoint;
}

qint64 KPDoc::fileSize() const
{
    const KPDocLocker lock(m_lock);
    return unixFileSize() + (m_rare ? m_rare->resourceForkSize : 0);
}

// A file's second stream, where the volume shows it as a name of its own; 0 elsewhere.
static qint64 resourceForkSize(const QByteArray &path)
{
    struct stat status = {};
    const QByteArray fork = path + "/..namedfork/rsrc";
    return ::lstat(fork.constData(), &status) == 0 ? status.st_size : 0;
}

void KPDoc::addResourceForkInfoToSize()
{
    const quint32 asOf = stateNumber();
    const qint64 size = resourceForkSize(fileSystemRepresentation());
    const KPDocLocker lock(m_lock);
    if (m_state == asOf && (size != 0 || m_rare))
        rare().resourceForkSize = size;
}

// All files below a folder of this volume. Links count themselves.
static qint64 sizeOfContents(QByteArray path)
{
    char *roots[] = {path.data(), nullptr};
    FTS *walk = ::fts_open(roots, FTS_PHYSICAL | FTS_NOCHDIR | FTS_XDEV, nullptr);
    qint64 size = 0;
    for (const FTSENT *entry = walk ? ::fts_read(walk) : nullptr; entry; entry = ::fts_read(walk)) {
        if (entry->fts_info == FTS_F || entry->fts_info == FTS_SL)
            size += entry->fts_statp->st_size;
    }
    if (walk)
        ::fts_close(walk);
    return size;
}

qint64 KPDoc::actualFileSize() const
{
    const QByteArray path = fileSystemRepresentation();
    const auto info = XPFileInfo::readAt(AT_FDCWD, path.constData());
    if (!info)
        return 0;
    return info->isDirectory() ? sizeOfContents(path) : info->size + resourceForkSize(path);
}

QString KPDoc::fileSizeGroup() const
{
    struct Group
    {
        qint64 most; // bytes
        const char *name;
    };
    static constexpr Group groups[] = {
        {0, "KPGroupNameZeroLength"},
        {9'999, "KPGroupNameLessThan10k"},
        {99'999, "KPGroupNameLessThan100k"},
        {999'999, "KPGroupNameLessThan1MB"},
        {19'999'999, "KPGroupNameLessThan20MB"},
        {49'999'999, "KPGroupNameLessThan50MB"},
        {99'999'999, "KPGroupNameLessThan100MB"},
        {999'999'999, "KPGroupNameLessThan1GB"},
    };
    if (isDirectoryOrPackage())
        return isPackage() ? QStringLiteral("KPGroupNamePackage")
                           : QStringLiteral("KPGroupNameFolder");
    for (const Group &group : groups) {
        if (unixFileSize() <= group.most)
            return QString::fromLatin1(group.name);
    }
    return QStringLiteral("KPGroupNameMoreThan1GB");
}
