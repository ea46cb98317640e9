#include "KPDirectoryListing.h"

#include "KPContentTypes.h"
#include "KPFileType.h"
#include "KPNameOrder.h"
#include "XPPath.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace {

struct DirectoryCloser
{
    void operator()(DIR *directory) const { ::closedir(directory); }
};
using Directory = std::unique_ptr<DIR, DirectoryCloser>;

} // namespace

static bool isDots(const char *name)
{
    return QByteArrayView(name) == "." || QByteArrayView(name) == "..";
}

static bool isPackageType(const QString &type)
{
    return KPContentTypes::conformsTo(type, QStringLiteral("com.apple.package")) ||
           KPContentTypes::conformsTo(type, QStringLiteral("com.apple.bundle"));
}

// Nothing: it vanished.
static std::optional<KPDirectoryListing::Child> readChild(int folder, const QString &folderPath,
                                                          const char *name)
{
    KPDirectoryListing::Child child;
    child.name = XPPath::decode(QByteArrayView(name));
    const auto info = XPFileInfo::readAt(folder, name);
    if (!info) {
        if (info.error().kind == XPError::Kind::NotFound)
            return {};
        child.hasFacts = false;
        return child;
    }
    child.info = *info;
    child.isPackage =
        info->isDirectory() &&
        isPackageType(KPFileType::utiForPath(folderPath + u'/' + child.name,
                                             XPPath::extension(child.name), info->mode));
    child.isFolder = info->isDirectory() && !child.isPackage;
    return child;
}

XPResult<KPDirectoryListing> KPDirectoryListing::of(const QString &folder, const Options &options)
{
    KPDirectoryListing listing;
    listing.m_folder = folder;
    const int descriptor =
        ::open(XPPath::encode(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return XPError::fromErrno(errno, folder);
    const Directory directory(::fdopendir(descriptor));
    if (!directory) {
        const int number = errno;
        ::close(descriptor);
        return XPError::fromErrno(number, folder);
    }
    for (errno = 0;; errno = 0) {
        if (options.stop && options.stop())
            return XPError::make(XPError::Kind::Cancelled, QStringLiteral("stopped"), folder);
        // NOLINTNEXTLINE(concurrency-mt-unsafe): this stream is no other thread's
        const dirent *entry = ::readdir(directory.get());
        if (entry == nullptr)
            break;
        if (isDots(entry->d_name) || (entry->d_name[0] == '.' && !options.invisible))
            continue;
        auto child = readChild(descriptor, folder, entry->d_name);
        if (child && (!options.foldersOnly || child->isFolder))
            listing.m_children.push_back(*std::move(child));
    }
    if (errno != 0)
        return XPError::fromErrno(errno, folder);
    return listing;
}

QString KPDirectoryListing::pathOf(const Child &child) const
{
    return m_folder == u"/" ? m_folder + child.name : m_folder + u'/' + child.name;
}

void KPDirectoryListing::displayNameSortFinderStyle()
{
    const KPNameKeys keys;
    std::vector<std::pair<QByteArray, Child>> keyed;
    keyed.reserve(m_children.size());
    for (Child &child : m_children)
        keyed.emplace_back(keys.key(child.name), std::move(child));
    std::sort(keyed.begin(), keyed.end(), [](const auto &a, const auto &b) {
        const int order = a.first.compare(b.first);
        return order != 0 ? order < 0 : a.second.name < b.second.name;
    });
    m_children.clear();
    for (auto &[key, child] : keyed)
        m_children.push_back(std::move(child));
}
