#include "KPWaitingTagChanges.h"

#include "KarvexFileLock.h"
#include "XPAtomicFile.h"
#include "XPFileInfo.h"
#include "XPFolders.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

using KPWaitingTagChanges::Change;

static const QString timeKey = QStringLiteral("asked");
static const QString pathsKey = QStringLiteral("files");

QString KPWaitingTagChanges::path()
{
    return XPFolders::ourApplicationSupport() + QStringLiteral("/waiting_tag_changes.json");
}

static XPError notUnderstood()
{
    return XPError::malformed(qtTrId("KPWaitingTagsNoList"));
}

XPResult<QList<Change>> KPWaitingTagChanges::read()
{
    const auto bytes = XPAtomicFile::read(path());
    if (!bytes && bytes.error().kind == XPError::Kind::NotFound)
        return QList<Change>();
    if (!bytes)
        return bytes.error();
    return parse(*bytes);
}

XPResult<QList<Change>> KPWaitingTagChanges::parse(const QByteArray &bytes)
{
    QList<Change> changes;
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (!document.isArray())
        return notUnderstood();
    for (const auto value : document.array()) {
        const QJsonObject object = value.toObject();
        Change change;
        change.rename = KPTagRename::fromJson(object);
        change.time = QDateTime::fromString(object.value(timeKey).toString(), Qt::ISODate);
        for (const auto file : object.value(pathsKey).toArray())
            change.paths.append(file.toString());
        if (change.rename.from.isEmpty() || change.paths.contains(QString()))
            return notUnderstood();
        changes.append(change);
    }
    return changes;
}

QByteArray KPWaitingTagChanges::bytesOf(const QList<Change> &changes)
{
    QJsonArray array;
    for (const Change &change : changes) {
        QJsonObject object = change.rename.toJson();
        object.insert(timeKey, change.time.toString(Qt::ISODate));
        object.insert(pathsKey, QJsonArray::fromStringList(change.paths));
        array.append(object);
    }
    return QJsonDocument(array).toJson();
}

static std::optional<XPError> write(const QList<Change> &changes)
{
    return XPAtomicFile::write(KPWaitingTagChanges::path(), KPWaitingTagChanges::bytesOf(changes));
}

std::optional<XPError> KPWaitingTagChanges::add(const KPTagRename &rename, const QStringList &paths)
{
    if (paths.isEmpty())
        return {};
    if (auto error = XPFolders::create(XPFolders::ourApplicationSupport()))
        return error;
    const KarvexFileLock lock = KarvexFileLock::named(path());
    auto changes = read();
    if (!changes) {
        if (changes.error().kind != XPError::Kind::Malformed)
            return changes.error();
        if (const auto aside = XPAtomicFile::setAside(path()); !aside)
            return aside.error();
        changes = QList<Change>();
    }
    return write(*changes + QList<Change>{{rename, QDateTime::currentDateTimeUtc(), paths}});
}

// A file that is there is changed by the first change that waits for it, then by the next.
XPResult<QList<Change>> KPWaitingTagChanges::takeReady()
{
    auto waiting = read();
    if (!waiting || waiting->isEmpty())
        return waiting;
    // Looked at before the lock is taken: a volume may take its time.
    QSet<QString> there;
    for (const Change &change : *waiting) {
        for (const QString &file : change.paths) {
            if (XPFileInfo::read(file))
                there.insert(file);
        }
    }
    if (there.isEmpty())
        return QList<Change>();
    const KarvexFileLock lock = KarvexFileLock::named(path());
    auto changes = read();
    if (!changes)
        return changes;
    QList<Change> ready;
    QList<Change> left;
    for (const Change &change : *changes) {
        Change now{change.rename, change.time, {}};
        Change later = now;
        for (const QString &file : change.paths)
            (there.contains(file) ? now : later).paths.append(file);
        if (!now.paths.isEmpty())
            ready.append(now);
        if (!later.paths.isEmpty())
            left.append(later);
    }
    if (auto error = write(left))
        return *error;
    return ready;
}

std::optional<XPError> KPWaitingTagChanges::drop()
{
    const KarvexFileLock lock = KarvexFileLock::named(path());
    return write({});
}

XPResult<QStringList> KPWaitingTagChanges::takeBack(const KPTagRename &rename)
{
    // Without a lock first: mostly nothing waits.
    auto changes = read();
    if (!changes)
        return changes.error();
    const auto isMeant = [&rename](const Change &change) { return change.rename == rename; };
    if (std::none_of(changes->begin(), changes->end(), isMeant))
        return QStringList();
    const KarvexFileLock lock = KarvexFileLock::named(path());
    changes = read();
    if (!changes)
        return changes.error();
    QStringList paths;
    for (const Change &change : *changes) {
        if (isMeant(change))
            paths += change.paths;
    }
    QList<Change> left = *changes;
    left.removeIf(isMeant);
    if (auto error = write(left))
        return *error;
    return paths;
}
