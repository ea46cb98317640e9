#include "KPResultGroups.h"

#include "KPDoc.h"
#include "KPFileType.h"
#include "XPMutex.h"
#include "XPText.h"

#include <QHash>
#include <QtGlobal>
#include <iterator>

using Field = KPSortKey::Field;

// --- The groups of the process

namespace {
struct Registry
{
    XPMutex mutex;
    QHash<std::pair<int, QString>, const KPResultGroup *> groups XP_GUARDED_BY(mutex);
};
} // namespace

// Never taken away: documents keep the addresses. Their number is that of folders, types and tags
// that were ever shown as groups.
static const KPResultGroup *registered(Field field, const QString &key, const QString &name)
{
    static auto &registry = *new Registry;
    const XPLocker locker(registry.mutex);
    const KPResultGroup *&group = registry.groups[{static_cast<int>(field), key}];
    if (group == nullptr)
        group = new KPResultGroup{key, field, name};
    return group;
}

// --- Texts, each with its place among those of its field

namespace {

constexpr const char *noStars = QT_TRID_NOOP("KPGroupNameUnrated");
constexpr const char *stars[] = {noStars,
                                 QT_TRID_NOOP("KPGroupNameOneStar"),
                                 QT_TRID_NOOP("KPGroupNameTwoStars"),
                                 QT_TRID_NOOP("KPGroupNameThreeStars"),
                                 QT_TRID_NOOP("KPGroupNameFourStars"),
                                 QT_TRID_NOOP("KPGroupNameFiveStars")};
constexpr const char *digits = QT_TRID_NOOP("KPGroupNameDigits");
constexpr const char *otherCharacters = QT_TRID_NOOP("KPGroupNameOtherCharacters");
constexpr const char *noTags = QT_TRID_NOOP("KPGroupNameNoTags");
constexpr const char *noDate = QT_TRID_NOOP("KPGroupNameNoDate");
constexpr const char *older = QT_TRID_NOOP("KPGroupNameOlder");

// As KPDoc::fileSizeGroup() calls them, the smallest first.
constexpr const char *sizes[] = {
    QT_TRID_NOOP("KPGroupNameFolder"),        QT_TRID_NOOP("KPGroupNamePackage"),
    QT_TRID_NOOP("KPGroupNameZeroLength"),    QT_TRID_NOOP("KPGroupNameLessThan10k"),
    QT_TRID_NOOP("KPGroupNameLessThan100k"),  QT_TRID_NOOP("KPGroupNameLessThan1MB"),
    QT_TRID_NOOP("KPGroupNameLessThan20MB"),  QT_TRID_NOOP("KPGroupNameLessThan50MB"),
    QT_TRID_NOOP("KPGroupNameLessThan100MB"), QT_TRID_NOOP("KPGroupNameLessThan1GB"),
    QT_TRID_NOOP("KPGroupNameMoreThan1GB")};

constexpr qint64 firstRank = 0;
constexpr qint64 ownRank = 1; // by name among themselves
constexpr qint64 lastRank = 2;

} // namespace

static bool isOfDates(Field field)
{
    return field == Field::Modified || field == Field::Created || field == Field::Added;
}

KPResultGrouper::KPResultGrouper(Field field, const QDateTime &now)
    : m_field(field), m_day(now.date())
{
    if (!isOfDates(field))
        return;
    const auto since = [this](const QDate &day, const char *key) {
        const qint64 start = day.startOfDay().toMSecsSinceEpoch() * 1'000'000;
        // On the first days of a year the week before reaches into the last one.
        if (m_ranges.empty() || start < m_ranges.back().start)
            m_ranges.push_back({start, key});
    };
    const int year = m_day.year();
    since(m_day.addDays(1), QT_TRID_NOOP("KPGroupNameLater"));
    since(m_day, QT_TRID_NOOP("KPGroupNameToday"));
    since(m_day.addDays(-1), QT_TRID_NOOP("KPGroupNameYesterday"));
    since(m_day.addDays(-6), QT_TRID_NOOP("KPGroupNamePast7Days"));
    since(m_day.addDays(-29), QT_TRID_NOOP("KPGroupNamePast30Days"));
    since(QDate(year, 1, 1), QT_TRID_NOOP("KPGroupNameThisYear"));
    since(QDate(year - 1, 1, 1), QT_TRID_NOOP("KPGroupNameLastYear"));
    since(QDate(year - 2, 1, 1), QT_TRID_NOOP("KPGroupNameYearBeforeLastYear"));
}

KPResultGrouper::Place KPResultGrouper::textPlace(const char *key, qint64 rank)
{
    const QString id = QString::fromLatin1(key);
    const KPResultGroup *&group = m_known[id];
    if (group == nullptr)
        group = registered(m_field, id, qtTrId(key));
    return {group, rank};
}

KPResultGrouper::Place KPResultGrouper::ownPlace(const QString &key, const QString &name)
{
    const KPResultGroup *&group = m_known[key];
    if (group == nullptr)
        group = registered(m_field, key, name);
    return {group, ownRank};
}

KPResultGrouper::Place KPResultGrouper::letterPlace(const KPDoc &doc)
{
    const QString name = doc.fsDisplayName();
    const QString first = decomposed(name.left(name.startsWith(u'.') ? 2 : 1)).remove(u'.');
    if (first.isEmpty())
        return textPlace(otherCharacters, lastRank);
    const QChar character = first.front();
    if (character.isDigit())
        return textPlace(digits, firstRank);
    if (!character.isLetter())
        return textPlace(otherCharacters, lastRank);
    const QString letter = QString(character).toUpper().left(1);
    return ownPlace(letter, letter);
}

KPResultGrouper::Place KPResultGrouper::datePlace(qint64 date)
{
    if (date == 0)
        return textPlace(noDate, 0);
    // Ascending is the oldest first.
    auto rank = static_cast<qint64>(m_ranges.size()) + 1;
    for (const Since &range : m_ranges) {
        if (date >= range.start)
            return textPlace(range.key, rank);
        --rank;
    }
    return textPlace(older, 1);
}

KPResultGrouper::Place KPResultGrouper::placeOf(const KPDoc &doc, qint64 date)
{
    switch (m_field) {
    case Field::Name:
        return letterPlace(doc);
    case Field::Modified:
    case Field::Created:
    case Field::Added:
        return datePlace(date);
    case Field::Rating: {
        const int count = doc.starsToShow();
        return textPlace(stars[count], count);
    }
    case Field::Size: {
        const QString key = doc.fileSizeGroup();
        for (size_t i = 0; i < std::size(sizes); ++i) {
            if (key == QLatin1String(sizes[i]))
                return textPlace(sizes[i], static_cast<qint64>(i));
        }
        return ownPlace(key, key);
    }
    case Field::Tags: {
        const KPTagName::Tags tags = doc.tagNamesOfTypeUserEntered();
        return tags.isEmpty() ? textPlace(noTags, lastRank)
                              : ownPlace(tags.first()->keyName(), tags.first()->displayName());
    }
    case Field::Type: {
        const KPResultGroup *&group = m_knownByAddress[doc.utiTagName()];
        if (group == nullptr)
            group =
                registered(m_field, doc.fileType(), KPFileType::displayNameForUTI(doc.fileType()));
        return {group, ownRank};
    }
    case Field::Folder: {
        const KPResultGroup *&group = m_knownByAddress[doc.pooledParentPath().data()];
        if (group == nullptr)
            group = registered(m_field, doc.parentPath(), doc.parentFolderForDisplay());
        return {group, ownRank};
    }
    }
    return {};
}
