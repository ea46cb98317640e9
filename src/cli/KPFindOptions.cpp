#include "KPFindOptions.h"

#include "KPFileTypeRegistry.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPatience.h"

#include <QLocale>

static constexpr std::chrono::seconds patience{5}; // with the volume of a folder

// --- Values of single options

static const QString datePrefix = QStringLiteral("KPCrumbTrail");

// The keys without what they all begin with, as people type them.
static QStringList shortDates()
{
    QStringList names;
    for (const QString &key : KPSearchDates::allKeys()) {
        QString name = key.mid(datePrefix.size());
        name.front() = name.front().toLower();
        names.append(name);
    }
    return names;
}

static XPResult<QString> dateKey(const QString &text)
{
    for (const QString &key : KPSearchDates::allKeys()) {
        if (text == key || text.compare(key.mid(datePrefix.size()), Qt::CaseInsensitive) == 0)
            return key;
    }
    return kpUsageError(QStringLiteral("no date \"%1\"; there are: %2")
                            .arg(XPPath::printable(text), shortDates().join(QStringLiteral(", "))));
}

static XPResult<QString> ratingCondition(const QString &text)
{
    XPError error = kpUsageError(QStringLiteral("no condition on ratings: \"%1\"; there are "
                                                "\">= N\" and \"<= N\", N being up to 5 "
                                                "stars, and \"unrated\"")
                                     .arg(XPPath::printable(text)));
    const QString trimmed = text.trimmed();
    if (trimmed == u"unrated" || KPStarCondition::bounds(trimmed) == KPStarCondition::Bounds{0, 0})
        return QStringLiteral("!= *");
    const QString comparison = trimmed.left(2);
    if (comparison != u">=" && comparison != u"<=")
        return error;
    const auto stars = KPCommandLine::stars(trimmed.mid(2).trimmed());
    if (!stars || *stars == 0)
        return error;
    return comparison + u' ' + QString::number(*stars, 'g', QLocale::FloatingPointShortest);
}

// As it is called here, or as a built-in one is called everywhere.
static XPResult<QStringList> typesOfGroup(const QString &name)
{
    KPFileTypeRegistry &registry = KPFileTypeRegistry::instance();
    registry.readFileTypesPlist();
    QStringList names;
    for (const auto &group : registry.fileTypeGroupsArray()) {
        names.append(XPPath::printable(group->displayName()));
        const bool isMeant = group->displayName().compare(name, Qt::CaseInsensitive) == 0 ||
                             group->builtInName().compare(name, Qt::CaseInsensitive) == 0;
        if (isMeant && !name.isEmpty() && !group->utiArray().isEmpty())
            return group->utiArray();
    }
    return kpUsageError(QStringLiteral("no group of types \"%1\"; there are: %2")
                            .arg(XPPath::printable(name), names.join(QStringLiteral(", "))));
}

// --- All options

std::vector<KPCommandOption> KPFindOptions::commandOptions()
{
    return {
        {"--contents", nullptr, "find the words in contents too"},
        {"--metadata", nullptr, "find the words in tags, titles and other attributes too"},
        {"--names-only", nullptr, "find the words in names only, whatever a state says"},
        {"--tag", "TAG", "with this tag (and those of further --tag)"},
        {"--not-tag", "TAG", "without this tag (and those of further --not-tag)"},
        {"--tagged", nullptr, "with any tag"},
        {"--untagged", nullptr, "without tags"},
        {"--managed", nullptr, "in the library: managed, tagged or rated"},
        {"--type", "UTI",
         "of this content type (or those of further --type);\n"
         "                    tree_UTI: of all types that conform to it"},
        {"--group-of-types", "NAME",
         "of a type of this group (or of those of --type): see 'murnctl types --groups'"},
        {"--not-type", "UTI", "of another type than this (and those of further --not-type)"},
        {"--date", "KEY",
         "changed then: today, yesterday, last7Days, last30Days, last365Days,\n"
         "                    thisYear, lastYear, ..."},
        {"--rating", "COND", "by stars: \">= N\", \"<= N\" (N up to 5), unrated"},
        {"--in", "DIR", "in this folder (or those of further --in); else wherever is indexed"},
        {"--not-in", "DIR", "not in this folder (or those of further --not-in)"},
        {"--list-folder", "DIR", "what lies in this folder itself"},
        {"--deep", nullptr, "with --list-folder: in the folders in it too"},
        {"--state", "FILE",
         "begin with this search state (and those of further --state: what\n"
         "                    fulfils all); options take the place of its parts"},
        {"--explain", nullptr, "print the query text, then the folders, instead of documents"},
        {"--print-state", nullptr, "print the search state as JSON instead of documents"},
    };
}

static std::optional<XPError> contradiction(const KPCommandLine &line)
{
    const std::vector<const char *> alternatives[] = {
        {"--names-only", "--contents"}, {"--names-only", "--metadata"},
        {"--tagged", "--untagged"},     {"--tag", "--untagged"},
        {"--in", "--list-folder"},      {"--explain", "--print-state", "--live"},
        {"--explain", "--limit"},       {"--explain", "--count"},
        {"--print-state", "--limit"},   {"--print-state", "--count"}};
    for (const auto &options : alternatives) {
        if (auto error = line.onlyOneOf(options))
            return error;
    }
    if (line.has("--deep") && !line.has("--list-folder") && !line.has("--state"))
        return kpUsageError(QStringLiteral("--deep goes with --list-folder"));
    return {};
}

