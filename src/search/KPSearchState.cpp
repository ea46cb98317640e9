// KPSearchState: making one, and the questions about it.
#include "KPSearchStateCaches.h"

#include "KPPredicateBuilder.h"
#include "KPSearchFolders.h"
#include "KPSearchStateKeys.h"
#include "UserDefaults.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPText.h"

#include <algorithm>
#include <cmath>

using namespace KPSearchStateKey;

const QString KPSearchState::treePrefix = QStringLiteral("tree_");
const QString KPSearchState::extensionPrefix = QStringLiteral("KPExtensionSearch_");
const QString KPSearchState::kindPrefix = QStringLiteral("KPkMDItemKind_");
const QString KPSearchState::inconsistentUTI = QStringLiteral("com.brindle.inconsistentNoFiles");

static KPSearchState::NativeDictionary blankDictionary()
{
    return {{showManagedDocuments, PropertyValue::boolean(true)}};
}

KPSearchState::KPSearchState() : KPSearchState(blankDictionary())
{
}

KPSearchState::KPSearchState(NativeDictionary dictionary) : m_dictionary(std::move(dictionary))
{
    setDefaultCacheValues();
}

KPSearchState::KPSearchState(const KPSearchState &other) : KPSearchState(other.m_dictionary)
{
}

KPSearchState::~KPSearchState() = default;

KPSearchState::Ptr KPSearchState::blankSearchState()
{
    return std::make_shared<const KPSearchState>();
}

KPSearchState::Ptr
KPSearchState::searchStateWithNativeDictionary(const NativeDictionary &dictionary)
{
    return std::make_shared<const KPSearchState>(dictionary);
}

KPSearchState::Ptr KPSearchState::searchStateWithDictionary(const SavedDictionary &saved)
{
    return searchStateWithNativeDictionary(nativeDictFromSearchStateDictionary(saved));
}

void KPSearchState::setDefaultCacheValues()
{
    m_caches = std::make_unique<Caches>();
}

// --- Values of the dictionary. One of another kind than the key's reads as absent.

static const PropertyValue &plainValue(const KPSearchState::NativeDictionary &dictionary,
                                       const QString &key)
{
    static const PropertyValue null;
    const auto found = dictionary.constFind(key);
    const auto *value = found == dictionary.cend() ? nullptr : std::get_if<PropertyValue>(&*found);
    return value ? *value : null;
}

QStringList KPSearchState::strings(const QString &key) const
{
    return plainValue(m_dictionary, key).strings();
}

QString KPSearchState::string(const QString &key) const
{
    return plainValue(m_dictionary, key).string();
}

KPSearchState::Tags KPSearchState::tags(const QString &key) const
{
    const auto found = m_dictionary.constFind(key);
    const auto *tags = found == m_dictionary.cend() ? nullptr : std::get_if<Tags>(&*found);
    return tags ? *tags : Tags();
}

bool KPSearchState::boolValueForKey(const QString &key) const
{
    return plainValue(m_dictionary, key).boolValue(false);
}

bool KPSearchState::boolValueForKeyDefaultYES(const QString &key) const
{
    return plainValue(m_dictionary, key).boolValue(true);
}

// --- The state as a whole

bool KPSearchState::isEqualToSearchState(const KPSearchState &other) const
{
    return this == &other || searchStateDictionary() == other.searchStateDictionary();
}

bool KPSearchState::isEqualToSearchStateIgnorePostContraint(const KPSearchState &other) const
{
    if (isFilesAndFolders())
        return isEqualToSearchState(other);
    const auto withoutPostConstraint = [](const KPSearchState &state) {
        SavedDictionary saved = state.searchStateDictionary();
        saved.insert(KPSearchStateKey::postConstraintFolders, PropertyValue::Array());
        return saved;
    };
    return withoutPostConstraint(*this) == withoutPostConstraint(other);
}

bool KPSearchState::isBlank() const
{
    return m_dictionary.isEmpty() || m_dictionary == blankDictionary();
}

bool KPSearchState::isBlankish() const
{
    constexpr qsizetype fewKeys = 3;
    return m_dictionary.size() < fewKeys ||
           !(m_dictionary.contains(withTags) ||
             m_dictionary.contains(KPSearchStateKey::searchStrings) ||
             m_dictionary.contains(dateSearch) || m_dictionary.contains(fileList));
}

bool KPSearchState::tagsOnly() const
{
    return !searchTags().isEmpty() &&
           (m_dictionary.size() == 1 || (m_dictionary.size() == 2 && !excludeTags().isEmpty()));
}

bool KPSearchState::needToDoMDQuery() const
{
    return isShowingTaggedDocuments() || isShowingUntaggedDocuments() ||
           isShowingManagedDocuments() || !searchTags().isEmpty() || !searchString().isEmpty() ||
           !explicitFileUTITags().isEmpty() || searchHasDateRange() ||
           !ratingConditions().isEmpty();
}

