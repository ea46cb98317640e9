#include "KarvexBackup.h"

#include "IndexLook.h"
#include "Karvex.h"
#include "KarvexFileLock.h"
#include "MDQuery.h"
#include "XPAtomicFile.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <cmath>

using Records = KarvexBackupFile::Records;

static constexpr qsizetype mostResults = 500'000;
static constexpr qsizetype rowsALook = 256;
// A synchronised folder may bring another file between reading and writing.
static constexpr int mostAttempts = 5;

static std::unique_ptr<MDQuery> taggedFiles(IndexSource &source)
{
    QStringList clauses;
    for (const QString &key : {Karvex::userTagTimeKey, Karvex::userTagsKey, Karvex::systemTagsKey,
                               Karvex::starRatingKey})
        clauses.append(QStringLiteral("(%1 == *)").arg(key));
    auto query = MDQuery::create(source, clauses.join(QStringLiteral(" || ")));
    if (!query)
        return {};
    (*query)->setSearchScope({MDQuery::scopeComputer, MDQuery::scopeNetwork});
    (*query)->setMaxCount(mostResults);
    (*query)->execute(MDQuery::Synchronous);
    return *std::move(query);
}

namespace {

// One value of a file as the index has it.
enum class Reading { None, Known, Unreadable };

// What the index has of one file. Of a value that cannot be read nothing is in the record.
struct Present
{
    KarvexBackupRecord record;
    Reading tags = Reading::None;
    Reading tagDate = Reading::None;
    Reading rating = Reading::None;
    Reading ratingDate = Reading::None;
};
using PresentFiles = std::vector<Present>;

} // namespace

static Reading readingOf(const PropertyValue &value, bool isRight)
{
    if (value.isNull())
        return Reading::None;
    return isRight ? Reading::Known : Reading::Unreadable;
}

static Reading readDate(const PropertyValue &value, std::optional<PropertyValue::Date> &date)
{
    const Reading reading = readingOf(value, value.kind() == PropertyValue::Kind::Date);
    if (reading == Reading::Known)
        date = value.date();
    return reading;
}

// What no property list can hold, as another program left it, is not taken.
static QStringList storable(const QStringList &tags)
{
    QStringList kept;
    for (const QString &tag : tags) {
        if (tag.isValidUtf16())
            kept.append(tag);
    }
    return kept;
}

static Present backupDict(const IndexLook::Row &row)
{
    const auto value = [&](const QString &key) { return row.attribute(key); };
    Present present;
    KarvexBackupRecord &record = present.record;
    record.path = XPPath::decode(row.path());
    const PropertyValue tags = value(Karvex::tagsToSearchFor());
    const PropertyValue rating = value(Karvex::starRatingKey);
    const double stars = rating.doubleValue(std::nan(""));
    present.tags = readingOf(tags, tags.isArrayOfStrings());
    present.rating = readingOf(rating, std::isfinite(stars));
    record.tags = present.tags == Reading::Known ? storable(tags.strings()) : QStringList();
    if (record.tags.isEmpty() && !tags.array().isEmpty())
        present.tags = Reading::Unreadable; // not one of them is a text
    record.rating = present.rating == Reading::Known ? stars : 0;
    present.tagDate = readDate(value(Karvex::userTagTimeKey), record.tagDate);
    present.ratingDate = readDate(value(Karvex::ratingTimeKey), record.ratingDate);
    // A time beside what cannot be read would say that it was removed then.
    if (present.tags == Reading::Unreadable)
        record.tagDate.reset();
    if (present.rating == Reading::Unreadable)
        record.ratingDate.reset();
    return present;
}

static std::optional<PresentFiles> presentFiles(IndexSource &source, const MDQuery &query,
                                                const KarvexProgress &progress)
{
    PresentFiles files;
    files.reserve(static_cast<size_t>(query.resultCount()));
    for (qsizetype next = 0; next < query.resultCount();) {
        if (!progress.goesOn(next, query.resultCount()))
            return {};
        const qsizetype end = std::min(next + rowsALook, query.resultCount());
        const IndexLook look(source);
        for (; next < end; ++next) {
            const auto row = look.at(query.itemAt(next));
            if (!row)
                continue;
            Present present = backupDict(*row);
            if (present.record.isWorthKeeping())
                files.push_back(std::move(present));
        }
    }
    return files;
}

namespace {

// One location: what was found there.
struct Location
{
    QString path;
    QByteArray bytes;             // empty: there is no file
    std::optional<XPError> error; // it must not be written
};

class Run
{
public:
    Run(const QStringList &paths, const PresentFiles &present, KarvexBackup::Result *result)
        : m_present(present), m_result(result)
    {
        for (const QString &path : paths)
            m_locations.push_back({path, {}, {}});
    }

    bool attempt(); // false: a location changed meanwhile

private:
    Records read(Location &location);
    bool write(Location &location, const QByteArray &bytes);
    void fail(Location &location, const XPError &error);