XPResult<KPFindOptions> KPFindOptions::parse(const KPCommandLine &line)
{
    if (const auto error = contradiction(line))
        return *error;
    KPFindOptions options(line);
    const auto tags = line.tags("--tag");
    if (!tags)
        return tags.error();
    const auto excludedTags = line.tags("--not-tag");
    if (!excludedTags)
        return excludedTags.error();
    options.m_tags = *tags;
    options.m_excludedTags = *excludedTags;
    const std::tuple<const char *, XPResult<QString> (*)(const QString &), QString *> values[] = {
        {"--date", dateKey, &options.m_date}, {"--rating", ratingCondition, &options.m_rating}};
    for (const auto &[name, parseValue, value] : values) {
        if (!line.has(name))
            continue;
        const auto parsed = parseValue(line.values(name).last());
        if (!parsed)
            return parsed.error();
        *value = *parsed;
    }
    if (const auto error = options.parseTypes())
        return *error;
    if (const auto error = options.parseFolders())
        return *error;
    return options;
}

std::optional<XPError> KPFindOptions::parseTypes()
{
    for (const char *option : {"--type", "--not-type"}) {
        const QStringList identifiers = m_line.values(option);
        if (identifiers.contains(QString()) || identifiers.contains(KPSearchState::treePrefix))
            return kpUsageError(
                QStringLiteral("%1 needs the identifier of a type").arg(QLatin1String(option)));
    }
    QStringList wanted = m_line.values("--type");
    for (const QString &name : m_line.values("--group-of-types")) {
        const auto types = typesOfGroup(name);
        if (!types)
            return types.error();
        wanted += *types;
    }
    m_types = KPTagName::arrayOfUTIsToKPTagNames(wanted);
    m_excludedTypes = KPTagName::arrayOfUTIsToKPTagNames(m_line.values("--not-type"));
    return {};
}

static XPResult<QString> realFolder(const QString &given)
{
    const auto real = xpWithPatience(patience, [given] { return XPFolders::realFolder(given); });
    return real ? *real : XPError::fromErrno(ETIMEDOUT, XPPath::absolute(given));
}

std::optional<XPError> KPFindOptions::parseFolders()
{
    for (const char *option : {"--in", "--list-folder", "--not-in"}) {
        const bool isToLookIn = option != QByteArrayView("--not-in");
        for (const QString &given : m_line.values(option)) {
            if (given.isEmpty())
                return kpUsageError(QStringLiteral("%1 needs a folder").arg(QLatin1String(option)));
            const auto real = realFolder(given);
            if (!real)
                m_missing.append(real.error());
            if (!real && isToLookIn)
                ++m_missingToLookIn;
            (isToLookIn ? m_folders : m_excludedFolders)
                .append(real ? *real : XPPath::absolute(given));
        }
    }
    if (m_line.has("--list-folder") && m_folders.size() > 1)
        return kpUsageError(QStringLiteral("--list-folder takes one folder"));
    return {};
}

bool KPFindOptions::isWithoutFolder() const
{
    return !m_folders.isEmpty() && m_missingToLookIn == m_folders.size();
}

// --- The state

KPSearchState::Ptr KPFindOptions::applyTo(KPSearchState::Ptr state) const
{
    if (m_line.has("--tag"))
        state = state->searchStateWithNewTags(m_tags);
    if (m_line.has("--not-tag"))
        state = state->searchStateWithNewExcludeTags(m_excludedTags);
    if (m_line.has("--type") || m_line.has("--group-of-types"))
        state = state->searchStateWithNewUTIs(m_types);
    if (m_line.has("--not-type"))
        state = state->searchStateWithNewExcludeUTIs(m_excludedTypes);
    if (m_line.has("--date"))
        state = state->searchStateWithNewDateString(m_date);
    if (m_line.has("--rating"))
        state = state->searchStateWithNewRating(m_rating);
    return withModes(withFolders(withText(state)));
}

KPSearchState::Ptr KPFindOptions::withText(const KPSearchState::Ptr &state) const
{
    const bool hasWords = !m_line.operands().isEmpty();
    const bool namesOnly = m_line.has("--names-only");
    if (!hasWords && !namesOnly && !m_line.has("--contents") && !m_line.has("--metadata"))
        return state;
    QString text = hasWords ? m_line.operands().join(u' ') : state->searchString();
    if (text.trimmed().isEmpty())
        text.clear();
    return state->searchStateWithNewSearchString(
        text, m_line.has("--contents") || (state->searchContents() && !namesOnly),
        m_line.has("--metadata") || (state->searchMetaData() && !namesOnly),
        namesOnly || state->searchString().isEmpty() || state->searchFileNames());
}

KPSearchState::Ptr KPFindOptions::withFolders(const KPSearchState::Ptr &state) const
{
    KPSearchState::Ptr changed = state;
    if (m_line.has("--list-folder"))
        changed = changed->searchStateWithNewFinderListing(true, m_line.has("--deep"));
    else if (m_line.has("--deep"))
        changed = changed->searchStateWithNewFinderListing(changed->isFinderListing(), true);
    if (!m_folders.isEmpty())
        changed = changed->searchStateWithNewContstraintFolders(m_folders);
    if (!m_excludedFolders.isEmpty())
        changed = changed->searchStateWithNewExcludeFolders(m_excludedFolders);
    return changed;
}

KPSearchState::Ptr KPFindOptions::withModes(const KPSearchState::Ptr &state) const
{
    KPSearchState::Ptr changed = state;
    if (m_line.has("--tagged"))
        changed = changed->searchStateWithNewTaggedFiles(true);
    if (m_line.has("--untagged"))
        changed = changed->searchStateWithNewUntaggedFiles(true);
    if (m_line.has("--managed"))
        changed = changed->searchStateWithNewManagedDocuments(true);
    return changed;
}
