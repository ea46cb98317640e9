#include "XPPrograms.h"

#include <cstdlib>
#include <memory>

// Without links; empty when it does not exist.
static QByteArray canonical(const QByteArray &path)
{
    const std::unique_ptr<char, decltype(&std::free)> resolved(
        ::realpath(path.constData(), nullptr), &std::free);
    return resolved ? QByteArray(resolved.get()) : QByteArray();
}

QByteArray XPPrograms::helper(const char *name)
{
    const QByteArray program = canonical("/proc/self/exe");
    const QByteArray folder = program.left(program.lastIndexOf('/') + 1);
    const QByteArray installed = canonical(folder + MURN_LIBEXEC_FROM_BIN "/" + name);
    return installed.isEmpty() ? canonical(folder + name) : installed;
}
