#include "XPFolders.h"

#include "XPAtomicFile.h"
#include "XPPath.h"

#include <QList>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

// Longer than any file that a desktop writes there.
static constexpr qint64 userDirsLimit = 1 << 20;

static QString fromEnvironment(const char *variable)
{
    const QByteArray value = qgetenv(variable);
    return value.startsWith('/') ? XPPath::absolute(XPPath::decode(value)) : QString();
}

static QString homeInUserDatabase()
{
    std::array<char, 16384> buffer = {};
    struct passwd entry = {};
    struct passwd *found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return QStringLiteral("/");
    return XPPath::absolute(XPPath::decode(found->pw_dir));
}

QString XPFolders::home()
{
    const QString home = fromEnvironment("HOME");
    return home.isEmpty() ? homeInUserDatabase() : home;
}

static QString below(const QString &folder, const QString &name)
{
    return folder == u"/" ? u'/' + name : folder + u'/' + name;
}

static QString baseFolder(const char *variable, const QString &nameInHome)
{
    const QString folder = fromEnvironment(variable);
    return folder.isEmpty() ? below(XPFolders::home(), nameInHome) : folder;
}

// The shell-quoted text that `line`, the rest of a line after '=', begins with.
static QByteArray unquoted(QByteArrayView line)
{
    if (line.isEmpty() || line.front() != '"')
        return {};
    QByteArray text;
    for (qsizetype i = 1; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] == '\\' && i + 1 < line.size())
            ++i;
        text.append(line[i]);
    }
    return text;
}

// user-dirs.dirs is a shell fragment of lines such as XDG_DESKTOP_DIR="$HOME/Desktop", where
// only "$HOME/…" and absolute paths are allowed; the last one counts.
static QString userFolder(QByteArrayView variable, const QString &nameInHome)
{
    const QString file = below(XPFolders::configuration(), QStringLiteral("user-dirs.dirs"));
    const QByteArray bytes = XPAtomicFile::read(file, userDirsLimit).valueOr({});
    QString folder = below(XPFolders::home(), nameInHome);
    for (const QByteArray &line : bytes.split('\n')) {
        const QByteArray text = line.trimmed();
        const qsizetype size = variable.size();
        if (!text.startsWith(variable) || text.size() <= size || text[size] != '=')
            continue;
        QByteArray value = unquoted(QByteArrayView(text).sliced(size + 1));
        if (value == "$HOME" || value.startsWith("$HOME/"))
            value.replace(0, 5, XPPath::encode(XPFolders::home()));
        if (value.startsWith('/'))
            folder = XPPath::absolute(XPPath::decode(value));
    }
    return folder;
}

QString XPFolders::documents()
{
    return userFolder("XDG_DOCUMENTS_DIR", QStringLiteral("Documents"));
}

QString XPFolders::desktop()
{
    return userFolder("XDG_DESKTOP_DIR", QStringLiteral("Desktop"));
}

QString XPFolders::downloads()
{
    return userFolder("XDG_DOWNLOAD_DIR", QStringLiteral("Downloads"));
}

QString XPFolders::pictures()
{
    return userFolder("XDG_PICTURES_DIR", QStringLiteral("Pictures"));
}

QString XPFolders::videos()
{
    return userFolder("XDG_VIDEOS_DIR", QStringLiteral("Videos"));
}

QString XPFolders::configuration()
{
    return baseFolder("XDG_CONFIG_HOME", QStringLiteral(".config"));
}

QString XPFolders::applicationSupport()
{
    return baseFolder("XDG_DATA_HOME", QStringLiteral(".local/share"));
}

QString XPFolders::caches()
{
    return baseFolder("XDG_CACHE_HOME", QStringLiteral(".cache"));
}

QString XPFolders::ourApplicationSupport()
{
    return below(applicationSupport(), QStringLiteral("Zel"));
}

QString XPFolders::ourCaches()
{
    return below(caches(), QStringLiteral("Zel"));
}

QString XPFolders::trash()
{
    return below(applicationSupport(), QStringLiteral("Trash"));
}

QString XPFolders::expandTilde(const QString &path)
{
    if (path == u"~")
        return home();
    return path.startsWith(u"~/") ? below(home(), path.mid(2)) : path;
}

QString XPFolders::abbreviateWithTilde(const QString &path)
{
    const QString folder = home();
    if (path == folder)
        return QStringLiteral("~");
    const QString prefix = below(folder, {});
    return path.startsWith(prefix) ? QStringLiteral("~/") + path.mid(prefix.size()) : path;
}

XPResult<QString> XPFolders::realFolder(const QString &path)
{
    const QString full = XPPath::absolute(path);
    const QByteArray bytes = path.isEmpty() ? QByteArray() : XPPath::encode(full);
    if (bytes.isEmpty())
        return XPError::fromErrno(EINVAL, full);
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(bytes.constData(), nullptr),
                                                           &std::free);
    struct stat status = {};
    if (!real || ::stat(real.get(), &status) != 0)
        return XPError::fromErrno(errno, full);
    if (!S_ISDIR(status.st_mode))
        return XPError::fromErrno(ENOTDIR, full);
    return XPPath::decode(real.get());
}

std::optional<XPError> XPFolders::create(const QString &folder)
{
    const QByteArray path = XPPath::encode(folder);
    if (!path.startsWith('/'))
        return XPError::make(XPError::Kind::InvalidArgument, QStringLiteral("not a usable path"),
                             folder);
    struct stat status = {};
    if (::stat(path.constData(), &status) == 0)
        return S_ISDIR(status.st_mode) ? std::nullopt
                                       : std::optional(XPError::fromErrno(ENOTDIR, folder));
    for (qsizetype end = path.indexOf('/', 1);; end = path.indexOf('/', end + 1)) {
        const QByteArray part = end < 0 ? path : path.left(end);
        if (::mkdir(part.constData(), 0700) != 0 && errno != EEXIST)
            return XPError::fromErrno(errno, folder);
        if (end < 0)
            break;
    }
    if (::stat(path.constData(), &status) != 0)
        return XPError::fromErrno(errno, folder);
    return {};
}
