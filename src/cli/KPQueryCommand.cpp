// murnctl query: prints what a metadata query matches.
#include "KPResultsRun.h"
#include "MDQueryParser.h"
#include "XPPath.h"

#include <algorithm>
#include <cstdio>

// The text once more, with a mark below the place.
static int reportSyntax(const QString &text, const XPError &error)
{
    const auto at = std::clamp<qsizetype>(error.offset.value_or(0), 0, text.size());
    const QString before = XPPath::printable(text.left(at));
    const QString mark = QString(before.size(), u' ') + u'^';
    return kpReportUsage(&kpQueryCommand, error.message + QStringLiteral("\n  ") + before +
                                              XPPath::printable(text.mid(at)) +
                                              QStringLiteral("\n  ") + mark);
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    if (line.operands().size() != 1)
        return kpReportUsage(&kpQueryCommand,
                             QStringLiteral("needs one query text; quote it from the shell"));
    const QString &text = line.operands().first();
    const auto predicate = MDQueryParser::parse(text);
    if (!predicate)
        return reportSyntax(text, predicate.error());
    const auto options = KPResultsRun::optionsOf(line);
    if (!options)
        return kpReportUsage(&kpQueryCommand, options.error().message);
    const QStringList folders = KPResultsRun::foldersOf(line, output);
    if (folders.isEmpty() && line.has("--in"))
        return output.exitStatus();
    KPIndexSession session(output);
    if (!session.catchUp(KPResultsRun::asksForContent(text)))
        return KPExitInterrupted;
    return KPResultsRun(*options, session, output).query(text, folders);
}

const KPCommand kpQueryCommand = {
    "query",
    "[OPTION]… TEXT",
    "Prints the files and folders that a metadata query matches.",
    "Comparisons ATTRIBUTE OP VALUE, with == != < > <= >=, joined by && || ! and parentheses:\n"
    "  kMDItemFSName == \"*.pdf\"c && kMDItemStarRating >= 3\n"
    "  kMDItemKXUserTags == \"invoice\"cd && kMDItemTextContent == \"rent\"cdw\n"
    "  InRange(kMDItemFSSize, 1000, 2000) || kMDItemContentModificationDate > $time.today(-7)\n"
    "Quoted values take the wildcards * and ? and the modifiers c (case does not matter),\n"
    "d (accents do not) and w (whole words); * alone means that there is a value. See\n"
    "murnctl(1) for the attributes.\n",
    KPResultsRun::commandOptions(
        {{"--in", "DIR", "in this folder (and those of further --in); else everywhere"}}),
    run};
