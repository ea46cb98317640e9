#include "XPUnnamedFile.h"

#include "XPRename.h"

#include <QRandomGenerator>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

static constexpr mode_t newFile = 0666; // less what the user's mask takes

XPUnnamedFile::~XPUnnamedFile()
{
    if (!m_hidden.isEmpty() && m_folder.isOpen())
        ::unlinkat(m_folder.get(), m_hidden.constData(), 0);
}

XPUnnamedFile &XPUnnamedFile::operator=(XPUnnamedFile &&other) noexcept
{
    if (this == &other)
        return *this;
    if (!m_hidden.isEmpty() && m_folder.isOpen())
        ::unlinkat(m_folder.get(), m_hidden.constData(), 0);
    m_folder = std::move(other.m_folder);
    m_file = std::move(other.m_file);
    m_hidden = std::exchange(other.m_hidden, {});
    return *this;
}

int XPUnnamedFile::open(XPFileDescriptor folder)
{
    m_folder = std::move(folder);
    m_file =
        XPFileDescriptor(::openat(m_folder.get(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, newFile));
    if (m_file.isOpen() || (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL))
        return m_file.isOpen() ? 0 : errno;
    m_hidden = ".murn-new-" + QByteArray::number(QRandomGenerator::global()->generate64(), 16);
    m_file = XPFileDescriptor(::openat(m_folder.get(), m_hidden.constData(),
                                       O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, newFile));
    if (!m_file.isOpen())
        m_hidden.clear();
    return m_file.isOpen() ? 0 : errno;
}

int XPUnnamedFile::write(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t count =
            ::write(m_file.get(), bytes.data(), static_cast<size_t>(bytes.size()));
        if (count < 0 && errno != EINTR)
            return errno;
        if (count > 0)
            bytes = bytes.sliced(count);
    }
    return 0;
}

int XPUnnamedFile::sync()
{
    return ::fsync(m_file.get()) == 0 ? 0 : errno;
}

int XPUnnamedFile::give(const QByteArray &name)
{
    int error = 0;
    if (!m_hidden.isEmpty()) {
        error = XPRename::toFreeNameAt(m_folder.get(), m_hidden.constData(), m_folder.get(),
                                       name.constData());
        if (error == 0)
            m_hidden.clear();
    } else {
        const QByteArray own = "/proc/self/fd/" + QByteArray::number(m_file.get());
        if (::linkat(AT_FDCWD, own.constData(), m_folder.get(), name.constData(),
                     AT_SYMLINK_FOLLOW) != 0)
            error = errno;
    }
    return error;
}

void XPUnnamedFile::syncFolder() const
{
    (void)::fsync(m_folder.get());
}
