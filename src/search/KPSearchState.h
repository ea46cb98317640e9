#pragma once

#include "KPDoc.h"
#include "KPSearchDates.h"
#include "KPStarCondition.h"

#include <memory>
#include <variant>

class KPOptimizedFolders;

// What a view of the library shows: every criterion and mode of a search, as one value.
//
// A state is its dictionary (KPSearchStateKey names the keys; one that is not there sets no
// condition) and never changes: the searchStateWith… operations answer a new one. Two things are
// made from it: the text of a query for the metadata index (mdQueryString), and tests of single
// documents, for what the index found (docPassesMDQuery) and for what was found without it
// (docPasses).
// Days and years are counted from when a state is first asked about them.
// Threads: any. Everything derived is made once, when first asked for.
class KPSearchState
{
public:
    using Ptr = std::shared_ptr<const KPSearchState>;
    using Tags = KPTagName::Tags;
    // A property-list value; for the two keys of file types their tags.
    using Value = std::variant<PropertyValue, Tags>;
    using NativeDictionary = QMap<QString, Value>;
    using SavedDictionary = PropertyValue::Dictionary;

    // --- Making a state

    KPSearchState(); // the managed documents
    explicit KPSearchState(NativeDictionary dictionary);
    KPSearchState(const KPSearchState &other);
    KPSearchState &operator=(const KPSearchState &) = delete;
    ~KPSearchState();
    static Ptr blankSearchState();
    static Ptr searchStateWithNativeDictionary(const NativeDictionary &dictionary);
    // From the stored form. A value of the wrong kind (another program, a damaged file) is left
    // out with a line in the log; keys that are not known stay.
    static Ptr searchStateWithDictionary(const SavedDictionary &saved);
    const NativeDictionary &nativeDictionary() const { return m_dictionary; }
    SavedDictionary searchStateDictionary() const;
    static NativeDictionary nativeDictFromSearchStateDictionary(const SavedDictionary &saved);
    static SavedDictionary searchStateDictionaryFromNative(const NativeDictionary &dictionary);

    // By the stored form: the order of tags and types does not matter.
    bool isEqualToSearchState(const KPSearchState &other) const;
    bool isEqualToSearchStateIgnorePostContraint(const KPSearchState &other) const; // (spelled so)

    // --- Questions

    bool isBlank() const;
    bool isBlankish() const;
    bool tagsOnly() const;
    bool needToDoMDQuery() const;
    bool isSearchGoodEnoughToPerformSearch() const;

    QStringList searchTags() const;
    QStringList excludeTags() const;
    const KPTagName::PooledTags &searchTagsLC() const;
    const KPTagName::PooledTags &excludeTagsPooledLC() const;
    bool hasSearchTag(const QString &tag) const; // case aside, as in hasExcludeTag
    bool hasExcludeTag(const QString &tag) const;
    bool hasUTTag(const KPTagName *tag) const; // among the wanted types
    bool excludeHiddenOnly() const;            // the only excluded tag is "hidden"

    QStringList searchStrings() const;
    QString searchString() const;
    const QStringList &delimitedSearchStrings() const;
    const QStringList &delimitedSearchStringsLC() const;
    bool searchContents() const;
    bool searchMetaData() const;
    bool searchFileNames() const;

    // Paths, or names of places (KPSearchFolders).
    QStringList constraintFolders() const;
    QStringList postConstraintFolders() const;
    QStringList excludeFolders() const;
    const KPOptimizedFolders &optimizedConstraintFolders() const;
    const KPOptimizedFolders &optimizedExcludeFolders() const;
    // Whether narrower folders make sense in this state: it lists a folder that holds them.
    bool arePostConstraintsAllowed(const QStringList &folders) const;
    // Where to look with mdQueryString(): nothing is everywhere.
    QStringList searchFoldersToUseForMDQuery() const;
    QStringList searchFoldersWhereSpotlightWorks() const;
    bool searchShouldShowDocsEveryWhere() const;

