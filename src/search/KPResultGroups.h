#pragma once

#include "KPPool.h"
#include "KPSortOrder.h"

#include <QDateTime>
#include <vector>

class KPDoc;

// One group of documents: what they have in common. There is one object for each key and field in
// the process, which lives for it: documents keep its address (KPDoc::cachedGroup()).
struct KPResultGroup
{
    // A key of a text ("KPGroupNameToday"), or what the documents have in common itself: a letter,
    // a type's identifier, a folder's path, a tag.
    QString key;
    KPSortKey::Field field = KPSortKey::Field::Name;
    QString name; // for people, in their language
};

// The groups of an array of documents: each a run of it.
// Threads: a value.
struct KPResultGroups
{
    struct Run
    {
        const KPResultGroup *group = nullptr;
        qsizetype first = 0;
        qsizetype count = 0;
    };
    KPSortKey key;
    std::vector<Run> runs; // in the order of the array, none empty
};

// Which group a document belongs to.
//
// Letters: the first one of the name without its marks; all digits are one group, and so is what
// is neither. Sizes: as KPDoc::fileSizeGroup() says. Dates: in ranges as people speak of them, by
// the local calendar. Types, folders, the first tag, stars: each a group.
// Threads: one at a time.
class KPResultGrouper
{
public:
    // Ranges of dates are those of the day of `now`.
    KPResultGrouper(KPSortKey::Field field, const QDateTime &now);

    struct Place
    {
        const KPResultGroup *group = nullptr;
        // Groups of one field are in the order of these, ascending, equal ones by their names.
        qint64 rank = 0;
    };
    // Of a document whose date, for a field of dates, is `date`: nanoseconds since 1970, 0 unknown.
    Place placeOf(const KPDoc &doc, qint64 date);

    // The day that ranges are told from.
    QDate day() const { return m_day; }

private:
    struct Since
    {
        qint64 start; // nanoseconds since 1970
        const char *key;
    };
    Place textPlace(const char *key, qint64 rank);
    Place ownPlace(const QString &key, const QString &name);
    Place letterPlace(const KPDoc &doc);
    Place datePlace(qint64 date);

    const KPSortKey::Field m_field;
    const QDate m_day;
    std::vector<Since> m_ranges; // the latest first
    QHash<QString, const KPResultGroup *> m_known;
    QHash<const void *, const KPResultGroup *> m_knownByAddress; // of types and folders
};
