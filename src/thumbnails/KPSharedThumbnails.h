#pragma once

#include "DocumentAnswer.h"

#include <QImage>
#include <QString>
#include <chrono>
#include <optional>

struct XPFileInfo;

// Which file, in which state, a picture was made from. Times in nanoseconds since 1970.
struct KPFileOrigin
{
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 modified = 0;

    static KPFileOrigin of(const XPFileInfo &info);
    bool operator==(const KPFileOrigin &) const = default;
};

// The thumbnails that the programs of a desktop share, by the Thumbnail Managing Standard of
// freedesktop.org: PNG files named for the MD5 sum of the document's address, in a folder for each
// size, and a program's own failures beside them.
//
// A thumbnail counts when its address, modification time and, if stated, size are the document's.
// Programs disagree about a few characters of an address: both spellings are looked for, one is
// written. Nothing is stored for what lies in the folder itself, for a file whose last change is
// so recent that another one could carry the same second, nor without a modification time.
// Threads: any; blocking file calls. What cannot be read or written is not there.
class KPSharedThumbnails
{
public:
    // `folder`: "$XDG_CACHE_HOME/thumbnails", empty: nothing is shared; `program`: the folder of
    // our failures in "fail".
    KPSharedThumbnails(QString folder, QString program);

    // The sizes that are shared: 128, 256, 512 and 1024 pixels. The smallest that is no smaller;
    // 0: there is none.
    static int sizeFor(int side);

    // At least as large as `side` asks, and no older than `lifetime`; scaled down to it.
    std::optional<QImage> read(const QString &path, const KPFileOrigin &origin, int side,
                               std::chrono::seconds lifetime) const;
    // Why this program has failed at it before; nothing: it has not.
    std::optional<DocumentFailure> failure(const QString &path, const KPFileOrigin &origin,
                                           std::chrono::seconds lifetime) const;
    // `image` is of one of the shared sizes, or the whole of a smaller picture.
    void write(const QString &path, const KPFileOrigin &origin, const QImage &image) const;
    void writeFailure(const QString &path, const KPFileOrigin &origin, DocumentFailure why) const;

    // For what wants to know the place: the address as GLib and as Qt write it.
    static QByteArrayList addressesOf(const QString &path);
    static QImage scaled(const QImage &image, int side); // never up; 1-bit pictures smoothly too

private:
    bool mayStore(const QString &path, const KPFileOrigin &origin) const;
    QByteArrayList placesOf(const QString &path) const;
    QString failures() const;

    const QString m_folder;
    const QString m_program;
};
