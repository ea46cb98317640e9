#include "KarvexRestore.h"

#include "Karvex.h"
#include "KarvexErrors.h"
#include "KarvexFileLock.h"
#include "KarvexTagStore.h"
#include "KarvexTimeStamp.h"
#include "MDItem.h"
#include "MDQuery.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPText.h"

#include <QMap>

using Date = PropertyValue::Date;

namespace {

// A value of the file as it is.
template <typename T>
struct Present
{
    T value{};
    std::optional<Date> date;
    bool stands = false; // something is in its place, an empty list too
};

struct PresentFile
{
    XPResult<Present<QStringList>> tags;
    XPResult<Present<double>> rating;

    KarvexBackupRecord record(const QString &path) const
    {
        const auto known = tags.valueOr({});
        const auto rated = rating.valueOr({});
        return {path, known.value, rated.value, known.date, rated.date};
    }
};

} // namespace

static XPResult<std::optional<Date>> readDate(const QString &key, const QString &path)
{
    const auto value = Karvex::getXAttrMetaData(key, path);
    if (!value)
        return value.error();
    return value->kind() == PropertyValue::Kind::Date ? std::optional(value->date())
                                                      : std::optional<Date>();
}

static XPResult<Present<QStringList>> presentTags(const QString &path)
{
    const auto tags = Karvex::getUserTags(path);
    const auto raw = Karvex::getXAttrMetaData(Karvex::tagsToSearchFor(), path);
    const auto date = readDate(Karvex::userTagTimeKey, path);
    if (!tags)
        return tags.error();
    if (!raw)
        return raw.error();
    if (!date)
        return date.error();
    return Present<QStringList>{*tags, *date, !raw->isNull() || !tags->isEmpty()};
}

static XPResult<Present<double>> presentRating(const QString &path)
{
    const auto rating = Karvex::getRating(path);
    const auto date = readDate(Karvex::ratingTimeKey, path);
    if (!rating)
        return rating.error();
    if (!date)
        return date.error();
    return Present<double>{*rating, *date, *rating > 0};
}

static PresentFile backupDictForPath(const QString &path)
{
    return {presentTags(path), presentRating(path)};
}

// Whether what the backup says of a value comes in the place of what the file says. A value that
// stands on the file goes only when both times say that it was removed since.
static bool isNewer(const std::optional<Date> &backup, bool hasBackup,
                    const std::optional<Date> &file, bool hasFile)
{
    if (!hasBackup && hasFile)
        return backup && file && KarvexBackupRecord::isLater(*backup, *file);
    if (backup)
        return !file || KarvexBackupRecord::isLater(*backup, *file);
    return hasBackup && !hasFile && !file;
}

// What the file would be like.
static KarvexBackupRecord merged(const KarvexBackupRecord &backup, const PresentFile &present,
                                 const QString &path)
{
    KarvexBackupRecord after = present.record(path);
    if (present.tags &&
        isNewer(backup.tagDate, !backup.tags.isEmpty(), after.tagDate, present.tags->stands)) {
        after.tags = Karvex::removeDuplicateTags(backup.tags);
        after.tagDate = backup.tagDate ? *backup.tagDate : Date::now();
    }
    if (present.rating &&
        isNewer(backup.ratingDate, backup.rating > 0, after.ratingDate, present.rating->stands)) {
        after.rating = std::min(backup.rating, 5.0);
        after.ratingDate = backup.ratingDate ? *backup.ratingDate : Date::now();
    }
    return after;
}

KarvexRestore::KarvexRestore(IndexSource &source, Options options)
    : m_source(source), m_options(std::move(options))
{
}

KarvexRestore::Result KarvexRestore::readSingleFile(const QString &path)
{
    const auto bytes = KarvexBackupFile::readBytes(path);
    auto records = bytes ? KarvexBackupFile::decode(*bytes, path)
                         : XPResult<KarvexBackupFile::Records>(bytes.error());
    if (!records) {
        m_result.error = records.error();
        m_result.status = QStringLiteral("no restore data found");
        return m_result;
    }
    m_records = *std::move(records);
    m_result.records = m_records.size();
    // In the order of their paths, so that two runs say the same.
    QStringList paths = m_records.keys();
    paths.sort();
    for (const QString &recorded : paths) {
        if (!m_options.progress.goesOn(m_done++, m_records.size())) {
            m_result.stopped = true;
            break;
        }
        const KarvexBackupRecord record = m_records.value(recorded);
        const QString file = XPFolders::expandTilde(recorded);
        const auto info = XPFileInfo::read(file);
        if (info)
            restore(record, file);
        else if (info.error().kind == XPError::Kind::NotFound)
            m_missing.append(record);
        else
            m_result.failures.append(info.error());
    }
    if (!m_result.stopped)
        findMissing();
    m_result.status = QStringLiteral("%1 restores done").arg(m_result.changes.size());
    return m_result;
}

