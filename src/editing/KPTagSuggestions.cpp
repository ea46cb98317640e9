#include "KPTagSuggestions.h"

#include "KPDocMetaData.h"
#include "KPTagDocuments.h"
#include "Karvex.h"
#include "KarvexTagKey.h"
#include "UserDefaults.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>

static constexpr qsizetype mostSuggestions = 30;
static constexpr qsizetype longestKeyword = 60; // longer ones are sentences

// What programs write into keywords and names of their own accord.
static constexpr const char16_t *banned[] = {
    u"untitled",      u"unbenannt", u"document", u"dokument",       u"scan",  u"scanned",
    u"image",         u"img",       u"dsc",      u"microsoft word", u"adobe", u"pdf",
    u"page",          u"seite",     u"unknown",  u"unbekannt",      u"user",  u"admin",
    u"administrator", u"author",    u"default",  u"none",           u"null",  u"keywords",
    u"subject",       u"title",     u"new",      u"copy",           u"kopie", u"final",
    u"draft1",        u"test"};

static bool isOn(const char *setting)
{
    return UserDefaults::standard().boolValue(QLatin1String(setting));
}

bool KPTagSuggestions::isBanned(const QString &word)
{
    const QString folded = foldText(word).trimmed();
    if (folded.size() < 2 || folded.contains(u"://"))
        return true;
    const bool hasLetter =
        std::any_of(folded.begin(), folded.end(), [](QChar c) { return c.isLetter(); });
    const bool isYear = folded.size() == 4 && !hasLetter;
    if (!hasLetter && !isYear)
        return true;
    return std::any_of(std::begin(banned), std::end(banned),
                       [&](const char16_t *each) { return folded == QStringView(each); });
}

// Words and runs of digits; what stands between is a blank.
static QString wordsOf(const QString &text)
{
    QString words = u' ' + foldText(text) + u' ';
    for (QChar &c : words) {
        if (!c.isLetterOrNumber())
            c = u' ';
    }
    return words.simplified().prepend(u' ').append(u' ');
}

static QStringList occurring(const QStringList &candidates, const QString &words)
{
    QStringList found;
    for (const QString &candidate : candidates) {
        const QString its = wordsOf(candidate);
        if (its.size() > 3 && words.contains(its))
            found.append(candidate);
    }
    return found;
}

static QStringList listSetting(const QString &key)
{
    const PropertyValue value = UserDefaults::standard().value(key);
    if (value.isArrayOfStrings())
        return value.strings();
    static const QRegularExpression separators(QStringLiteral("[,\\n\\r\\t]"));
    QStringList words;
    for (const QString &word : value.string().split(separators, Qt::SkipEmptyParts)) {
        if (const QString clean = word.trimmed(); !clean.isEmpty())
            words.append(clean);
    }
    return words;
}

QStringList KPTagSuggestions::customWords()
{
    return listSetting(QStringLiteral("KPCustomWords"));
}

QStringList KPTagSuggestions::typicalWords()
{
    return qtTrId("KPTypicalTags").split(u',', Qt::SkipEmptyParts);
}

static bool looksAcademic(const KPTagSuggestions::Facts &facts)
{
    // arXiv identifiers, digital object identifiers (ISO 26324).
    static const QRegularExpression identifier(
        QStringLiteral("\\b\\d{4}\\.\\d{4,5}(v\\d+)?\\b|\\b10\\.\\d{4,9}[/_]\\S"));
    return facts.isPDF &&
           (identifier.match(facts.name).hasMatch() || identifier.match(facts.title).hasMatch());
}

QStringList KPTagSuggestions::suggest(const Facts &facts, const QStringList &popular)
{
    const QString words = wordsOf(facts.name + u' ' + facts.title);
    QStringList all;
    if (isOn("KPScanPDFKeyWords")) {
        for (const QString &keyword : facts.keywords) {
            if (keyword.size() <= longestKeyword)
                all.append(keyword);
        }
    }
    if (isOn("KPScanPeople"))
        all += facts.people;
    if (isOn("KPScanAcademicPapers") && looksAcademic(facts))
        all.append(qtTrId("KPAcademicPaperTag"));
    if (isOn("KPScanCustom"))
        all += occurring(customWords(), words);
    if (isOn("KPScanTypical"))
        all += occurring(typicalWords(), words);
    all += occurring(popular, words);
    if (isOn("KPScanPopular"))
        all += popular;
    QSet<QString> seen;
    for (const QString &tag : facts.present)
        seen.insert(karvexTagKey(tag));
    QStringList suggestions;
    for (const QString &each : all) {
        const QString tag = KPTagName::CleanAndTrimTag(each.simplified());
        if (suggestions.size() == mostSuggestions)
            break;
        if (tag.isEmpty() || (isOn("KPRemoveBannedTags") && isBanned(tag)) ||
            seen.contains(karvexTagKey(tag)))
            continue;
        seen.insert(karvexTagKey(tag));
        suggestions.append(tag);
    }
    return KPTagName::fixCaseForUserEnteredTags(suggestions);
}

static QStringList texts(const QString &path, const char *key)
{
    const PropertyValue value = KPDocMetaData::indexed(path, QLatin1String(key));
    return value.isString() ? QStringList{value.string()} : value.strings();
}

KPTagSuggestions::Facts KPTagSuggestions::factsOf(const QString &path)
{
    Facts facts;
    const QString extension = XPPath::extension(path);
    facts.name = XPPath::fileName(path);
    if (!extension.isEmpty())
        facts.name.chop(extension.size() + 1);
    facts.title = texts(path, "kMDItemTitle").join(u' ');
    for (const char *key : {"kMDItemAuthors", "kMDItemContributors", "kMDItemRecipients"})
        facts.people += texts(path, key);
    for (const QString &keyword : texts(path, "kMDItemKeywords"))
        facts.keywords += KPTagName::cleanUpTagStringArray({keyword});
    facts.isPDF = extension.compare(u"pdf", Qt::CaseInsensitive) == 0;
    facts.present = Karvex::getUserTags(path).valueOr({});
    return facts;
}

QStringList KPTagSuggestions::forFile(const QString &path, const QStringList &popular)
{
    return suggest(factsOf(path), popular);
}

QStringList KPTagSuggestions::popularTags()
{
    auto used = KPTagDocuments::allUserTags();
    used.removeIf([](const auto &tag) { return tag.count == 0; });
    std::sort(used.begin(), used.end(), [](const auto &a, const auto &b) {
        return a.count != b.count ? a.count > b.count : a.tag < b.tag;
    });
    QStringList tags;
    for (const auto &each : used)
        tags.append(each.tag);
    return tags;
}
