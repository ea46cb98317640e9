// murnctl rate: sets the star rating of files.
#include "KPCommandOutput.h"
#include "KPDocEdits.h"
#include "Karvex.h"

static void rate(double stars, const QString &path, KPCommandOutput &output)
{
    // What cannot be read is not written over.
    if (const auto present = Karvex::getRating(path); !present)
        output.fail(path, "the rating cannot be read", present.error());
    else if (const auto error = KPDocEdits::setRating(stars, path))
        output.fail(path, "the rating cannot be changed", *error);
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const QStringList &operands = line.operands();
    if (operands.size() < 2)
        return kpReportUsage(&kpRateCommand, QStringLiteral("a rating and files are needed"));
    const auto stars = KPCommandLine::stars(operands.first());
    if (!stars)
        return kpReportUsage(&kpRateCommand, stars.error().message);
    for (const QString &path : operands.mid(1))
        rate(*stars, path, output);
    return output.exitStatus();
}

const KPCommand kpRateCommand = {
    "rate",
    "STARS FILE…",
    "Sets the star rating of files.",
    "STARS is a number from 0 to 5; it may have a fraction (3.5). 0 removes the rating.\n"
    "A file whose present rating cannot be read is left as it is.\n",
    {},
    run};
