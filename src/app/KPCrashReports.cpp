#include "KPCrashReports.h"

#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"

#include <cstdio>
#include <dirent.h>
#include <memory>
#include <unistd.h>

static const QByteArray newSuffix = ".txt";
static const QByteArray toldSuffix = ".seen.txt";

QString KPCrashReports::folder()
{
    return XPFolders::ourApplicationSupport() + QStringLiteral("/Crash Reports");
}

namespace {

struct CloseFolder
{
    void operator()(DIR *folder) const { ::closedir(folder); }
};

} // namespace

static QByteArrayList names()
{
    QByteArrayList names;
    const std::unique_ptr<DIR, CloseFolder> folder(
        ::opendir(XPPath::encode(KPCrashReports::folder()).constData()));
    if (!folder)
        return names;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the stream is this call's own
    while (const dirent *entry = ::readdir(folder.get())) {
        const QByteArray name(static_cast<const char *>(entry->d_name));
        if (name.startsWith("murn-") && name.endsWith(newSuffix))
            names.append(name);
    }
    std::sort(names.begin(), names.end()); // they begin with the date
    return names;
}

static QByteArray pathOf(const QByteArray &name)
{
    return XPPath::encode(KPCrashReports::folder()) + '/' + name;
}

QStringList KPCrashReports::all()
{
    QStringList paths;
    for (const QByteArray &name : names())
        paths.append(XPPath::decode(pathOf(name)));
    return paths;
}

QStringList KPCrashReports::takeNew()
{
    QByteArrayList found = names();
    while (found.size() > mostKept)
        ::unlink(pathOf(found.takeFirst()).constData());
    QStringList told;
    for (const QByteArray &name : std::as_const(found)) {
        if (name.endsWith(toldSuffix))
            continue;
        const QByteArray path = pathOf(name.chopped(newSuffix.size()) + toldSuffix);
        if (std::rename(pathOf(name).constData(), path.constData()) != 0)
            qCWarning(xpLog) << "a crash report could not be renamed:" << xpErrnoString(errno);
        else
            told.append(XPPath::decode(path));
    }
    return told;
}