bool KPSearchState::isSearchGoodEnoughToPerformSearch() const
{
    return isShowingTaggedDocuments() || isShowingManagedDocuments() || isFinderListing() ||
           isFileListSearch() || !searchTags().isEmpty() || !searchString().isEmpty() ||
           !explicitFileUTITags().isEmpty() || !mdQueryString().value_or(QString()).isEmpty() ||
           searchHasDateRange();
}

// --- Tags

QStringList KPSearchState::searchTags() const
{
    return strings(withTags);
}

QStringList KPSearchState::excludeTags() const
{
    return strings(KPSearchStateKey::excludeTags);
}

static KPTagName::PooledTags pooledLC(const QStringList &tags)
{
    KPTagName::PooledTags pooled;
    for (const QString &tag : tags)
        pooled.append(KPPool::pooledString(lowerCase(decomposed(tag))));
    return pooled;
}

const KPTagName::PooledTags &KPSearchState::searchTagsLC() const
{
    return m_caches->searchTagsLC.get([this] { return pooledLC(searchTags()); });
}

const KPTagName::PooledTags &KPSearchState::excludeTagsPooledLC() const
{
    return m_caches->excludeTagsLC.get([this] { return pooledLC(excludeTags()); });
}

static bool isInCaseAside(const KPTagName::PooledTags &tags, const QString &tag)
{
    const QString wanted = lowerCase(decomposed(tag));
    return std::any_of(tags.begin(), tags.end(),
                       [&](KPPooledString known) { return known.view() == wanted; });
}

bool KPSearchState::hasSearchTag(const QString &tag) const
{
    return isInCaseAside(searchTagsLC(), tag);
}

bool KPSearchState::hasExcludeTag(const QString &tag) const
{
    return isInCaseAside(excludeTagsPooledLC(), tag);
}

bool KPSearchState::excludeHiddenOnly() const
{
    const KPTagName::PooledTags &tags = excludeTagsPooledLC();
    return tags.size() == 1 && tags.first() == KPTagName::hiddenUserTag()->pooledDisplayNameLC();
}

// --- Text

QStringList KPSearchState::searchStrings() const
{
    return strings(KPSearchStateKey::searchStrings);
}

QString KPSearchState::searchString() const
{
    return searchStrings().join(u' ');
}

const QStringList &KPSearchState::delimitedSearchStrings() const
{
    return words().words;
}

const QStringList &KPSearchState::delimitedSearchStringsLC() const
{
    return words().wordsLC;
}

bool KPSearchState::searchContents() const
{
    return boolValueForKey(KPSearchStateKey::searchContents);
}

bool KPSearchState::searchMetaData() const
{
    return boolValueForKey(KPSearchStateKey::searchMetaData);
}

bool KPSearchState::searchFileNames() const
{
    return boolValueForKey(KPSearchStateKey::searchFileNames);
}

// --- Folders

QStringList KPSearchState::constraintFolders() const
{
    const QStringList narrower = postConstraintFolders();
    return isFilesAndFolders() && !narrower.isEmpty()
               ? narrower
               : strings(KPSearchStateKey::constraintFolders);
}

QStringList KPSearchState::postConstraintFolders() const
{
    return strings(KPSearchStateKey::postConstraintFolders);
}

QStringList KPSearchState::excludeFolders() const
{
    return strings(KPSearchStateKey::excludeFolders);
}

const KPOptimizedFolders &KPSearchState::optimizedConstraintFolders() const
{
    return m_caches->constraintFolders.get([this] {
        return KPOptimizedFolders(constraintFolders(), isFilesAndFolders()
                                                           ? KPOptimizedFolders::Reach::Inside
                                                           : KPOptimizedFolders::Reach::Below);
    });
}

const KPOptimizedFolders &KPSearchState::optimizedExcludeFolders() const
{
    return m_caches->excludeFolders.get(
        [this] { return KPOptimizedFolders(excludeFolders(), KPOptimizedFolders::Reach::Below); });
}

bool KPSearchState::arePostConstraintsAllowed(const QStringList &folders) const
{
    const QStringList outer = strings(KPSearchStateKey::constraintFolders);
    return isFinderListing() &&
           std::all_of(folders.begin(), folders.end(), [&](const QString &folder) {
               return KPSearchFolders::instance().pathInFolderArray(outer, folder);
           });
}

QStringList KPSearchState::searchFoldersToUseForMDQuery() const
{
    return isFileListSearch() ? reduceScopeOfFilesToParentFolders(fileListSearch())
                              : constraintFolders();
}

QStringList KPSearchState::searchFoldersWhereSpotlightWorks() const
{
    const QStringList failing = KPSearchFolders::instance().spotlightNotAvaialableVolumeList();
    QStringList folders = searchFoldersToUseForMDQuery();
    if (!failing.isEmpty())
        folders.removeIf([&](const QString &folder) {
            return KPSearchFolders::instance().pathInFolderArray(failing,
                                                                 XPFolders::expandTilde(folder));
        });
    return folders;
}

