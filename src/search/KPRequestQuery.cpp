#include "KPRequestQuery.h"

#include "KPFileType.h"
#include "Karvex.h"

using Comparison = KPSearchRequest::Comparison;

// `tail`: a wildcard after the text, as part of the value.
static QString quoted(const QString &text, const char *tail = "")
{
    QString value;
    for (const QChar unit : text) {
        if (unit == u'"' || unit == u'\\' || unit == u'*' || unit == u'?')
            value += u'\\';
        value += unit;
    }
    return u'"' + value + QLatin1String(tail) + u'"';
}

static QString wordClause(const QString &word)
{
    const QString beginning = quoted(word, "*") + QStringLiteral("cdw");
    return QStringLiteral("(kMDItemDisplayName == %1 || %2 == %1)")
        .arg(beginning, Karvex::tagsToSearchFor());
}

static QString readableTags()
{
    return QStringLiteral("(%1 != * || %1 == \"*\")").arg(Karvex::tagsToSearchFor());
}

static bool isFulfilledByUnrated(const KPSearchRequest::Rating &rating)
{
    switch (rating.comparison) {
    case Comparison::Less:
        return 0 < rating.stars;
    case Comparison::LessOrEqual:
        return 0 <= rating.stars;
    case Comparison::Equal:
        return 0 == rating.stars;
    case Comparison::NotEqual:
        return 0 != rating.stars;
    case Comparison::GreaterOrEqual:
        return 0 >= rating.stars;
    case Comparison::Greater:
        return 0 > rating.stars;
    }
    return false;
}

static QString ratingClause(const KPSearchRequest::Rating &rating)
{
    static const auto signOf = [](Comparison comparison) {
        switch (comparison) {
        case Comparison::Less:
            return "<";
        case Comparison::LessOrEqual:
            return "<=";
        case Comparison::GreaterOrEqual:
            return ">=";
        case Comparison::Greater:
            return ">";
        case Comparison::Equal:
        case Comparison::NotEqual:
            break;
        }
        return "==";
    };
    const QString &name = Karvex::starRatingKey;
    const QString stars = QString::number(rating.stars, 'g', 17);
    // The language's != is true for what is no number as well.
    QString clause = rating.comparison == Comparison::NotEqual
                         ? QStringLiteral("(%1 < %2 || %1 > %2)").arg(name, stars)
                         : QStringLiteral("(%1 %2 %3)")
                               .arg(name, QLatin1String(signOf(rating.comparison)), stars);
    if (isFulfilledByUnrated(rating))
        clause = QStringLiteral("(%1 || %2 != *)").arg(clause, name);
    return clause;
}

static QStringList wordsOf(const KPSearchRequest &request)
{
    return request.words.simplified().split(u' ', Qt::SkipEmptyParts);
}

QString KPRequestQuery::text(const KPSearchRequest &request)
{
    const QString tags = Karvex::tagsToSearchFor();
    QStringList clauses = {
        QStringLiteral("(kMDItemContentType != %1)").arg(quoted(KPFileType::folderUTI))};
    for (const QString &word : wordsOf(request))
        clauses.append(wordClause(word));
    for (const QString &tag : request.tags)
        clauses.append(QStringLiteral("(%1 == %2cd)").arg(tags, quoted(tag)));
    for (const QString &tag : request.notTags)
        clauses.append(QStringLiteral("(%1 != %2cd)").arg(tags, quoted(tag)));
    if (!request.notTags.isEmpty())
        clauses.append(readableTags());
    if (request.rating)
        clauses.append(ratingClause(*request.rating));
    return clauses.join(QStringLiteral(" && "));
}

QString KPRequestQuery::unreadableText(const KPSearchRequest &request)
{
    QStringList clauses;
    if (!wordsOf(request).isEmpty() || !request.tags.isEmpty() || !request.notTags.isEmpty())
        clauses.append(u'!' + readableTags());
    if (request.rating) {
        const QString &name = Karvex::starRatingKey;
        clauses.append(QStringLiteral("(%1 == * && !(%1 < 0 || %1 >= 0))").arg(name));
    }
    return clauses.join(QStringLiteral(" || "));
}
