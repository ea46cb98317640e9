#include "FileVerbs.h"

#include "AttributeWriterProtocol.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using AttributeWriter::RefusedFrame;
using AttributeWriter::RefusedPath;

static constexpr int deepest = 200;

namespace {

class Descriptor
{
public:
    explicit Descriptor(int file = -1) : m_file(file) {}
    ~Descriptor() { set(-1); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    void set(int file)
    {
        if (m_file >= 0)
            ::close(m_file);
        m_file = file;
    }
    int get() const { return m_file; }

private:
    int m_file;
};

// The one file that the user confirmed.
struct Confirmed
{
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::string folder;
    std::string name;

    bool isAt(int folderFile, const char *at) const
    {
        struct stat status = {};
        return ::fstatat(folderFile, at, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
               status.st_dev == device && status.st_ino == inode;
    }
};

} // namespace

static bool readNumber(std::string_view text, int base, std::uint64_t &number)
{
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return !text.empty() && result.ec == std::errc() && result.ptr == text.data() + text.size();
}

static bool readText(std::string_view text, std::string &decoded)
{
    for (size_t i = 0; i < text.size(); ++i) {
        std::uint64_t byte = 0;
        if (text[i] != '%') {
            decoded += text[i];
        } else {
            if (i + 2 >= text.size() || !readNumber(text.substr(i + 1, 2), 16, byte) || byte == 0)
                return false;
            decoded += static_cast<char>(byte);
            i += 2;
        }
    }
    return decoded.size() < PATH_MAX;
}

static bool isName(std::string_view name)
{
    return !name.empty() && name != "." && name != ".." &&
           name.find('/') == std::string_view::npos && name.size() <= NAME_MAX;
}

// One folder after the other from the root, so that no link on the way leads elsewhere.
static int openFolder(std::string_view path, Descriptor &folder)
{
    constexpr int flags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    if (!path.starts_with('/'))
        return ENOENT;
    folder.set(::open("/", flags));
    while (folder.get() >= 0 && !path.empty()) {
        path.remove_prefix(1); // the slash
        const std::string part(path.substr(0, path.find('/')));
        path.remove_prefix(part.size());
        if (part.empty() && path.empty())
            break;
        if (!isName(part))
            return ENOENT;
        folder.set(::openat(folder.get(), part.c_str(), flags));
    }
    return folder.get() >= 0 ? 0 : errno;
}

static uid_t caller()
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): a program of one thread
    const char *const text = std::getenv("PKEXEC_UID");
    std::uint64_t user = ::getuid();
    if (text != nullptr && !readNumber(text, 10, user))
        return static_cast<uid_t>(-1);
    return static_cast<uid_t>(user);
}

// "…/Trash/files", "…/.Trash-UID/files" or "…/.Trash/UID/files", and the caller's own.
static bool isTrashOfCaller(const std::string &path, int folder)
{
    const std::string user = std::to_string(caller());
    struct stat status = {};
    const bool isNamedSo = path.ends_with("/Trash/files") ||
                           path.ends_with("/.Trash-" + user + "/files") ||
                           path.ends_with("/.Trash/" + user + "/files");
    return isNamedSo && ::fstat(folder, &status) == 0 && status.st_uid == caller();
}

// A name that nobody knows before: whoever may swap names in the folder cannot swap this one.
static int hide(const Confirmed &file, int folder, std::string &hidden)
{
    std::array<unsigned char, 8> random = {};
    if (::getentropy(random.data(), random.size()) != 0)
        return errno;
    hidden = ".murn-removed-";
    for (const unsigned char byte : random) {
        hidden += "0123456789abcdef"[byte >> 4U];
        hidden += "0123456789abcdef"[byte & 15U];
    }
    if (!file.isAt(folder, file.name.c_str()))
        return ESTALE;
    if (::renameat2(folder, file.name.c_str(), folder, hidden.c_str(), RENAME_NOREPLACE) != 0)
        return errno;
    if (file.isAt(folder, hidden.c_str()))
        return 0;
    ::renameat2(folder, hidden.c_str(), folder, file.name.c_str(), RENAME_NOREPLACE);
    return ESTALE;
}

static int removeAll(int folder, const char *name, dev_t device, int depth)
{
    struct stat status = {};
    if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno;
    if (!S_ISDIR(status.st_mode))
        return ::unlinkat(folder, name, 0) == 0 ? 0 : errno;
    if (status.st_dev != device || depth == deepest)
        return EXDEV;
    DIR *const opened =
        ::fdopendir(::openat(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (opened == nullptr)
        return errno;
    std::vector<std::string> names;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): a program of one thread
    while (const dirent *entry = ::readdir(opened)) {
        if (isName(entry->d_name))
            names.emplace_back(entry->d_name);
    }
    int error = 0;
    for (const std::string &child : names) {
        if (error == 0)
            error = removeAll(::dirfd(opened), child.c_str(), device, depth + 1);
    }
    ::closedir(opened);
    if (error == 0 && ::unlinkat(folder, name, AT_REMOVEDIR) != 0)
        error = errno;
    return error;
}

static std::int32_t remove(const Confirmed &file, int folder)
{
    std::string hidden;
    if (const int error = hide(file, folder, hidden))
        return error;
    const int error = removeAll(folder, hidden.c_str(), file.device, 0);
    if (error != 0) // what is left is the user's to see
        ::renameat2(folder, hidden.c_str(), folder, file.name.c_str(), RENAME_NOREPLACE);
    return error;
}

static std::int32_t moveToTrash(const Confirmed &file, int folder, const std::string &trashPath,
                                const std::string &name)
{
    Descriptor trash;
    if (const int error = openFolder(trashPath, trash))
        return error;
    if (!isName(name) || !isTrashOfCaller(trashPath, trash.get()))
        return RefusedPath;
    if (!file.isAt(folder, file.name.c_str()))
        return ESTALE;
    if (::renameat2(folder, file.name.c_str(), trash.get(), name.c_str(), RENAME_NOREPLACE) != 0)
        return errno;
    if (file.isAt(trash.get(), name.c_str()))
        return 0;
    ::renameat2(trash.get(), name.c_str(), folder, file.name.c_str(), RENAME_NOREPLACE);
    return ESTALE;
}

std::int32_t FileVerbs::run(int count, char **arguments)
{
    const std::vector<std::string_view> words(arguments + 1, arguments + count);
    const bool isTrash = words.size() == 6 && words[0] == "move-to-trash";
    Confirmed file;
    std::string path;
    if ((!isTrash && (words.size() != 4 || words[0] != "remove")) ||
        !readNumber(words[1], 10, file.device) || !readNumber(words[2], 10, file.inode))
        return RefusedFrame;
    if (!readText(words[3], path) || path.rfind('/') == std::string::npos)
        return RefusedPath;
    file.folder = path.substr(0, path.rfind('/'));
    file.name = path.substr(file.folder.size() + 1);
    // Nothing at the root of the file system is anybody's document.
    if (file.folder.empty() || !isName(file.name))
        return RefusedPath;
    Descriptor folder;
    if (const int error = openFolder(file.folder, folder))
        return error;
    if (!isTrash)
        return remove(file, folder.get());
    std::string trash;
    std::string name;
    if (!readText(words[4], trash) || !readText(words[5], name))
        return RefusedPath;
    return moveToTrash(file, folder.get(), trash, name);
}