bool KPSearchState::searchShouldShowDocsEveryWhere() const
{
    return modes().showsEverywhere;
}

bool KPSearchState::pathInOptimizedFolderArray(const QStringList &folders, const QString &path,
                                               bool rootPath)
{
    return KPOptimizedFolders::isBelow(folders, path, rootPath);
}

bool KPSearchState::pathInOptimizedFolderArrayNotDeep(const QStringList &folders,
                                                      const QString &path, bool rootPath)
{
    return KPOptimizedFolders::isInside(folders, path, rootPath);
}

QStringList KPSearchState::reduceScopeOfFilesToParentFolders(const QStringList &files)
{
    QStringList folders;
    for (const QString &file : files)
        folders.append(XPPath::folder(file) + u'/');
    std::sort(folders.begin(), folders.end());
    QStringList reduced;
    for (const QString &folder : folders) {
        if (reduced.isEmpty() || !folder.startsWith(reduced.last()))
            reduced.append(folder == u"//" ? QStringLiteral("/") : folder);
    }
    for (QString &folder : reduced) {
        if (folder.size() > 1)
            folder.chop(1);
    }
    return reduced;
}

// --- Modes

const KPSearchState::Modes &KPSearchState::modes() const
{
    return m_caches->modes.get([this] {
        Modes modes{};
        modes.isFileList = isFileListSearch();
        modes.showsTagged = isShowingTaggedDocuments();
        modes.showsUntagged = isShowingUntaggedDocuments();
        const QStringList folders = constraintFolders();
        modes.showsEverywhere =
            alwaysShowSystemFiles() || modes.isFileList || modes.showsTagged ||
            std::any_of(folders.begin(), folders.end(), [](const QString &folder) {
                return folder.contains(u"/Library/") || folder.endsWith(u"/Library");
            });
        modes.needsFolderCheck = isFilesAndFolders() || !excludeFolders().isEmpty();
        modes.readOnlyKeywords = searchReadOnlyKeywords();
        modes.excludesHiddenOnly = excludeHiddenOnly();
        const QString text = searchString();
        modes.hasSearchString = !text.isEmpty();
        modes.searchesMetaData = searchMetaData() || searchContents();
        modes.isShortSearchString = KPPredicateBuilder::searchStringShortSoUseBeginsWith(text);
        return modes;
    });
}

bool KPSearchState::isFileListSearch() const
{
    return !fileListSearch().isEmpty();
}

QStringList KPSearchState::fileListSearch() const
{
    return strings(fileList);
}

bool KPSearchState::isFinderListing() const
{
    return boolValueForKey(finderListingMode);
}

bool KPSearchState::isDeep() const
{
    return boolValueForKey(fileListGoDeep);
}

bool KPSearchState::isShowBundleContents() const
{
    return boolValueForKey(fileListShowBundleContents);
}

bool KPSearchState::isFilesAndFolders() const
{
    return isFinderListing() && !isDeep();
}

bool KPSearchState::showHiddenFiles() const
{
    return isFinderListing() && isDeep() &&
           UserDefaults::standard().boolValue(QStringLiteral("KPSearchStateHiddenFilesInGoDeep"));
}

bool KPSearchState::isShowingManagedDocuments() const
{
    return boolValueForKey(showManagedDocuments);
}

bool KPSearchState::isShowingTaggedDocuments() const
{
    return boolValueForKey(showTaggedDocuments);
}

bool KPSearchState::isShowingUntaggedDocuments() const
{
    return boolValueForKey(documentsWithNoTagsOnly);
}

bool KPSearchState::alwaysShowSystemFiles() const
{
    return boolValueForKey(alwaysSearchSystemFiles);
}

bool KPSearchState::searchReadOnlyKeywords() const
{
    return boolValueForKeyDefaultYES(KPSearchStateKey::searchReadOnlyKeywords);
}

// --- Dates and ratings

QString KPSearchState::dateString() const
{
    return string(dateSearch);
}

KPSearchDates::Range KPSearchState::getStart() const
{
    return KPSearchDates::commonOf(dateKeys());
}

QStringList KPSearchState::dateKeys() const
{
    const auto days = [this](const QString &key) -> std::optional<double> {
        const double number = plainValue(m_dictionary, key).doubleValue(std::nan(""));
        return std::isfinite(number) ? std::optional(number) : std::nullopt;
    };
    const QString key = dateString();
    QStringList keys = strings(dateSearchAlso);
    keys.prepend(key.isEmpty() ? KPSearchDates::keyOf({days(relativeStart), days(relativeEnd)})
                               : key);
    keys.removeAll(QString());
    return keys;
}

bool KPSearchState::searchHasDateRange() const
{
    return getStart().start.has_value();
}

QString KPSearchState::ratingString() const
{
    return string(ratingSearch);
}

QStringList KPSearchState::ratingConditions() const
{
    QStringList conditions = strings(ratingSearchAlso);
    conditions.prepend(ratingString());
    conditions.removeAll(QString());
    return conditions;
}
