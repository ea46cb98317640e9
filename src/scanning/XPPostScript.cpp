#include "XPPostScript.h"

#include "XPFileUtils.h"
#include "XPPath.h"
#include "XPRename.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <fcntl.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

static constexpr int mostMilliseconds = 60'000;
static constexpr rlim_t mostMemory = rlim_t{1} << 30;
static constexpr rlim_t mostOutput = rlim_t{1} << 30;

// In the child, before the converter begins.
static void shutIn()
{
    // Without the right to do so it still has no use for the network: the converter's own safe
    // mode stays.
    (void)::unshare(CLONE_NEWUSER | CLONE_NEWNET);
    const rlimit memory = {mostMemory, mostMemory};
    const rlimit output = {mostOutput, mostOutput};
    const rlimit time = {mostMilliseconds / 1000, mostMilliseconds / 1000};
    ::setrlimit(RLIMIT_AS, &memory);
    ::setrlimit(RLIMIT_FSIZE, &output);
    ::setrlimit(RLIMIT_CPU, &time);
}

XPResult<QString> PSToPDF(const QString &path)
{
    const QString program = QStandardPaths::findExecutable(QStringLiteral("gs"));
    if (program.isEmpty())
        return XPError::make(XPError::Kind::Unsupported, qtTrId("KPNoPostScriptConverter"), path);
    const QByteArray name = XPPath::encode(path);
    const int source = ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (source < 0)
        return XPError::fromErrno(errno, path);
    ::close(source);
    // On the document's own volume, so that it only needs its name in the end.
    const QTemporaryDir folder(XPPath::folder(path) + QStringLiteral("/.murn-XXXXXX"));
    if (!folder.isValid())
        return XPError::fromErrno(errno, XPPath::folder(path));
    const QString made = folder.filePath(QStringLiteral("made.pdf"));
    QProcess process;
    process.setChildProcessModifier(shutIn);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setStandardInputFile(path);
    process.start(program,
                  {QStringLiteral("-q"), QStringLiteral("-dSAFER"), QStringLiteral("-dBATCH"),
                   QStringLiteral("-dNOPAUSE"), QStringLiteral("-sDEVICE=pdfwrite"),
                   QStringLiteral("-o"), made, QStringLiteral("-")});
    const bool ended = process.waitForFinished(mostMilliseconds);
    if (!ended) {
        process.kill();
        process.waitForFinished();
    }
    if (!ended || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return XPError::make(XPError::Kind::Malformed, qtTrId("KPPostScriptFailed"), path);
    const QString stem =
        XPPath::extension(path).isEmpty() ? path : path.chopped(XPPath::extension(path).size() + 1);
    const QString target = XPFileUtils::findUnusedPath(stem + QStringLiteral(".pdf"));
    if (auto error = XPRename::toFreeName(made, target))
        return *error;
    return target;
}
