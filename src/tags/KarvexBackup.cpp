#include "KarvexBackup.h"

#include "Karvex.h"
#include "KarvexFileLock.h"
#include "MDItem.h"
#include "MDQuery.h"
#include "XPAtomicFile.h"
#include "XPFolders.h"
#include "XPPath.h"

using Records = KarvexBackupFile::Records;

static constexpr qsizetype mostResults = 500'000;
static constexpr qsizetype rowsAReading = 256;
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

static std::optional<PropertyValue::Date> dateOf(const PropertyValue &value)
{
    return value.kind() == PropertyValue::Kind::Date ? std::optional(value.date()) : std::nullopt;
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

static KarvexBackupRecord backupDict(const IndexCatalog &catalog, IndexSlot slot)
{
    const auto value = [&](const QString &key) { return MDItem::attribute(catalog, slot, key); };
    KarvexBackupRecord record;
    record.path = XPPath::decode(catalog.path(slot));
    record.tags = storable(value(Karvex::tagsToSearchFor()).strings());
    record.rating = value(Karvex::starRatingKey).doubleValue();
    record.tagDate = dateOf(value(Karvex::userTagTimeKey));
    record.ratingDate = dateOf(value(Karvex::ratingTimeKey));
    return record;
}

static std::optional<Records> presentRecords(IndexSource &source, const MDQuery &query,
                                             const KarvexProgress &progress)
{
    Records records;
    records.reserve(query.resultCount());
    const IndexCatalog &catalog = source.catalog();
    for (qsizetype next = 0; next < query.resultCount();) {
        if (!progress.goesOn(next, query.resultCount()))
            return {};
        const qsizetype end = std::min(next + rowsAReading, query.resultCount());
        const IndexCatalog::Reading reading(catalog);
        for (; next < end; ++next) {
            const IndexSlot slot = catalog.slotOf(query.itemAt(next));
            if (slot == IndexCatalog::noSlot)
                continue;
            const KarvexBackupRecord record = backupDict(catalog, slot);
            if (record.isWorthKeeping())
                records.insert(record.path, record);
        }
    }
    return records;
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
    Run(const QStringList &paths, const Records &present, KarvexBackup::Result *result)
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

    const Records &m_present;
    KarvexBackup::Result *m_result;
    std::vector<Location> m_locations;
};

void Run::fail(Location &location, const XPError &error)
{
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
        m_result->problems.append(
            QStringLiteral("%1 could not be read as a backup (%2) and is now %3")
                .arg(XPFolders::abbreviateWithTilde(location.path), records.error().reason(),
                     XPPath::fileName(*aside)));
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

// What a file has now counts; what it has no trace of any more stays as it was backed up.
static void overlay(Records &records, const KarvexBackupRecord &record)
{
    KarvexBackupRecord merged = record;
    const auto old = records.constFind(record.path);
    if (old != records.cend() && record.tags.isEmpty() && !record.tagDate) {
        merged.tags = old->tags;
        merged.tagDate = old->tagDate;
    }
    if (old != records.cend() && record.rating <= 0 && !record.ratingDate) {
        merged.rating = old->rating;
        merged.ratingDate = old->ratingDate;
    }
    records.insert(record.path, merged);
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
    for (const KarvexBackupRecord &record : m_present)
        overlay(records, record);
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
    const auto present = presentRecords(source, *query, progress);
    if (!present) {
        result.status = QStringLiteral("stopped");
        result.stopped = true;
        return result;
    }
    if (query->resultCount() >= mostResults)
        result.problems.append(
            QStringLiteral("only %1 files with tags were backed up").arg(mostResults));
    result.itemCount = present->size();
    const KarvexFileLock lock = KarvexFileLock::named(KarvexBackupFile::defaultPath());
    Run run(locations, *present, &result);
    int attempts = 1;
    while (!run.attempt()) {
        if (++attempts > mostAttempts) {
            result.problems.append(
                QStringLiteral("the backup is being changed by another program"));
            break;
        }
    }
    result.status = result.worked ? QStringLiteral("%1 backups done, file written to %2")
                                        .arg(result.itemCount)
                                        .arg(XPFolders::abbreviateWithTilde(locations.first()))
                                  : QStringLiteral("the backup failed: ") +
                                        result.problems.join(QStringLiteral("; "));
    return result;
}
