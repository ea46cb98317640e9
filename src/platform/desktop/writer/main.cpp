// murn-attribute-writer: writes tags and ratings on files that the user may not write, with the
// administrator's rights that pkexec gave it after asking.
//
// A root program, so it can do as little as possible: set or remove an extended attribute whose
// name is one of the metadata convention's or of the desktop's for the same facts, at an absolute
// path, of a value that the convention allows; it follows no link in the last place and reads no
// environment or file. It needs nothing but the C library. It ends when its caller does (end of
// input), and by itself after some idle minutes, so that a forgotten right does not live on.
//
// With other arguments it is another program, which pkexec asks for apart: it moves one file to the
// trash or removes it, as FileVerbs.h says, and ends.
#include "AttributeWriterProtocol.h"
#include "FileVerbs.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/xattr.h>
#include <unistd.h>

using namespace AttributeWriter;

static constexpr int idleMilliseconds = 5 * 60 * 1000;

// False at the end of the input, after an idle time and on failure: all mean "stop".
static bool readAll(void *buffer, size_t size)
{
    auto *out = static_cast<char *>(buffer);
    while (size > 0) {
        pollfd input = {STDIN_FILENO, POLLIN, 0};
        const int ready = ::poll(&input, 1, idleMilliseconds);
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0)
            return false;
        const ssize_t count = ::read(STDIN_FILENO, out, size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        out += count;
        size -= static_cast<size_t>(count);
    }
    return true;
}

static bool readText(std::string &text, std::uint32_t size)
{
    text.resize(size);
    return readAll(text.data(), size);
}

// A few bytes: a pipe or socket takes them whole or not at all.
static bool writeAll(const void *bytes, size_t size)
{
    ssize_t count = 0;
    do
        count = ::write(STDOUT_FILENO, bytes, size);
    while (count < 0 && errno == EINTR);
    return count == static_cast<ssize_t>(size);
}

static bool answer(std::int32_t status)
{
    return writeAll(&status, sizeof status);
}

static bool isWithinLimits(const Request &request)
{
    const bool known =
        request.operation == Operation::Write || request.operation == Operation::Remove;
    return known && request.nameSize <= maximumNameSize && request.pathSize <= maximumPathSize &&
           request.valueSize <= maximumValueSize &&
           (request.operation == Operation::Write || request.valueSize == 0);
}

static bool isPlain(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

static bool mayWriteName(std::string_view name)
{
    if (std::find(std::begin(desktopNames), std::end(desktopNames), name) != std::end(desktopNames))
        return true;
    constexpr std::string_view prefix = namePrefix;
    if (!name.starts_with(prefix) || name.size() == prefix.size())
        return false;
    for (const char c : name.substr(prefix.size())) {
        if (!isPlain(c))
            return false;
    }
    return true;
}

static bool isAbsolutePath(std::string_view path)
{
    return path.starts_with('/') && path.find('\0') == std::string_view::npos;
}

static std::int32_t perform(Operation operation, const std::string &name, const std::string &path,
                            const std::string &value)
{
    if (!mayWriteName(name))
        return RefusedName;
    if (!isAbsolutePath(path))
        return RefusedPath;
    const int result = operation == Operation::Write
                           ? ::lsetxattr(path.c_str(), name.c_str(), value.data(), value.size(), 0)
                           : ::lremovexattr(path.c_str(), name.c_str());
    return result == 0 ? 0 : errno;
}

int main(int count, char **arguments)
{
    if (std::signal(SIGPIPE, SIG_IGN) == SIG_ERR || !writeAll(greeting, sizeof greeting))
        return 1;
    if (count > 1 && std::strcmp(arguments[1], sessionArgument) != 0)
        return answer(FileVerbs::run(count, arguments)) ? 0 : 1;
    Request request = {};
    std::string name;
    std::string path;
    std::string value;
    while (readAll(&request, sizeof request)) {
        if (!isWithinLimits(request)) {
            answer(RefusedFrame);
            return 1;
        }
        if (!readText(name, request.nameSize) || !readText(path, request.pathSize) ||
            !readText(value, request.valueSize))
            return 0;
        if (!answer(perform(request.operation, name, path, value)))
            return 0;
    }
    return 0;
}