    const PresentFiles &m_present;
    KarvexBackup::Result *m_result;
    std::vector<Location> m_locations;
};

void Run::fail(Location &location, const XPError &error)
{
    if (m_result->problems.isEmpty())
        m_result->failure = error.kind;
    location.error = error;
    m_result->problems.append(XPFolders::abbreviateWithTilde(location.path) + QStringLiteral(": ") +
                              error.reason());
}

Records Run::read(Location &location)
{
    location.bytes.clear();
    const auto bytes = KarvexBackupFile::readBytes(location.path);
    if (!bytes) {
        if (bytes.error().kind != XPError::Kind::NotFound)
            fail(location, bytes.error());
        return {};
    }
    const auto records = KarvexBackupFile::decode(*bytes, location.path);
    if (records) {
        location.bytes = *bytes;
        return *records;
    }
    const auto aside = XPAtomicFile::setAside(location.path);
    if (!aside)
        fail(location, aside.error());
    else
        m_result->notes.append(QStringLiteral("%1 could not be read as a backup (%2) and is now %3")
                                   .arg(XPFolders::abbreviateWithTilde(location.path),
                                        records.error().reason(), XPPath::fileName(*aside)));
    return {};
}

bool Run::write(Location &location, const QByteArray &bytes)
{
    if (location.error || location.bytes == bytes)
        return true;
    if (KarvexBackupFile::readBytes(location.path).valueOr({}) != location.bytes)
        return false;
    if (const auto error = XPAtomicFile::write(location.path, bytes))
        fail(location, *error);
    else
        m_result->written.append(location.path);
    return true;
}

// What a file has now counts. What it has no trace of any more stays as it was backed up, and so
// does what cannot be read; tags, too, that are gone without the empty list which says "removed".
static KarvexBackupRecord overlaid(const Present &present, const KarvexBackupRecord &old)
{
    KarvexBackupRecord merged = present.record;
    if (present.tags != Reading::Known ||
        (present.tagDate == Reading::Unreadable && merged.tags == old.tags)) {
        merged.tags = old.tags;
        merged.tagDate = old.tagDate;
    }
    if (present.rating == Reading::Unreadable ||
        (present.rating == Reading::None && !merged.ratingDate) ||
        (present.ratingDate == Reading::Unreadable && merged.rating == old.rating)) {
        merged.rating = old.rating;
        merged.ratingDate = old.ratingDate;
    }
    return merged;
}

bool Run::attempt()
{
    Records records;
    for (Location &location : m_locations) {
        if (location.error)
            continue;
        const Records found = read(location);
        for (const KarvexBackupRecord &record : found) {
            if (!records.contains(record.path))
                records.insert(record.path, record);
        }
    }
    for (const Present &present : m_present) {
        KarvexBackupRecord &record = records[present.record.path];
        record = overlaid(present, record);
    }
    const auto bytes = KarvexBackupFile::encode(records);
    if (!bytes) {
        for (Location &location : m_locations)
            fail(location, bytes.error());
        return true;
    }
    for (Location &location : m_locations) {
        if (!write(location, *bytes))
            return false;
    }
    m_result->worked = std::none_of(m_locations.begin(), m_locations.end(),
                                    [](const Location &each) { return each.error.has_value(); });
    return true;
}

} // namespace

static void write(const QStringList &locations, const PresentFiles &present,
                  KarvexBackup::Result *result)
{
    const KarvexFileLock lock = KarvexFileLock::named(KarvexBackupFile::defaultPath());
    Run run(locations, present, result);
    int attempts = 1;
    while (!run.attempt()) {
        if (++attempts > mostAttempts) {
            result->problems.append(qtTrId("KarvexBackupBusy"));
            break;
        }
    }
}

std::optional<XPError> KarvexBackup::keep(const QList<KarvexBackupRecord> &records)
{
    const auto reading = [](bool isThere) { return isThere ? Reading::Known : Reading::None; };
    PresentFiles present;
    for (KarvexBackupRecord record : records) {
        record.tags = storable(record.tags);
        if (record.isWorthKeeping())
            present.push_back({record, reading(!record.tags.isEmpty()),
                               reading(record.tagDate.has_value()), reading(record.rating > 0),
                               reading(record.ratingDate.has_value())});
    }
    if (present.empty())
        return {};
    Result result;
    write({KarvexBackupFile::defaultPath()}, present, &result);
    if (result.worked)
        return {};
    return XPError::make(
        result.failure,
        qtTrId("KarvexTagsNotBackedUp").arg(result.problems.join(QStringLiteral("; "))));
}

KarvexBackup::Result KarvexBackup::writeSingleFile(IndexSource &source,
                                                   const QStringList &locations,
                                                   const KarvexProgress &progress)
{
    Result result;
    const auto query = taggedFiles(source);
    if (!query || locations.isEmpty()) {
        result.status = QStringLiteral("spotlight failed");
        return result;
    }
    const auto present = presentFiles(source, *query, progress);
    if (!present) {
        result.status = QStringLiteral("stopped");
        result.stopped = true;
        result.failure = XPError::Kind::Cancelled;
        return result;
    }
    if (query->resultCount() >= mostResults)
        result.problems.append(qtTrId("KarvexBackupPartial").arg(mostResults));
    result.itemCount = static_cast<qsizetype>(present->size());
    write(locations, *present, &result);
    result.status =
        result.worked
            ? QStringLiteral("%1 backups done, file written to %2")
                  .arg(result.itemCount)
                  .arg(XPFolders::abbreviateWithTilde(locations.first()))
            : qtTrId("KarvexBackupFailed").arg(result.problems.join(QStringLiteral("; ")));
    return result;
}
