#include "XPNewFile.h"

#include "XPFolders.h"
#include "XPFreeNames.h"
#include "XPPath.h"
#include "XPUnnamedFile.h"

#include <cerrno>
#include <fcntl.h>

static constexpr qsizetype longestStem = 200; // bytes: leaves room for a number and an extension
static constexpr int mostRaces = 16;          // somebody else takes the name meanwhile

static QString cut(QString stem)
{
    while (XPPath::encode(stem).size() > longestStem) {
        const bool isPair = stem.size() > 1 && stem.back().isLowSurrogate() &&
                            stem[stem.size() - 2].isHighSurrogate();
        stem.chop(isPair ? 2 : 1);
    }
    return stem;
}

XPResult<QString> XPNewFile::write(const QString &folder, const QString &stem,
                                   const QString &extension, QByteArrayView bytes)
{
    if (auto error = XPFolders::create(folder))
        return *error;
    XPFileDescriptor place(
        ::open(XPPath::encode(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!place.isOpen())
        return XPError::fromErrno(errno, folder);
    XPUnnamedFile file;
    int error = file.open(std::move(place));
    if (error == 0)
        error = file.write(bytes);
    if (error == 0)
        error = file.sync();
    if (error != 0)
        return XPError::fromErrno(error, folder);
    const QString name = cut(stem) + u'.' + extension;
    XPFreeNames names(folder);
    for (int race = 0; race < mostRaces; ++race) {
        QString path = names.take(name);
        error = file.give(XPPath::encode(XPPath::fileName(path)));
        if (error == 0) {
            file.syncFolder();
            return path;
        }
        if (error != EEXIST)
            break;
    }
    return XPError::fromErrno(error, folder);
}