// The file's present state is looked at again under its lock, so that tags which somebody sets at
// this moment are not overwritten.
void KarvexRestore::restore(const KarvexBackupRecord &record, const QString &path)
{
    if (m_options.only && !m_options.only->contains(record.path))
        return;
    std::optional<KarvexFileLock> lock;
    if (!m_options.dryRun)
        lock.emplace(path);
    const PresentFile present = backupDictForPath(path);
    if (!present.tags)
        m_result.failures.append(present.tags.error());
    else if (!present.rating)
        m_result.failures.append(present.rating.error());
    const KarvexBackupRecord before = present.record(path);
    const Change change{path, record.path, before, merged(record, present, path)};
    if (KarvexBackupRecord::backupDictsTheSame(record, before) ||
        KarvexBackupRecord::backupDictsTheSame(change.before, change.after))
        return;
    const auto error = m_options.dryRun ? std::nullopt : write(change);
    if (error)
        m_result.failures.append(*error);
    else
        m_result.changes.append(change);
}

// Under the file's lock.
std::optional<XPError> KarvexRestore::write(const Change &change) const
{
    const QString &path = change.path;
    const KarvexBackupRecord &before = change.before;
    const KarvexBackupRecord &after = change.after;
    std::optional<XPError> error;
    if (after.tagDate && (after.tags != before.tags || after.tagDate != before.tagDate))
        error = KarvexTimeStamp::writeWith(Karvex::userTagTimeKey, *after.tagDate, path, [&] {
            return KarvexTagStore::current().write(after.tags, path);
        });
    if (after.ratingDate &&
        (after.rating != before.rating || after.ratingDate != before.ratingDate)) {
        const PropertyValue rating =
            after.rating > 0 ? PropertyValue::real(after.rating) : PropertyValue();
        const auto second =
            KarvexTimeStamp::writeWith(Karvex::ratingTimeKey, *after.ratingDate, path, [&] {
                return Karvex::setXAttrMetaData(rating, Karvex::starRatingKey, path);
            });
        error = error ? error : second;
    }
    if (error)
        error->path = path;
    return error;
}

// --- By name

// Records of one name stand together: if they differ, nobody can say which one is meant.
void KarvexRestore::findMissing()
{
    QMap<QString, QList<KarvexBackupRecord>> byName;
    for (const KarvexBackupRecord &record : m_missing)
        byName[decomposed(XPPath::fileName(record.path))].append(record);
    m_done = m_records.size() - m_missing.size();
    for (const QList<KarvexBackupRecord> &records : byName) {
        m_done += records.size();
        if (!m_options.progress.goesOn(m_done, m_records.size())) {
            m_result.stopped = true;
            return;
        }
        searchAndRestore(records);
    }
}

void KarvexRestore::searchAndRestore(const QList<KarvexBackupRecord> &records)
{
    const KarvexBackupRecord &first = records.first();
    const auto files = filesNamed(XPPath::fileName(first.path));
    if (!files) {
        qCWarning(xpLog).noquote()
            << "Exception on Tag restore by File Name:" << XPPath::printable(first.path);
        m_result.missing += records.size();
        return;
    }
    QStringList candidates;
    for (const QString &file : *files) {
        if (!m_records.contains(file) && !m_records.contains(XPFolders::abbreviateWithTilde(file)))
            candidates.append(file);
    }
    const bool agree = std::all_of(records.begin(), records.end(), [&](const auto &each) {
        return KarvexBackupRecord::backupDictsTheSame(each, first);
    });
    if (candidates.isEmpty()) {
        m_result.missing += records.size();
    } else if (candidates.size() == 1 && agree) {
        restore(first, candidates.first());
    } else {
        for (const KarvexBackupRecord &record : records)
            m_result.several.append({record.path, candidates});
    }
}

static QString escaped(const QString &name)
{
    QString text;
    for (const QChar unit : name) {
        if (unit == u'"' || unit == u'\\' || unit == u'*' || unit == u'?')
            text += u'\\';
        text += unit;
    }
    return text;
}

// The files of just this name, composed or not. The name of a file is its display name; the
// second spelling is the one in which another system stores it.
std::optional<QStringList> KarvexRestore::filesNamed(const QString &name) const
{
    const QString text =
        QStringLiteral("((kMDItemDisplayName == \"%1\") || (kMDItemDisplayName == \"%2\"))")
            .arg(escaped(name), escaped(decomposed(name)));
    const auto query = MDQuery::create(m_source, text);
    if (!query)
        return {};
    (*query)->execute(MDQuery::Synchronous);
    QStringList files;
    for (qsizetype i = 0; i < (*query)->resultCount(); ++i) {
        const QString path = (*query)->resultAt(i)->path();
        if (decomposed(XPPath::fileName(path)) == decomposed(name))
            files.append(path);
    }
    files.sort();
    return files;
}
