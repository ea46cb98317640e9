// murnctl index: what the index covers.
#include "IndexSettings.h"
#include "KPIndexActions.h"
#include "KPIndexRoots.h"
#include "MetadataIndex.h"
#include "UserDefaults.h"
#include "XPFolders.h"
#include "XPPath.h"

// Brings the changed settings to the disk, and the index after them.
static int applySettings(KPCommandOutput &output)
{
    if (const auto error = UserDefaults::standard().synchronise()) {
        output.fail(QStringLiteral("the settings cannot be saved: ") + error->message);
        return output.exitStatus();
    }
    KPIndexSession session(output);
    session.index().settingsChanged();
    if (!session.catchUp(false))
        return KPExitInterrupted;
    return output.exitStatus();
}

int KPIndexActions::roots(const QString &, const KPCommandLine &, KPCommandOutput &output)
{
    if (output.isJson()) {
        output.write("{\n  \"roots\": " + KPCommandOutput::json(IndexSettings::roots()) +
                     ",\n  \"exclusions\": " + KPCommandOutput::json(IndexSettings::rules()) +
                     "\n}\n");
        return output.exitStatus();
    }
    for (const QString &root : IndexSettings::roots())
        output.writeRecord(output.name(root));
    return output.exitStatus();
}

int KPIndexActions::add(const QString &operand, const KPCommandLine &, KPCommandOutput &output)
{
    const auto folder = XPFolders::realFolder(operand);
    if (!folder) {
        output.fail(operand, folder.error().reason());
        return output.exitStatus();
    }
    KPIndexRoots::add(*folder);
    return applySettings(output);
}

int KPIndexActions::remove(const QString &operand, const KPCommandLine &, KPCommandOutput &output)
{
    // One that is not there any more is removed as well.
    const QString folder = XPFolders::realFolder(operand).valueOr(XPPath::absolute(operand));
    QStringList roots = IndexSettings::roots();
    if (roots.removeAll(folder) == 0) {
        const QString above = KPIndexRoots::above(folder, roots);
        output.fail(folder, above.isEmpty()
                                ? QStringLiteral("is none of the indexed folders")
                                : QStringLiteral("is indexed as a part of %1; leave it out with: "
                                                 "murnctl index exclude DIR")
                                      .arg(above));
        return output.exitStatus();
    }
    IndexSettings::setRoots(roots);
    return applySettings(output);
}

static int setRule(const QString &pattern, bool isExcluded, KPCommandOutput &output)
{
    if (!pattern.isValidUtf16())
        return kpReportUsage(&kpIndexCommand, QStringLiteral("the pattern is not UTF-8"));
    if (!IndexSettings::isPattern(pattern))
        return kpReportUsage(&kpIndexCommand,
                             QStringLiteral("a pattern is a folder's name, or a path that begins "
                                            "with / or ~/"));
    IndexSettings::setExcluded(pattern, isExcluded);
    return applySettings(output);
}

int KPIndexActions::exclude(const QString &operand, const KPCommandLine &, KPCommandOutput &output)
{
    return setRule(operand, true, output);
}

int KPIndexActions::include(const QString &operand, const KPCommandLine &, KPCommandOutput &output)
{
    return setRule(operand, false, output);
}
