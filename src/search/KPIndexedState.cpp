#include "KPIndexedState.h"

#include "KPDocCache.h"
#include "KPPredicateBuilder.h"
#include "KPSearchFolders.h"
#include "Karvex.h"
#include "XPPath.h"

static const QString andOperator = QStringLiteral(" && ");

static QStringList foldersOf(const KPSearchFolders::Real &real)
{
    QStringList folders = real.folders;
    if (real.wholeDisk)
        folders.append(QStringLiteral("/"));
    folders.removeDuplicates();
    return folders;
}

KPIndexedState::Scope KPIndexedState::scopeOf(const KPSearchState &state)
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

KPIndexedState::KPIndexedState(KPSearchState::Ptr state)
    : m_state(std::move(state)), m_tests(m_state->searchStateWithNewExcludeTags({})),
      m_scope(scopeOf(*m_state)), m_hidesUnreadableTags(!m_state->excludeTags().isEmpty())
{
    setRoots(m_scope.folders);
    const QStringList files = m_state->fileListSearch();
    m_listed = QSet<QString>(files.begin(), files.end());
}

void KPIndexedState::setRoots(const QStringList &roots)
{
    m_folders = QSet<QString>(roots.begin(), roots.end());
}

bool KPIndexedState::findsNothing() const
{
    return m_state->utiIsInconsistent();
}

QString KPIndexedState::text() const
{
    QStringList clauses;
    for (const QString &clause : {m_state->queryText(), m_clause}) {
        if (!clause.isEmpty())
            clauses.append(clause);
    }
    return clauses.isEmpty() ? QStringLiteral("kMDItemFSName == *")
                             : KPPredicateBuilder::mdCombineSearches(clauses, andOperator);
}

// Hidden is what is hidden below a folder that is searched: that one was asked for by its name.
bool KPIndexedState::isHidden(const QString &path) const
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

bool KPIndexedState::mayHold(const QString &path) const
{
    return m_listed.isEmpty() ? !isHidden(path) : m_listed.contains(path);
}

bool KPIndexedState::holds(const KPFoundDocument &document) const
{
    if (!document.info.isRegular() || !mayHold(document.path) ||
        (m_hidesUnreadableTags && document.hasUnreadableTags))
        return false;
    const KPDoc *doc = KPDocCache::docAtPath(document.path, &document.info);
    return doc != nullptr && m_tests->docPassesMDQuery(*doc);
}

std::unique_ptr<KPIndexedState> KPIndexedState::unreadable() const
{
    const QString tags = Karvex::tagsToSearchFor();
    const QString &rating = Karvex::starRatingKey;
    const bool asksWords = !m_state->searchString().isEmpty() && m_state->searchMetaData();
    QStringList clauses;
    if (asksWords || !m_state->searchTags().isEmpty() || !m_state->excludeTags().isEmpty() ||
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
    auto result = std::make_unique<KPIndexedState>(others);
    result->m_clause = KPPredicateBuilder::mdCombineSearches(clauses, QStringLiteral(" || "));
    result->m_folders = m_folders;
    return result;
}
