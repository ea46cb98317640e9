#include "XPExtendedAttributes.h"

#include "XPPath.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <linux/limits.h>
#include <sys/xattr.h>

static constexpr char userNamespace[] = "user.";
static constexpr size_t namespaceSize = sizeof userNamespace - 1;

// Most values and name lists fit here: one system call, and no allocation but the result.
static constexpr size_t stackRoom = 4096;

namespace {

// A path and an attribute's name as the kernel wants them; the name without an allocation.
class Target
{
public:
    Target(const QString &path, const QString &name) : m_path(XPPath::encode(path))
    {
        std::memcpy(m_name, userNamespace, namespaceSize);
        const size_t size = name.size() > XATTR_NAME_MAX ? 0 : putName(name);
        m_usable = !m_path.isEmpty() && size > 0;
    }

    bool isUsable() const { return m_usable; }
    const char *path() const { return m_path.constData(); }
    const char *name() const { return m_name; }

private:
    static constexpr size_t room = XATTR_NAME_MAX - namespaceSize;

    // Writes the name behind its namespace; the answer is its size, 0 when it cannot be one.
    size_t putName(const QString &name)
    {
        char *const out = m_name + namespaceSize;
        size_t size = 0;
        for (const QChar c : name) {
            if (c.unicode() == 0 || c.unicode() >= 0x80)
                return putEncoded(XPPath::encode(name));
            if (size == room)
                return 0;
            out[size++] = static_cast<char>(c.unicode());
        }
        return size;
    }

    size_t putEncoded(const QByteArray &encoded)
    {
        const auto size = static_cast<size_t>(encoded.size());
        if (size > room)
            return 0;
        std::memcpy(m_name + namespaceSize, encoded.constData(), size);
        return size;
    }

    QByteArray m_path;
    char m_name[XATTR_NAME_MAX + 1] = {}; // the rest stays zero: the end of the name
    bool m_usable = false;
};

} // namespace

static XPError unusable(const QString &path)
{
    return XPError::make(XPError::Kind::InvalidArgument,
                         QStringLiteral("not a usable path or attribute name"), path);
}

static bool meansAbsent(int error)
{
    return error == ENODATA || error == EINVAL;
}

// What `call(buffer, room)` puts into a buffer of up to `limit` bytes, ERANGE when it needs more.
// The number is the errno of a failure, or 0. The buffer is never empty: a room of 0 asks the
// kernel for the size only.
template <typename SystemCall>
static int readWhole(SystemCall call, size_t limit, QByteArray &out)
{
    char buffer[stackRoom];
    ssize_t size = call(buffer, std::min(stackRoom, limit + 1));
    if (size >= 0) {
        out = QByteArray(buffer, size);
    } else if (errno == ERANGE && limit > stackRoom) {
        out = QByteArray(static_cast<qsizetype>(limit), Qt::Uninitialized);
        size = call(out.data(), limit);
        if (size >= 0) {
            out.resize(size);
            out.squeeze();
        }
    }
    if (size < 0)
        return errno;
    return static_cast<size_t>(size) > limit ? ERANGE : 0;
}

XPResult<std::optional<QByteArray>> XPExtendedAttributes::read(const QString &path,
                                                               const QString &name, qsizetype limit)
{
    const Target target(path, name);
    if (!target.isUsable() || limit < 0)
        return unusable(path);
    const auto call = [&target](char *buffer, size_t room) {
        return ::lgetxattr(target.path(), target.name(), buffer, room);
    };
    QByteArray value;
    const int error =
        readWhole(call, std::min(static_cast<size_t>(limit), size_t{XATTR_SIZE_MAX}), value);
    if (meansAbsent(error))
        return std::optional<QByteArray>();
    if (error != 0)
        return XPError::fromErrno(error, path);
    return std::optional(std::move(value));
}

std::optional<XPError> XPExtendedAttributes::write(const QString &path, const QString &name,
                                                   QByteArrayView value)
{
    const Target target(path, name);
    if (!target.isUsable())
        return unusable(path);
    const auto size = static_cast<size_t>(value.size());
    if (::lsetxattr(target.path(), target.name(), value.data(), size, 0) == 0)
        return {};
    return XPError::fromErrno(errno, path);
}

std::optional<XPError> XPExtendedAttributes::remove(const QString &path, const QString &name)
{
    const Target target(path, name);
    if (!target.isUsable())
        return unusable(path);
    if (::lremovexattr(target.path(), target.name()) == 0 || meansAbsent(errno))
        return {};
    return XPError::fromErrno(errno, path);
}

XPResult<QList<QString>> XPExtendedAttributes::list(const QString &path)
{
    const QByteArray encoded = XPPath::encode(path);
    if (encoded.isEmpty())
        return unusable(path);
    const auto call = [&encoded](char *buffer, size_t room) {
        return ::llistxattr(encoded.constData(), buffer, room);
    };
    QByteArray joined;
    if (const int error = readWhole(call, XATTR_LIST_MAX, joined); error != 0)
        return XPError::fromErrno(error, path);
    QList<QString> names;
    for (const QByteArray &name : joined.split('\0')) {
        if (name.startsWith(userNamespace))
            names.append(XPPath::decode(QByteArrayView(name).sliced(qsizetype{namespaceSize})));
    }
    names.sort();
    return names;
}

QByteArray XPExtendedAttributes::nameOnDisk(const QString &name)
{
    return userNamespace + XPPath::encode(name);
}
