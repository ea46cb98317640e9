#include "TestSystem.h"

#include "XPPath.h"

#include <QByteArrayList>
#include <QDir>
#include <cstdio>
#include <grp.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

static constexpr uid_t nobody = 65534;

TestVolume::TestVolume()
{
    QDir().mkpath(path());
}

std::unique_ptr<TestVolume> TestVolume::tmpfs(const char *size)
{
    std::unique_ptr<TestVolume> volume(new TestVolume);
    const QByteArray point = XPPath::encode(volume->path());
    const QByteArray options = QByteArray("size=") + size;
    if (::mount("tmpfs", point.constData(), "tmpfs", 0, options.constData()) != 0)
        return {};
    return volume;
}

// Not by QProcess: it forks with the memory shared, after which ThreadSanitizer is blind to what
// this thread synchronises.
static bool run(const QString &program, const QStringList &arguments)
{
    QByteArrayList words{program.toUtf8()};
    for (const QString &argument : arguments)
        words.append(argument.toUtf8());
    std::vector<char *> pointers;
    for (QByteArray &word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    pid_t child = -1;
    if (::posix_spawnp(&child, pointers[0], nullptr, nullptr, pointers.data(), environ) != 0)
        return false;
    int status = -1;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::unique_ptr<TestVolume> TestVolume::ext4SmallBlocks()
{
    std::unique_ptr<TestVolume> volume(new TestVolume);
    const QString image = volume->m_folder.file(QStringLiteral("image"));
    const QStringList format = {QStringLiteral("-q"), QStringLiteral("-F"), QStringLiteral("-b"),
                                QStringLiteral("1024"), image};
    if (::truncate(XPPath::encode(image).constData(), 4 << 20) != 0 ||
        !run(QStringLiteral("/sbin/mkfs.ext4"), format) ||
        !run(QStringLiteral("mount"),
             {QStringLiteral("-o"), QStringLiteral("loop"), image, volume->path()}))
        return {};
    return volume;
}

// Harmless when nothing was mounted.
TestVolume::~TestVolume()
{
    ::umount2(XPPath::encode(path()).constData(), MNT_DETACH);
}

int inOtherProcess(const std::function<int()> &body)
{
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(body());
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

int asPlainUser(const QString &folder, const std::function<int()> &body)
{
    if (::geteuid() != 0)
        return inOtherProcess(body);
    const QByteArray path = XPPath::encode(folder);
    if (::chown(path.constData(), nobody, nobody) != 0)
        return -1;
    return inOtherProcess([&body] {
        if (::setgroups(0, nullptr) != 0 || ::setresgid(nobody, nobody, nobody) != 0 ||
            ::setresuid(nobody, nobody, nobody) != 0)
            return -1;
        return body();
    });
}
