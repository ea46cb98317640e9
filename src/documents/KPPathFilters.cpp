#include "KPPathFilters.h"

#include "XPFolders.h"
#include "XPPath.h"

#include <QList>
#include <cstring>

namespace {

// What was found in a path, as bits.
enum Found : unsigned {
    Nothing = 0,
    Trash = 1,
    Caches = 2,
    CachedMetadata = 4,
    MadeByPrograms = 8,  // thumbnails and such: never shown
    ShownInLibrary = 16, // what of a Library folder is shown
};

// A folder anywhere in a path: the text that follows a slash.
struct Part
{
    QByteArrayView text;
    unsigned found = Nothing;
};

// The user's own folders, each with what may follow: "" matches whatever begins with these
// characters, "/" what lies in the folder.
struct UserFolders
{
    QByteArray trash;
    QByteArray caches;
    QByteArray inbox;
    QList<QByteArray> libraries;
};

} // namespace

static constexpr Part parts[] = {
    {".Trashes/", Trash},
    {".Trash/", Trash},
    {"Library/Caches/", Caches},
    {"Library/Caches/Metadata/", CachedMetadata},
    {"Library/Mail/", ShownInLibrary},
    {"Library/Mail Downloads/", ShownInLibrary},
    {"Library/Application Support/Zel/Pending Documents/", ShownInLibrary},
    {"Library/Application Support/AddressBook/Metadata/", ShownInLibrary},
    {"Zel/thumbnails/", MadeByPrograms},
    {"iMovie Thumbnails/", MadeByPrograms},
    {"iMovie Cache/", MadeByPrograms},
    {"iPhoto Library/Data/", MadeByPrograms},
};

// Empty, which no path begins with here, for a folder that holds everything.
static QByteArray contentsOf(const QString &folder)
{
    return folder == u"/" ? QByteArray() : XPPath::encode(folder) + '/';
}

static const UserFolders &userFolders()
{
    static const UserFolders folders = {
        contentsOf(XPFolders::trash()),
        contentsOf(XPFolders::caches()),
        contentsOf(XPFolders::ourApplicationSupport() + QStringLiteral("/Pending Documents")),
        {"/System/Library/", "/Library/",
         // Without a slash at its end: whatever begins with these characters counts.
         XPPath::encode(XPFolders::expandTilde(QStringLiteral("~/Library"))),
         contentsOf(XPFolders::applicationSupport()), contentsOf(XPFolders::configuration())},
    };
    return folders;
}

static bool isBelow(QByteArrayView path, const QByteArray &folder)
{
    return !folder.isEmpty() && path.startsWith(folder);
}

// A volume's trash folder of one user: ".Trash-1000/".
static bool isUsersTrash(QByteArrayView rest)
{
    constexpr QByteArrayView name = ".Trash-";
    if (!rest.startsWith(name))
        return false;
    qsizetype i = name.size();
    while (i < rest.size() && rest[i] >= '0' && rest[i] <= '9')
        ++i;
    return i > name.size() && i < rest.size() && rest[i] == '/';
}

static unsigned foundIn(QByteArrayView path)
{
    unsigned found = Nothing;
    const char *const end = path.data() + path.size();
    for (const char *at = path.data();;) {
        at = static_cast<const char *>(std::memchr(at, '/', static_cast<size_t>(end - at)));
        if (at == nullptr || ++at == end)
            break;
        // Nearly every folder is told apart by its first letter.
        if (*at != '.' && *at != 'L' && *at != 'Z' && *at != 'i')
            continue;
        const QByteArrayView rest(at, end);
        for (const Part &part : parts) {
            if (rest.startsWith(part.text))
                found |= part.found;
        }
        if (isUsersTrash(rest))
            found |= Trash;
    }
    const UserFolders &user = userFolders();
    if (isBelow(path, user.trash))
        found |= Trash;
    if (isBelow(path, user.caches))
        found |= Caches;
    if (isBelow(path, user.inbox))
        found |= ShownInLibrary;
    return found;
}

static bool passesMDQuery(QByteArrayView path, unsigned found)
{
    if (path.isEmpty())
        return false;
    if (found & Caches)
        return (found & CachedMetadata) != 0;
    if ((found & (MadeByPrograms | Trash)) || path.startsWith("/private/") ||
        path.startsWith("/usr/"))
        return false;
    for (const QByteArray &library : userFolders().libraries) {
        if (isBelow(path, library))
            return (found & ShownInLibrary) != 0;
    }
    return true;
}

bool KPPathFilters::isInTrash(QByteArrayView path)
{
    return (foundIn(path) & Trash) != 0;
}

bool KPPathFilters::passesExcludePaths(QByteArrayView path)
{
    return !path.isEmpty() && !isInTrash(path);
}

bool KPPathFilters::passesMDQueryExcludePaths(QByteArrayView path)
{
    return passesMDQuery(path, foundIn(path));
}

KPPathFilters::Passes KPPathFilters::passes(QByteArrayView path)
{
    const unsigned found = foundIn(path);
    return {!path.isEmpty() && (found & Trash) == 0, passesMDQuery(path, found)};
}
