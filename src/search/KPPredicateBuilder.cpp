#include "KPPredicateBuilder.h"

#include "KPDocMetaData.h"
#include "KPDynamicType.h"
#include "KPFileType.h"
#include "KPSearchState.h"
#include "Karvex.h"
#include "UserDefaults.h"
#include "XPPath.h"

#include <QLocale>

static const QString andOperator = QStringLiteral(" && ");
static const QString orOperator = QStringLiteral(" || ");

QString KPPredicateBuilder::mdCombineSearches(const QStringList &clauses,
                                              const QString &withOperator)
{
    return clauses.size() > 1 ? u'(' + clauses.join(withOperator) + u')' : clauses.value(0);
}

// --- Words

QStringList componentsSeparatedByBlanksAndQuotes(const QString &text)
{
    QString spaced = text;
    spaced.replace(u'"', QStringLiteral(" \" "));
    QStringList words;
    QString phrase;
    bool isInPhrase = false;
    for (const QString &piece : spaced.split(u' ', Qt::SkipEmptyParts)) {
        const bool isQuote = piece == u"\"";
        if (isQuote && isInPhrase)
            words.append(phrase.trimmed());
        else if (isInPhrase)
            phrase += piece + u' ';
        else if (!isQuote)
            words.append(piece.trimmed());
        if (isQuote) {
            isInPhrase = !isInPhrase;
            phrase.clear();
        }
    }
    if (isInPhrase) // never closed
        words.append(phrase.trimmed());

    QStringList joined;
    bool isOpen = false; // the last word waits for what comes after its colon
    for (qsizetype i = 0; i < words.size(); ++i) {
        if (isOpen)
            joined.last() += words[i];
        else
            joined.append(words[i]);
        isOpen = !isOpen && words[i].endsWith(u':');
    }
    return joined;
}

bool KPPredicateBuilder::searchStringShortSoUseBeginsWith(const QString &text)
{
    constexpr qsizetype bytes = 3;
    const QString composed = text.normalized(QString::NormalizationForm_C);
    return composed.size() < 2 && composed.toUtf8().size() < bytes;
}

// What follows the prefix, without all further prefixes of the kind; nothing for another word.
static std::optional<QString> valueAfter(const QString &prefix, const QString &word)
{
    if (!word.startsWith(prefix) || word.size() == prefix.size())
        return {};
    QString value = word;
    value.remove(prefix);
    if (value.startsWith(u'"'))
        value.remove(u'"');
    return value;
}

QString KPPredicateBuilder::searchForWord(const QString &word, bool searchContent,
                                          bool searchOtherKeys, bool /*searchFileNames*/,
                                          bool isMultiwordSearch)
{
    if (!isMultiwordSearch && searchStringShortSoUseBeginsWith(word))
        return QStringLiteral("(kMDItemDisplayName == \"") + word + QStringLiteral("*\"cd)");
    if (const auto tag = valueAfter(QStringLiteral("tag:"), word))
        return tagSearch(*tag, true,
                         UserDefaults::standard().boolValue(QStringLiteral("KPCloudKeywords")));
    if (const auto rating = valueAfter(QStringLiteral("rating:"), word))
        return QStringLiteral("(kMDItemStarRating ") + *rating + u')';

    QString text = word;
    bool content = searchContent;
    bool otherKeys = searchOtherKeys;
    if (const QString prefix = QStringLiteral("name:");
        text.startsWith(prefix) && text.size() > prefix.size()) {
        text.remove(0, prefix.size());
        content = false;
        otherKeys = false;
    }
    constexpr qsizetype shortestNegated = 3;
    const bool isNegated =
        text.size() >= shortestNegated && (text.startsWith(u'-') || text.startsWith(u'!'));
    if (isNegated)
        text.remove(0, 1);
    QString clause = isNegated ? QStringLiteral("(!") : QStringLiteral("(");
    clause += QStringLiteral("(kMDItemDisplayName == \"*") + text + QStringLiteral("*\"cd");
    if (otherKeys)
        clause += QStringLiteral(" || * == \"") + text + QStringLiteral("*\"cdw");
    if (content)
        clause += QStringLiteral(" || kMDItemTextContent == \"") + text + QStringLiteral("*\"cdw");
    return clause + QStringLiteral("))");
}

QString KPPredicateBuilder::stripExtensionIfLooksGood(const QString &text,
                                                      QStringList *outExtensionUTIs)
{
    outExtensionUTIs->clear();
    if (text.startsWith(u'-') || text.contains(u" -@"))
        return text;
    const bool isExplicit = text.startsWith(u'.') && !text.contains(u' ');
    QString extension = isExplicit ? text.mid(1) : XPPath::extension(text);
    if (extension.isEmpty())
        return text;
    QString name = isExplicit ? QString() : text.chopped(extension.size() + 1);
    if (extension.endsWith(u'"')) {
        if (!name.isEmpty())
            name += u'"';
        while (extension.endsWith(u'"'))
            extension.chop(1);
        while (extension.startsWith(u'"'))
            extension.remove(0, 1);
    }
    static const QStringList domains = {QStringLiteral("com"), QStringLiteral("net"),
                                        QStringLiteral("org")};
    if (extension.isEmpty() || name.contains(u'@') || name.contains(u"//") ||
        name.contains(u"www.") || domains.contains(extension))
        return text;
    const QStringList types = KPFileType::allUTIsForExtension(extension, false);
    if (types.isEmpty() || (!isExplicit && KPDynamicType::isDynamic(types.last())))
        return text;
    *outExtensionUTIs = types;
    return name;
}

