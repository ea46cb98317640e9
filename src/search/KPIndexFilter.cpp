#include "KPIndexFilter.h"

#include "KPContentTypes.h"
#include "KPPathFilters.h"
#include "KPPredicateBuilder.h"
#include "KPSearchFolders.h"
#include "Karvex.h"
#include "XPVolumes.h"

static const QString andOperator = QStringLiteral(" && ");

static QStringList foldersOf(const KPSearchFolders::Real &real)
{
    QStringList folders = real.folders;
    if (real.wholeDisk)
        folders.append(QStringLiteral("/"));
    folders.removeDuplicates();
    return folders;
}

KPIndexFilter::Scope KPIndexFilter::scopeOf(const KPSearchState &state)
{
    const QStringList wanted = state.searchFoldersToUseForMDQuery();
    const QStringList covered = state.searchFoldersWhereSpotlightWorks();
    const auto real = KPSearchFolders::realFolders(covered);
    Scope scope;
    scope.everywhere = wanted.isEmpty() || real.everything;
    if (scope.everywhere)
        return scope;
    scope.folders = foldersOf(real);
    const QSet<QString> looked(scope.folders.begin(), scope.folders.end());
    for (const QString &folder : foldersOf(KPSearchFolders::realFolders(wanted))) {
        if (!looked.contains(folder))
            scope.uncovered.append(folder);
    }
    return scope;
}

// Of a document whose tags cannot be read nobody knows that it lacks a tag. "hidden" alone is left
// out by every view, and such a document must not get lost there.
static bool needsReadableTags(const KPSearchState &state)
{
    return !state.excludeTags().isEmpty() && !state.excludeHiddenOnly();
}

KPIndexFilter::KPIndexFilter(KPSearchState::Ptr state)
    : m_state(std::move(state)), m_tests(m_state->searchStateWithNewExcludeTags({})),
      m_scope(scopeOf(*m_state)), m_hidesUnreadableTags(needsReadableTags(*m_state))
{
    setRoots(m_scope.folders);
}

void KPIndexFilter::setRoots(const QStringList &roots)
{
    m_folders = QSet<QString>(roots.begin(), roots.end());
}

QStringList KPIndexFilter::reduced(const QStringList &folders)
{
    QStringList near, scope;
    for (const QString &folder : folders)
        (XPVolumes::isOnSlowVolume(folder) ? scope : near).append(folder);
    scope += KPSearchFolders::instance().reduceScopeActualPaths(near);
    // None is there: they match nothing for now, and may come.
    return scope.isEmpty() ? folders : scope;
}

// A state names plain tags. The index is asked for those below them too ("tax/2024" is below
// "tax"), by one clause more for each.
static QString textWithBranches(const KPSearchState &state)
{
    QString text = state.queryText();
    const auto branchSearch = [&](const QString &tag) {
        return state.tagSearch(tag + QStringLiteral("/*"));
    };
    for (const QString &tag : state.searchTags()) {
        const QString plain = state.tagSearch(tag);
        text.replace(plain, u'(' + plain + QStringLiteral(" || ") + branchSearch(tag) + u')');
    }
    QStringList clauses{text};
    for (const QString &tag : state.excludeTags())
        clauses.append(u'!' + branchSearch(tag));
    clauses.removeAll(QString());
    return KPPredicateBuilder::mdCombineSearches(clauses, andOperator);
}

QString KPIndexFilter::text() const
{
    QStringList clauses;
    for (const QString &clause : {textWithBranches(*m_state), m_clause}) {
        if (!clause.isEmpty())
            clauses.append(clause);
    }
    return KPPredicateBuilder::mdCombineSearches(clauses, andOperator);
}

// Hidden is what is hidden below a folder that is searched: that one was asked for by its name.
bool KPIndexFilter::isHidden(const QString &path) const
{
    const qsizetype hiddenAt = path.lastIndexOf(u"/.");
    if (hiddenAt < 0)
        return false;
    for (qsizetype end = path.lastIndexOf(u'/'); end > hiddenAt;
         end = path.lastIndexOf(u'/', end - 1)) {
        if (m_folders.contains(path.left(end)))
            return false;
    }
    return true;
}

static bool isPackage(const QString &type)
{
    return KPContentTypes::conformsTo(type, QStringLiteral("com.apple.package")) ||
           KPContentTypes::conformsTo(type, QStringLiteral("com.apple.bundle"));
}

bool KPIndexFilter::mayHold(const QByteArray &path, const QString &text, const XPFileInfo &info,
                            const QString &type) const
{
    if (!info.isRegular() && !(info.isDirectory() && isPackage(type)))
        return false;
    return !isHidden(text) && (m_state->searchShouldShowDocsEveryWhere()
                                   ? KPPathFilters::passesExcludePaths(path)
                                   : KPPathFilters::passesMDQueryExcludePaths(path));
}

bool KPIndexFilter::needsRecord() const
{
    return m_state->mdQuerysNeedtoCheckFileTypes() || !m_state->excludeFolders().isEmpty() ||
           KPDoc::numDocsRemovedFromLibrary() > 0;
}

std::unique_ptr<KPIndexFilter> KPIndexFilter::unreadable() const
{
    const QString tags = Karvex::tagsToSearchFor();
    const QString &rating = Karvex::starRatingKey;
    const bool asksWords = !m_state->searchString().isEmpty() && m_state->searchMetaData();
    QStringList clauses;
    if (asksWords || !m_state->searchTags().isEmpty() || needsReadableTags(*m_state) ||
        m_state->isShowingUntaggedDocuments())
        clauses.append(QStringLiteral("(%1 == * && !(%1 == \"*\"))").arg(tags));
    if (!m_state->ratingConditions().isEmpty())
        clauses.append(QStringLiteral("(%1 == * && !(%1 < 0 || %1 >= 0))").arg(rating));
    if (clauses.isEmpty())
        return nullptr;
    auto others = m_state->searchStateWithNewTags({})
                      ->searchStateWithNewExcludeTags({})
                      ->searchStateWithNewUntaggedFiles(false)
                      ->searchStateWithNewRating({});
    if (asksWords)
        others = others->searchStateWithNewSearchString({}, false, false, false);
    auto result = std::make_unique<KPIndexFilter>(others);
    result->m_clause = KPPredicateBuilder::mdCombineSearches(clauses, QStringLiteral(" || "));
    result->m_folders = m_folders;
    return result;
}