    // Identifiers of the wanted types; an entry "tree_X" is all that conforms to X.
    QStringList fileUTIs() const;
    Tags explicitFileUTITags() const;
    Tags explicitFileUTITagsToExclude() const;
    const Tags &treedFileTypeNames() const; // without "tree_"
    const Tags &equalToFileTypeNames() const;
    const Tags &treedFileTypeNamesExclude() const;
    const Tags &equalToFileTypeNamesExclude() const;
    bool mdQuerysNeedtoCheckFileTypes() const; // (spelled so)
    bool isAllFileTypes() const;
    bool utiIsInconsistent() const; // no document can be of these types
    QString fileTypesHumanReadableString() const;

    bool isFileListSearch() const;
    QStringList fileListSearch() const;
    bool isFinderListing() const;
    bool isDeep() const;
    bool isShowBundleContents() const;
    bool isFilesAndFolders() const;
    bool showHiddenFiles() const; // a listing shows names that begin with a dot

    bool isShowingManagedDocuments() const;
    bool isShowingTaggedDocuments() const;
    bool isShowingUntaggedDocuments() const;
    bool alwaysShowSystemFiles() const;
    bool searchReadOnlyKeywords() const;
    bool searchUserTags() const { return true; } // whatever is stored

    QString dateString() const; // a date key
    // All that must be fulfilled: the key, else the two numbers of days, and further ones.
    QStringList dateKeys() const;
    // What the keys stand for now.
    KPSearchDates::Range getStart() const;
    bool searchHasDateRange() const;
    QString ratingString() const;
    QStringList ratingConditions() const; // this one and further ones
    // The rating to give to a document that is to show up in this state.
    std::optional<double> ratingThatPasses() const;

    // Values of the dictionary; one of another kind reads as absent.
    QStringList strings(const QString &key) const;
    bool boolValueForKey(const QString &key) const;
    bool boolValueForKeyDefaultYES(const QString &key) const;

    // --- The query. Nothing: the index is not to be asked.

    const std::optional<QString> &mdQueryString() const;
    // The text also where the index need not be asked, for who asks it nevertheless (excluded tags
    // or types alone). Empty: everything.
    QString queryText() const;
    QString buildManagedSearch() const;
    QString tagSearch(const QString &tag) const;
    QString excludeTagSearch(const QString &tag) const;
    static QString colourSearch(const QString &colour);

    // --- Tests of a document

    bool docPasses(const KPDoc &doc) const;        // found without the index
    bool docPassesMDQuery(const KPDoc &doc) const; // found by the query
    bool docPassesSearchString(const KPDoc &doc) const;
    bool docPassesFileTypeTest(const KPDoc &doc) const;
    bool docPassesContraintFolders(const KPDoc &doc) const; // (spelled so)
    bool docPassesExcludeTags(const KPDoc &doc) const;
    bool docPassesTags(const KPDoc &doc) const;
    bool docPassesFileList(const KPDoc &doc) const;
    bool docPassesDateRange(const KPDoc &doc) const;
    bool docPassesHardCodedExcludePaths(const KPDoc &doc) const;
    bool docPassesHardCodedExcludePathsMDQuery(const KPDoc &doc) const;
    bool docPassesRating(const KPDoc &doc) const;

    // --- Changes. An empty value takes the criterion away.

