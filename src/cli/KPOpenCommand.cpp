// murnctl open and reveal: hands files to the desktop's programs.
#include "KPCommandOutput.h"
#include "XPApplications.h"
#include "XPFileInfo.h"
#include "XPPath.h"
#include "XPWorkspace.h"

// Those that exist; each other one is a failure.
static QStringList existing(const KPCommandLine &line, KPCommandOutput &output)
{
    QStringList paths;
    for (const QString &word : line.operands()) {
        const QString path = XPPath::absolute(word);
        if (const auto info = XPFileInfo::read(path))
            paths.append(path);
        else
            output.fail(word, info.error().reason());
    }
    return paths;
}

static int open(const KPCommandLine &line, KPCommandOutput &output)
{
    if (line.operands().isEmpty())
        return kpReportUsage(&kpOpenCommand, QStringLiteral("no file given"));
    const QStringList programs = line.values("--with");
    if (programs.size() > 1)
        return kpReportUsage(&kpOpenCommand, QStringLiteral("--with may be given once"));
    const QStringList paths = existing(line, output);
    if (!programs.isEmpty() && !paths.isEmpty()) {
        QString entry = programs.first();
        if (!entry.endsWith(u".desktop"))
            entry += QStringLiteral(".desktop");
        if (const auto error = XPWorkspace::openWith(paths, entry))
            output.fail(error->reason());
        return output.exitStatus();
    }
    for (const QString &path : paths) {
        const auto usual = XPApplications::forFile(path);
        const auto error = usual.isEmpty()
                               ? std::optional(XPError::make(XPError::Kind::Unsupported,
                                                             QStringLiteral("no program opens it")))
                               : XPWorkspace::openWith({path}, usual.first().desktopEntry);
        if (error)
            output.fail(path, error->reason());
    }
    return output.exitStatus();
}

static int reveal(const KPCommandLine &line, KPCommandOutput &output)
{
    if (line.operands().isEmpty())
        return kpReportUsage(&kpRevealCommand, QStringLiteral("no file given"));
    const QStringList paths = existing(line, output);
    if (paths.isEmpty())
        return output.exitStatus();
    if (const auto error = XPWorkspace::revealAndWait(paths))
        output.fail(paths.first(), error->reason());
    return output.exitStatus();
}

const KPCommand kpOpenCommand = {
    "open",
    "[OPTION]… FILE…",
    "Opens files with the programs that the desktop has for them.",
    "",
    {{"--with", "PROGRAM", "this one, by its desktop entry, such as org.example.App"}},
    open};

const KPCommand kpRevealCommand = {
    "reveal",
    "FILE…",
    "Shows files in the file manager, selected.",
    "Where the file manager cannot select them, the folder of the first is opened.\n",
    {},
    reveal};
