#include "XPNewFile.h"

#include "XPFileDescriptor.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPFreeNames.h"
#include "XPPath.h"
#include "XPRename.h"

#include <QRandomGenerator>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

static constexpr qsizetype longestStem = 200; // bytes: leaves room for a number and an extension
static constexpr mode_t newFile = 0666;       // less what the user's mask takes
static constexpr int mostRaces = 16;          // somebody else takes the name meanwhile

namespace {

// A file without a name in a folder; under a hidden one where the file system has no such thing.
class Nameless
{
public:
    ~Nameless()
    {
        if (!m_hidden.isEmpty())
            ::unlinkat(m_folder.get(), m_hidden.constData(), 0);
    }
    Nameless() = default;
    Nameless(const Nameless &) = delete;
    Nameless &operator=(const Nameless &) = delete;

    // All of these: 0, or the errno.
    int open(const QString &folder)
    {
        const QByteArray path = XPPath::encode(folder);
        m_folder = XPFileDescriptor(::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!m_folder.isOpen())
            return errno;
        m_file = XPFileDescriptor(
            ::openat(m_folder.get(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, newFile));
        if (m_file.isOpen() || (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL))
            return m_file.isOpen() ? 0 : errno;
        m_hidden = ".murn-new-" + QByteArray::number(QRandomGenerator::global()->generate64(), 16);
        m_file = XPFileDescriptor(::openat(m_folder.get(), m_hidden.constData(),
                                           O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, newFile));
        if (!m_file.isOpen())
            m_hidden.clear();
        return m_file.isOpen() ? 0 : errno;
    }

    int write(QByteArrayView bytes)
    {
        while (!bytes.isEmpty()) {
            const ssize_t count =
                ::write(m_file.get(), bytes.data(), static_cast<size_t>(bytes.size()));
            if (count < 0 && errno != EINTR)
                return errno;
            if (count > 0)
                bytes = bytes.sliced(count);
        }
        return ::fsync(m_file.get()) == 0 ? 0 : errno;
    }

    int give(const QByteArray &name)
    {
        if (!m_hidden.isEmpty()) {
            const int error = XPRename::toFreeNameAt(m_folder.get(), m_hidden.constData(),
                                                     m_folder.get(), name.constData());
            if (error == 0)
                m_hidden.clear();
            return error;
        }
        const QByteArray own = "/proc/self/fd/" + QByteArray::number(m_file.get());
        return ::linkat(AT_FDCWD, own.constData(), m_folder.get(), name.constData(),
                        AT_SYMLINK_FOLLOW) == 0
                   ? 0
                   : errno;
    }

    // Where folders cannot be synced there is no better way.
    void syncFolder() const { (void)::fsync(m_folder.get()); }

private:
    XPFileDescriptor m_folder;
    XPFileDescriptor m_file;
    QByteArray m_hidden;
};

} // namespace

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
    Nameless file;
    int error = file.open(folder);
    if (error == 0)
        error = file.write(bytes);
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