// --- File types

QString KPPredicateBuilder::mdQueryForExtension(const QString &extension)
{
    return extension.isEmpty()
               ? QString()
               : QStringLiteral("(kMDItemFSName == \"*.") + extension + QStringLiteral("\"c)");
}

QString KPPredicateBuilder::mdQueryForItemKind(const QString &kind)
{
    return kind.isEmpty() ? QString()
                          : QStringLiteral("(kMDItemKind == \"") + kind + QStringLiteral("\")");
}

// The end of a dynamic identifier says enough, whatever its beginning is spelled like.
QString KPPredicateBuilder::mdQueryForDynamicUTI(const QString &type)
{
    constexpr qsizetype telling = 8;
    return QStringLiteral("(kMDItemContentType == \"*") +
           (type.size() > telling ? type.right(telling) : type) + QStringLiteral("\")");
}

QString KPPredicateBuilder::imageSearch()
{
    return QStringLiteral("(kMDItemContentTypeTree == \"public.image\")");
}

QString KPPredicateBuilder::mdSearchForUTI(const QString &type)
{
    const auto after = [&](const QString &prefix) { return type.mid(prefix.size()); };
    if (type.startsWith(KPSearchState::extensionPrefix))
        return mdQueryForExtension(after(KPSearchState::extensionPrefix));
    if (type.startsWith(KPSearchState::kindPrefix))
        return mdQueryForItemKind(after(KPSearchState::kindPrefix));
    if (KPDynamicType::isDynamic(type))
        return mdQueryForDynamicUTI(type);
    if (type == u"public.image")
        return imageSearch();
    if (type.startsWith(KPSearchState::treePrefix))
        return QStringLiteral("(kMDItemContentTypeTree == \"") + after(KPSearchState::treePrefix) +
               QStringLiteral("\")");
    return QStringLiteral("(kMDItemContentType == \"") + type + QStringLiteral("\")");
}

// --- Tags

QString KPPredicateBuilder::tagSearch(const QString &tag, bool searchUser, bool searchReadOnly)
{
    QStringList clauses;
    if (searchUser)
        clauses.append(u'(' + Karvex::tagsToSearchFor() + QStringLiteral(" == \"") + tag +
                       QStringLiteral("\"cd)"));
    if (searchReadOnly)
        clauses.append(QStringLiteral("(kMDItemKeywords == \"") + tag + QStringLiteral("\"cd)"));
    if (searchReadOnly && KPDocMetaData::showsXmpKeywords())
        clauses.append(QStringLiteral("(kMDItemKXXMPKeywords == \"") + tag +
                       QStringLiteral("\"cd)"));
    return u'(' + clauses.join(orOperator) + u')';
}

// --- All together

static QString dateClause(double startDays, std::optional<double> endDays)
{
    const auto number = [](double days) {
        return QString::number(days, 'f', QLocale::FloatingPointShortest);
    };
    QString clause =
        QStringLiteral("(kMDItemContentModificationDate > $time.today(-") + number(startDays);
    if (endDays)
        clause += QStringLiteral(") && kMDItemContentModificationDate < $time.today(-") +
                  number(*endDays);
    return clause + QStringLiteral("))");
}

QStringList KPPredicateBuilder::mdQueryFromSearch(const QStringList &types,
                                                  const QString &searchString, bool searchContent,
                                                  bool requireAllWords, bool searchOtherKeys,
                                                  bool searchFileNames,
                                                  std::optional<double> startDaysBeforeNow,
                                                  std::optional<double> endDaysBeforeNow)
{
    QStringList wantedTypes = types;
    QString text = searchString;
    if (types.isEmpty() && !text.isEmpty())
        text = stripExtensionIfLooksGood(text, &wantedTypes);

    QStringList clauses;
    if (!text.isEmpty()) {
        const QStringList words = componentsSeparatedByBlanksAndQuotes(text);
        QStringList wordClauses;
        for (const QString &word : words)
            wordClauses.append(searchForWord(word, searchContent, searchOtherKeys, searchFileNames,
                                             words.size() > 1));
        const QString clause =
            mdCombineSearches(wordClauses, requireAllWords ? andOperator : orOperator);
        if (!clause.isEmpty()) // blanks alone
            clauses.append(clause);
    }
    if (startDaysBeforeNow)
        clauses.append(dateClause(*startDaysBeforeNow, endDaysBeforeNow));
    QStringList typeClauses;
    for (const QString &type : wantedTypes) {
        const QString clause = mdSearchForUTI(type);
        if (!typeClauses.contains(clause))
            typeClauses.append(clause);
    }
    if (!typeClauses.isEmpty())
        clauses.append(mdCombineSearches(typeClauses, orOperator));
    return clauses;
}
