// KPSearchState: what it says to people, and its file types.
#include "KPFileType.h"
#include "KPSearchState.h"
#include "KPSearchStateKeys.h"
#include "KPStarCondition.h"

#include <QCoreApplication>
#include <QDate>

// --- File types

QStringList KPSearchState::fileUTIs() const
{
    return KPTagName::arrayForSavingUTITags(explicitFileUTITags());
}

KPSearchState::Tags KPSearchState::explicitFileUTITags() const
{
    return tags(KPSearchStateKey::fileUTIs);
}

KPSearchState::Tags KPSearchState::explicitFileUTITagsToExclude() const
{
    return tags(KPSearchStateKey::fileUTIsToExclude);
}

bool KPSearchState::hasUTTag(const KPTagName *tag) const
{
    return explicitFileUTITags().contains(tag);
}

bool KPSearchState::isAllFileTypes() const
{
    return fileUTIs() == QStringList{KPFileType::itemUTI};
}

bool KPSearchState::utiIsInconsistent() const
{
    return fileUTIs() == QStringList{inconsistentUTI};
}

static QString namesOf(const KPTagName::Tags &types)
{
    constexpr qsizetype named = 3;
    QStringList names;
    for (const KPTagName *type : types)
        names.append(KPFileType::displayNameForUTI(type->uti()));
    names.removeDuplicates();
    const qsizetype others = names.size() - named;
    if (others <= 0)
        return names.join(qtTrId(" or "));
    return names.first(named).join(QStringLiteral(", ")) + u' ' +
           qtTrId("or %d other kinds", static_cast<int>(others));
}

QString KPSearchState::fileTypesHumanReadableString() const
{
    QString wanted = namesOf(explicitFileUTITags());
    const QString excluded = namesOf(explicitFileUTITagsToExclude());
    if (wanted.isEmpty() && excluded.isEmpty())
        return qtTrId("KPStatusPromptNoFileTypeSet");
    if (excluded.isEmpty())
        return wanted;
    return wanted.isEmpty() ? qtTrId("not ") + excluded : wanted + qtTrId(" but not ") + excluded;
}

// --- Dates

KPSearchDates::Range KPSearchState::dateStringToDayRange(const QString &dateString)
{
    return KPSearchDates::rangeOf(dateString);
}

QString KPSearchState::yearString(int yearsAgo)
{
    return QString::number(QDate::currentDate().year() - yearsAgo);
}

// A range that nobody named.
static QString namedByDays(const KPSearchDates::Range &range)
{
    if (!range.start)
        return qtTrId("KPCrumbTrailAnyDate");
    constexpr double forEver = 36000; // as far back as "older" reaches
    const auto number = [](double days) {
        return QLocale().toString(days, 'g', QLocale::FloatingPointShortest);
    };
    if (!range.end)
        return qtTrId("KPCrumbTrailDays").arg(number(*range.start));
    return *range.start >= forEver
               ? qtTrId("KPCrumbTrailDaysBefore").arg(number(*range.end))
               : qtTrId("KPCrumbTrailDaysBetween").arg(number(*range.end), number(*range.start));
}

QString KPSearchState::prettyDateStringFromDateString(const QString &dateString)
{
    using namespace KPSearchDates;
    if (dateString == today)
        return qtTrId("KPCrumbTrailToday");
    if (dateString == yesterday)
        return qtTrId("KPCrumbTrailYesterday");
    if (dateString == last7Days)
        return qtTrId("KPCrumbTrailLast7Days");
    if (dateString == last30Days)
        return qtTrId("KPCrumbTrailLast30Days");
    if (dateString == last365Days)
        return qtTrId("KPCrumbTrailLast365Days");
    // Years by their number: nobody has to count.
    if (dateString == thisYear)
        return yearString(0);
    if (dateString == lastYear)
        return yearString(1);
    if (dateString == yearBeforeLastYear)
        return yearString(2);
    if (dateString == olderThanYearBeforeLastYear)
        return qtTrId("KPCrumbTrailBeforeYear").arg(yearString(2));
    return namedByDays(KPSearchDates::rangeOf(dateString));
}

// --- Ratings

QString KPSearchState::prettyRatingsStringFromRatingString(const QString &ratingString)
{
    const auto bounds = KPStarCondition::bounds(ratingString);
    if (!bounds)
        return qtTrId("KPAnyRating");
    if (bounds->upper == 0)
        return qtTrId("KPRatingUnrated");
    constexpr double most = 5;
    const bool isAtLeast = bounds->upper == KPStarCondition::noUpperBound;
    const double stars = isAtLeast ? bounds->lower : bounds->upper;
    const QString number = QLocale().toString(stars, 'g', QLocale::FloatingPointShortest);
    const int grammatical = stars == 1 ? 1 : 2; // half a star counts as several
    if (isAtLeast && stars >= most)
        return qtTrId("KPRatingExactly").arg(number);
    return (isAtLeast ? qtTrId("KPRatingAtLeast", grammatical)
                      : qtTrId("KPRatingAtMost", grammatical))
        .arg(number);
}
