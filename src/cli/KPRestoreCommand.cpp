// murnctl restore: gives files back the tags and ratings of a backup.
#include "KPIndexSession.h"
#include "KPProgressLine.h"
#include "KarvexRestore.h"
#include "XPPath.h"

#include <QDateTime>
#include <algorithm>

static QByteArray stars(double rating)
{
    return rating > 0 ? QByteArray::number(rating) : QByteArray("none");
}

static QString time(const std::optional<PropertyValue::Date> &date)
{
    if (!date)
        return QStringLiteral("no time");
    const auto moment =
        QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(date->secondsSince1970() * 1000));
    return moment.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

static QString list(const QStringList &tags)
{
    return tags.isEmpty() ? QStringLiteral("none") : tags.join(QStringLiteral(", "));
}

static void printLine(const char *what, const QString &before, const QString &after,
                      KPCommandOutput &output)
{
    output.write("  " + QByteArray(what) + XPPath::printable(before).toUtf8() + " -> " +
                 XPPath::printable(after).toUtf8() + '\n');
}

// A value that goes is said to.
static QString afterwards(const QString &value, bool goes,
                          const std::optional<PropertyValue::Date> &date)
{
    return goes ? QStringLiteral("none: removed on %1").arg(time(date))
                : QStringLiteral("%1 (%2)").arg(value, time(date));
}

// A file, then a line for each of the values that differ, with the time when they were set.
static void printChange(const KarvexRestore::Change &change, KPCommandOutput &output)
{
    output.write(output.name(change.path));
    if (change.recordedAt != change.path)
        output.write("  (was " + output.name(change.recordedAt) + ')');
    output.write("\n");
    const KarvexBackupRecord &before = change.before;
    const KarvexBackupRecord &after = change.after;
    const QString withTime = QStringLiteral("%1 (%2)");
    if (before.tags != after.tags || before.tagDate != after.tagDate)
        printLine("tags    ", withTime.arg(list(before.tags), time(before.tagDate)),
                  afterwards(list(after.tags), change.removesTags(), after.tagDate), output);
    if (before.rating != after.rating || before.ratingDate != after.ratingDate)
        printLine("rating  ",
                  withTime.arg(QLatin1String(stars(before.rating)), time(before.ratingDate)),
                  afterwards(QLatin1String(stars(after.rating)), change.removesRating(),
                             after.ratingDate),
                  output);
}

static QByteArray jsonOf(const KarvexBackupRecord &record)
{
    return "{\"tags\": " + KPCommandOutput::json(record.tags) +
           ", \"rating\": " + QByteArray::number(record.rating, 'g', 17) + '}';
}

static QStringList removed(const KarvexRestore::Change &change)
{
    QStringList keys;
    if (change.removesTags())
        keys.append(QStringLiteral("tags"));
    if (change.removesRating())
        keys.append(QStringLiteral("rating"));
    return keys;
}

static void printJson(const KarvexRestore::Result &result, KPCommandOutput &output)
{
    QByteArrayList changes;
    for (const auto &change : result.changes)
        changes.append("{\"path\": " + KPCommandOutput::json(change.path) +
                       ", \"recordedAt\": " + KPCommandOutput::json(change.recordedAt) +
                       ", \"before\": " + jsonOf(change.before) +
                       ", \"after\": " + jsonOf(change.after) +
                       ", \"removes\": " + KPCommandOutput::json(removed(change)) + '}');
    QByteArrayList several;
    for (const auto &each : result.several)
        several.append("{\"recordedAt\": " + KPCommandOutput::json(each.recordedAt) +
                       ", \"candidates\": " + KPCommandOutput::json(each.candidates) + '}');
    output.write("{\"status\": " + KPCommandOutput::json(result.status) +
                 ", \"records\": " + QByteArray::number(result.records) +
                 ", \"missing\": " + QByteArray::number(result.missing) + ",\n \"changes\": [" +
                 changes.join(",\n  ") + "],\n \"several\": [" + several.join(",\n  ") + "]}\n");
}

static void printText(const KarvexRestore::Result &result, bool isDryRun, KPCommandOutput &output)
{
    for (const auto &change : result.changes)
        printChange(change, output);
    const QString done =
        isDryRun ? QStringLiteral("%1 files would be changed").arg(result.changes.size())
                 : result.status;
    output.write(done.toUtf8());
    const auto losing =
        std::count_if(result.changes.begin(), result.changes.end(),
                      [](const auto &change) { return !removed(change).isEmpty(); });
    if (losing > 0)
        output.write(QStringLiteral("; of %1 tags or a rating %2 away, as the backup says")
                         .arg(QString::number(losing), isDryRun ? QStringLiteral("would be taken")
                                                                : QStringLiteral("were taken"))
                         .toUtf8());
    if (result.missing > 0)
        output.write(
            QStringLiteral("; %1 files of the backup are nowhere").arg(result.missing).toUtf8());
    output.write("\n");
}

static void reportFailures(const KarvexRestore::Result &result, KPCommandOutput &output)
{
    for (const XPError &failure : result.failures)
        output.fail(failure.path, failure.reason());
    for (const auto &several : result.several) {
        QStringList names;
        for (const QString &candidate : several.candidates)
            names.append(XPPath::printable(candidate));
        output.fail(several.recordedAt, QStringLiteral("not there, and left alone as it may be "
                                                       "any of: ") +
                                            names.join(QStringLiteral(", ")));
    }
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const QStringList from = line.values("--from");
    if (!line.operands().isEmpty() || from.size() > 1 || from.contains(QString()))
        return kpReportUsage(&kpRestoreCommand,
                             QStringLiteral("takes one file at most, after --from"));
    const QString path =
        from.isEmpty() ? KarvexBackupFile::defaultPath() : XPPath::absolute(from.first());
    KPIndexSession session(output);
    if (!session.catchUp(false))
        return KPExitInterrupted;
    KPProgressLine progress;
    KarvexRestore::Options options;
    options.dryRun = line.has("--dry-run");
    options.progress.show = [&](qsizetype done, qsizetype total) {
        progress.show(QStringLiteral("murnctl: %1 of %2 files").arg(done).arg(total));
    };
    options.progress.stop = [&] { return session.interrupt().happened(); };
    const auto result = KarvexRestore(session.index().source(), options).readSingleFile(path);
    progress.clear();
    if (result.error) {
        output.fail(path, result.status + QStringLiteral(": ") + result.error->reason());
        return output.exitStatus();
    }
    if (output.isJson())
        printJson(result, output);
    else
        printText(result, options.dryRun, output);
    reportFailures(result, output);
    const int status = output.exitStatus();
    return result.stopped ? KPExitInterrupted : status;
}

const KPCommand kpRestoreCommand = {
    "restore",
    "[--from FILE] [--dry-run] [--json]",
    "Gives files back the tags and ratings that a backup has of them.",
    "What a file has is replaced only by what was set later. A file that is not where it was is\n"
    "looked for by name, and restored when there is just one. Tags or a rating are taken away "
    "only\n"
    "where the backup says that they were removed, at a time after the file's own. Prints each "
    "file\n"
    "that changes, and its tags and rating before and after.\n",
    {{"--from", "FILE", "the backup; else the one that 'murnctl backup' writes"},
     {"--dry-run", nullptr, "change nothing, only print what would be"},
     {"--json", nullptr, "print an object"}},
    run};
