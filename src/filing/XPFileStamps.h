#pragma once

#include <QByteArray>
#include <map>

// What a file, link or folder with everything below it looked like at one moment: enough to tell
// later whether anything in it changed. A folder's own size says nothing and is left out.
// Threads: a value; reading blocks in file calls.
class XPFileStamps
{
public:
    struct Stamp
    {
        quint64 device = 0;
        quint64 inode = 0;
        quint32 mode = 0;
        qint64 size = 0;     // 0 for a folder
        qint64 modified = 0; // nanoseconds since 1970
        qint64 changed = 0;

        bool operator==(const Stamp &) const = default;
    };

    // Of one file: 0, or the errno.
    static int readOne(int folder, const char *name, Stamp &stamp);

    // Everything at the name in the open folder. ELOOP where folders are nested beyond
    // `deepest`; EXDEV where another volume is mounted in it.
    int read(int folder, const QByteArray &name);

    // The same files, untouched in between. Renaming the whole changes the topmost file's change
    // time, which therefore does not count.
    bool isSameAs(const XPFileStamps &other) const;
    // The same names, kinds and sizes.
    bool looksLike(const XPFileStamps &other) const;

    const Stamp &top() const { return m_stamps.begin()->second; }
    qint64 bytes() const; // of all files

    static constexpr int deepest = 200;

private:
    int add(int folder, const QByteArray &name, const QByteArray &path, int depth);

    std::map<QByteArray, Stamp> m_stamps; // by path below the topmost, whose own is empty
};