    Ptr searchStateWithNewTags(const QStringList &tags) const;
    Ptr searchStateWithNewExcludeTags(const QStringList &tags) const;
    Ptr searchStateByAddingTag(const QString &tag) const;
    Ptr searchStateByAddingExcludeTag(const QString &tag) const;
    // From the wanted tags, else from the excluded ones; case aside.
    Ptr searchStateByClearingTag(const QString &tag) const;
    Ptr searchStateWithNewSearchString(const QString &text, bool searchContents, bool searchMeta,
                                       bool searchFileNames) const;
    Ptr searchStateWithNewTaggedFiles(bool on) const;
    Ptr searchStateWithNewUntaggedFiles(bool on) const;
    Ptr searchStateWithNewManagedDocuments(bool on) const;
    Ptr searchStateWithNewContstraintFolders(const QStringList &folders) const;     // (spelled so)
    Ptr searchStateWithNewPostContstraintFolders(const QStringList &folders) const; // (spelled so)
    Ptr searchStateWithNewExcludeFolders(const QStringList &folders) const;
    Ptr searchStateWithNewUTIs(const Tags &types) const;
    Ptr searchStateWithNewExcludeUTIs(const Tags &types) const;
    Ptr searchStateByAddingUTIExcludeTag(KPTagName *type) const;
    Ptr searchStateByClearingUTITag(KPTagName *type) const;
    // None: no list. An empty list lists nothing and is one nevertheless.
    Ptr searchStateWithNewFileList(const std::optional<QStringList> &paths) const;
    Ptr searchStateWithNewFinderListing(bool on, bool goDeep) const;
    Ptr searchStateWithNewShowBundleContents(bool on) const;
    Ptr searchStateWithDeepAndBundleRemoved() const;
    Ptr searchStateWithNewDateString(const QString &dateKey) const;
    Ptr searchStateWithNewRating(const QString &condition) const;
    Ptr searchStateWithNewSearchUserTags(bool on) const;
    Ptr searchStateWithNewSearchReadOnlyKeywords(bool on) const;
    // What fulfils both. Where nothing can (two dates, folders or types that exclude each other),
    // the answer is a state of inconsistent types.
    Ptr searchStateWithAND(const KPSearchState &other) const;

    // --- Operations on single criteria

    // Null states are passed over.
    static Ptr combineSearchStatesAND(const Ptr &one, const Ptr &two, const Ptr &three);
    // The folders of either list that lie inside one of the other.
    static QStringList combineContraintFoldersAND(const QStringList &one, const QStringList &two);
    static std::optional<bool> combineBools(std::optional<bool> one, std::optional<bool> two);
    static Tags utiArrayAND(const Tags &one, const Tags &two);
    // The key of what fulfils both. None: neither stands for it (KPSearchDates::join says more).
    static std::optional<QString> narrowDateRange(const QString &dateString,
                                                  const QString &otherDateString);
    static QString relativeDaysToDateString(std::optional<double> start, std::optional<double> end);
    static KPSearchDates::Range dateStringToDayRange(const QString &dateString);
    static QString yearString(int yearsAgo);
    // For people, in their language.
    static QString prettyDateStringFromDateString(const QString &dateString);
    static QString prettyRatingsStringFromRatingString(const QString &ratingString);
    static bool pathInOptimizedFolderArray(const QStringList &folders, const QString &path,
                                           bool rootPath);
    static bool pathInOptimizedFolderArrayNotDeep(const QStringList &folders, const QString &path,
                                                  bool rootPath);
    // The folders of the files, without those inside another.
    static QStringList reduceScopeOfFilesToParentFolders(const QStringList &files);

    static const QString treePrefix;      // "tree_"
    static const QString extensionPrefix; // "KPExtensionSearch_"
    static const QString kindPrefix;      // "KPkMDItemKind_"
    static const QString inconsistentUTI; // "com.brindle.inconsistentNoFiles"

private:
    struct Modes;
    struct Words;
    struct FileTypes;
    struct Caches;

    void setDefaultCacheValues();
    const Modes &modes() const;
    const Words &words() const;
    FileTypes setUpFileTypeFilters() const; // splits them by how they are compared
    const FileTypes &fileTypes() const;
    std::optional<KPStarCondition::Bounds> ratingBounds() const;
    QString string(const QString &key) const;
    Tags tags(const QString &key) const;

    const NativeDictionary m_dictionary;
    std::unique_ptr<Caches> m_caches;
};
