// KPSearchState: the text of its metadata query.
#include "KPPredicateBuilder.h"
#include "KPSearchStateCaches.h"
#include "Karvex.h"
#include "UserDefaults.h"

static const QString andOperator = QStringLiteral(" && ");

QString KPSearchState::buildManagedSearch() const
{
    static const struct
    {
        const char *setting;
        std::vector<const char *> types;
    } groups[] = {
        {"KPAutoImportOffice",
         {"com.microsoft.word.doc", "org.openxmlformats.wordprocessingml.document",
          "org.oasis-open.opendocument.text", "com.microsoft.excel.xls",
          "org.openxmlformats.spreadsheetml.sheet", "org.oasis-open.opendocument.spreadsheet",
          "com.microsoft.powerpoint.ppt", "org.openxmlformats.presentationml.presentation",
          "org.oasis-open.opendocument.presentation"}},
        {"KPAutoImportiWork",
         {"com.apple.iwork.pages.pages", "com.apple.iwork.pages.pages-tef",
          "com.apple.iwork.pages.sffpages", "com.apple.iwork.numbers.numbers",
          "com.apple.iwork.numbers.numbers-tef", "com.apple.iwork.numbers.sffnumbers",
          "com.apple.keynote.key", "com.apple.iwork.keynote.key", "com.apple.iwork.keynote.key-tef",
          "com.apple.iwork.keynote.sffkey"}},
        {"KPAutoImportPDFs", {"com.adobe.pdf"}},
    };
    QString clause =
        QStringLiteral("(((kMDItemKXManaged == 1) || (%1 == *) || (kMDItemStarRating == *)")
            .arg(Karvex::tagsToSearchFor());
    for (const auto &group : groups) {
        if (!UserDefaults::standard().boolValue(QLatin1String(group.setting)))
            continue;
        for (const char *type : group.types)
            clause += QStringLiteral(" || (kMDItemContentType == %1)").arg(QLatin1String(type));
    }
    return clause + QStringLiteral(") && !(kMDItemKXManaged == 0))");
}

// A quotation mark in a tag does not end it. A wildcard is one: a tag may be asked for so.
static QString quoted(QString tag)
{
    tag.replace(u'\\', QStringLiteral("\\\\"));
    tag.replace(u'"', QStringLiteral("\\\""));
    return tag;
}

QString KPSearchState::tagSearch(const QString &tag) const
{
    return KPPredicateBuilder::tagSearch(quoted(tag), searchUserTags(), searchReadOnlyKeywords());
}

QString KPSearchState::excludeTagSearch(const QString &tag) const
{
    QStringList clauses;
    if (searchUserTags())
        clauses.append(u'(' + Karvex::tagsToSearchFor() + QStringLiteral(" != \"") + quoted(tag) +
                       QStringLiteral("\"cd)"));
    if (searchReadOnlyKeywords())
        clauses.append(QStringLiteral("(kMDItemKeywords != \"") + quoted(tag) +
                       QStringLiteral("\"cd)"));
    return u'(' + clauses.join(andOperator) + u')';
}

QString KPSearchState::colourSearch(const QString &colour)
{
    if (colour == u"alpha")
        return QStringLiteral("(kBrindlePalette == \"a*\")");
    return QStringLiteral("(kBrindlePalette == \"*.") + colour + QStringLiteral(".*\")");
}

const std::optional<QString> &KPSearchState::mdQueryString() const
{
    return m_caches->mdQueryString.get([this]() -> std::optional<QString> {
        const QString text = needToDoMDQuery() ? queryText() : QString();
        return text.isEmpty() ? std::nullopt : std::optional(text);
    });
}

QString KPSearchState::queryText() const
{
    QStringList clauses;
    QString text = searchString();
    if (const QString raw = QStringLiteral("mdq:"); text.startsWith(raw)) {
        if (text.size() > raw.size())
            clauses.append(u'(' + text.mid(raw.size()) + u')');
        text.clear();
    }
    const KPSearchDates::Range days = getStart();
    clauses += KPPredicateBuilder::mdQueryFromSearch(fileUTIs(), text, searchContents(), true,
                                                     searchMetaData(), searchFileNames(),
                                                     days.start, days.end);
    const QStringList wanted = searchTags();
    const QString tags = Karvex::tagsToSearchFor();
    if (isShowingTaggedDocuments() && wanted.isEmpty())
        clauses.append(searchReadOnlyKeywords()
                           ? QStringLiteral("((%1 == *) || (kMDItemKeywords == *))").arg(tags)
                           : QStringLiteral("(%1 == *)").arg(tags));
    if (isShowingUntaggedDocuments() && wanted.isEmpty())
        clauses.append(QStringLiteral("(%1 != *)").arg(tags));
    if (isShowingManagedDocuments())
        clauses.append(buildManagedSearch());
    if (searchUserTags() || searchReadOnlyKeywords()) {
        for (const QString &tag : wanted)
            clauses.append(tagSearch(tag));
        for (const QString &tag : excludeTags())
            clauses.append(excludeTagSearch(tag));
    }
    for (const KPTagName *type : treedFileTypeNamesExclude())
        clauses.append(QStringLiteral("(kMDItemContentTypeTree != ") + type->uti() + u')');
    for (const KPTagName *type : equalToFileTypeNamesExclude())
        clauses.append(QStringLiteral("(kMDItemContentType != ") + type->uti() + u')');
    for (const QString &rating : ratingConditions())
        clauses.append(QStringLiteral("(kMDItemStarRating ") + rating + u')');
    if (!searchShouldShowDocsEveryWhere())
        clauses.append(QStringLiteral("(kMDItemSupportFileType != MDSystemFile)"));
    return KPPredicateBuilder::mdCombineSearches(clauses, andOperator);
}
