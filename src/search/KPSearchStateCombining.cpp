// KPSearchState: what fulfils two states at once.
#include "KPContentTypes.h"
#include "KPFolderCombining.h"
#include "KPSearchState.h"
#include "KPSearchStateKeys.h"
#include "KPStarCondition.h"
#include "XPText.h"

#include <algorithm>

using namespace KPSearchStateKey;

using Tags = KPTagName::Tags;

// --- Lists

static QString caseAside(const QString &text)
{
    return lowerCase(decomposed(text));
}

static QStringList unionCaseAside(const QStringList &one, const QStringList &two)
{
    QStringList all;
    QSet<QString> known;
    for (const QString &text : one + two) {
        const QString key = caseAside(text);
        if (!known.contains(key)) {
            known.insert(key);
            all.append(text);
        }
    }
    return all;
}

template <typename List>
static List unionOf(const List &one, const List &two)
{
    List all;
    for (const auto &element : one + two) {
        if (!all.contains(element))
            all.append(element);
    }
    return all;
}

// What stands in both; where one sets no condition, the other.
static QStringList commonOf(const QStringList &one, const QStringList &two)
{
    if (one.isEmpty() || two.isEmpty())
        return one + two;
    const QSet<QString> others(two.begin(), two.end());
    QStringList common = one;
    common.removeIf([&](const QString &text) { return !others.contains(text); });
    return common;
}

QStringList KPSearchState::combineContraintFoldersAND(const QStringList &one,
                                                      const QStringList &two)
{
    using Reach = KPOptimizedFolders::Reach;
    return KPFolderCombining::common(one, Reach::Below, two, Reach::Below);
}

std::optional<bool> KPSearchState::combineBools(std::optional<bool> one, std::optional<bool> two)
{
    if (one && two)
        return *one && *two;
    return one ? one : two;
}

// --- File types

// Whether all that `type` stands for is in what `other` stands for.
static bool isWithin(const QString &type, const QString &other)
{
    const QString &tree = KPSearchState::treePrefix;
    if (type == other)
        return true;
    if (!other.startsWith(tree) || type.startsWith(KPSearchState::extensionPrefix) ||
        type.startsWith(KPSearchState::kindPrefix))
        return false;
    const QString identifier = type.startsWith(tree) ? type.mid(tree.size()) : type;
    return KPContentTypes::conformsTo(identifier, other.mid(tree.size()));
}

Tags KPSearchState::utiArrayAND(const Tags &one, const Tags &two)
{
    if (one.isEmpty() || two.isEmpty())
        return one + two;
    Tags both;
    const auto addThoseWithin = [&both](const Tags &types, const Tags &others) {
        for (KPTagName *type : types) {
            const bool isIn = std::any_of(others.begin(), others.end(), [&](KPTagName *other) {
                return isWithin(type->uti(), other->uti());
            });
            if (isIn && !both.contains(type))
                both.append(type);
        }
    };
    addThoseWithin(one, two);
    addThoseWithin(two, one);
    return both.isEmpty() ? Tags{KPTagName::tagNameForUTITag(inconsistentUTI, QString())} : both;
}

// --- States

std::optional<QString> KPSearchState::narrowDateRange(const QString &dateString,
                                                      const QString &otherDateString)
{
    return KPSearchDates::narrow(dateString, otherDateString);
}

namespace {

// The combination under construction.
class Combination
{
public:
    Combination(const KPSearchState &one, const KPSearchState &two) : m_one(one), m_two(two) {}

    KPSearchState::Ptr state()
    {
        addOthers();
        addTextsAndTags();
        addDate();
        addRating();
        addModes();
        addFolders();
        addTypes();
        addTextFlags();
        return KPSearchState::searchStateWithNativeDictionary(m_both);
    }

private:
    // What no rule below names: of a mode, of matching, and what a newer program added. What one
    // state says or both say alike stays.
    void addOthers()
    {
        static const QStringList named = {withTags,
                                          excludeTags,
                                          searchStrings,
                                          constraintFolders,
                                          excludeFolders,
                                          fileList,
                                          fileUTIs,
                                          fileUTIsToExclude,
                                          dateSearch,
                                          dateSearchAlso,
                                          ratingSearch,
                                          ratingSearchAlso,
                                          relativeStart,
                                          relativeEnd,
                                          searchContents,
                                          searchMetaData,
                                          searchFileNames,
                                          fileListGoDeep,
                                          showBundleContents,
                                          alwaysSearchSystemFiles,
                                          showTaggedDocuments,
                                          documentsWithNoTagsOnly,
                                          postConstraintFolders,
                                          fileListShowBundleContents};
        const auto &one = m_one.nativeDictionary();
        const auto &two = m_two.nativeDictionary();
        m_both = one;
        m_both.insert(two);
        for (const QString &key : named)
            m_both.remove(key);
        for (const QString &key : m_both.keys()) {
            const bool inBoth = one.contains(key) && two.contains(key);
            if (inBoth && one.value(key) != two.value(key))
                joinOther(key);
        }
        // Shown by one alone, the insides of bundles are not what both show.
        if (m_one.isShowBundleContents() && m_two.isShowBundleContents())
            m_both.insert(fileListShowBundleContents, PropertyValue::boolean(true));
    }

    // A mode limits what is shown, and where a state looks for tags limits what is found; of two
    // values of an unknown key nobody can say what both mean.
    void joinOther(const QString &key)
    {
        const bool one = m_one.boolValueForKey(key);
        const bool two = m_two.boolValueForKey(key);
        if (key == showManagedDocuments || key == finderListingMode)
            m_both.insert(key, PropertyValue::boolean(one || two));
        else if (key == KPSearchStateKey::searchUserTags || key == searchReadOnlyKeywords)
            m_both.insert(key, PropertyValue::boolean(one && two));
        else
            m_isImpossible = true;
    }

    void addTextsAndTags()
    {
        const QStringList texts = unionCaseAside(m_one.searchStrings(), m_two.searchStrings());
        set(searchStrings, texts);
        const auto isRaw = [](const QString &text) { return text.startsWith(u"mdq:"); };
        // A query as it is typed to the index takes up the whole text.
        if (texts.size() > 1 && std::any_of(texts.begin(), texts.end(), isRaw))
            m_isImpossible = true;
        const QStringList wanted = unionCaseAside(m_one.searchTags(), m_two.searchTags());
        set(withTags, wanted);
        QSet<QString> wantedKeys;
        for (const QString &tag : wanted)
            wantedKeys.insert(caseAside(tag));
        QStringList excluded = unionCaseAside(m_one.excludeTags(), m_two.excludeTags());
        excluded.removeIf([&](const QString &tag) { return wantedKeys.contains(caseAside(tag)); });
        set(excludeTags, excluded);
    }

    void addDate()
    {
        const auto keys = KPSearchDates::join(m_one.dateKeys(), m_two.dateKeys());
        if (!keys)
            m_isImpossible = true;
        else if (!keys->isEmpty())
            setWithMore(dateSearch, dateSearchAlso, *keys);
        else if (const QString key =
                     m_one.dateString().isEmpty() ? m_two.dateString() : m_one.dateString();
                 !key.isEmpty())
            m_both.insert(dateSearch, PropertyValue(key)); // any date, or a newer program's
    }

    void addRating()
    {
        const auto conditions =
            KPStarCondition::join(m_one.ratingConditions(), m_two.ratingConditions());
        if (!conditions)
            m_isImpossible = true;
        else if (!conditions->isEmpty())
            setWithMore(ratingSearch, ratingSearchAlso, *conditions);
    }

    void setWithMore(const QString &key, const QString &moreKey, QStringList texts)
    {
        m_both.insert(key, PropertyValue(texts.takeFirst()));
        set(moreKey, texts);
    }

    void addFolders()
    {
        if (!m_both.contains(fileListGoDeep) && (isListing(m_one) || isListing(m_two)))
            addListedFolders();
        else
            addSearchedFolders();
        set(excludeFolders,
            KPFolderCombining::unionOf(m_one.excludeFolders(), m_two.excludeFolders()));
        setOrImpossible(fileList, listedFiles(m_one, m_two), listedFiles(m_two, m_one), &commonOf);
    }

    // A list of files shows them wherever they lie.
    static QStringList foldersOf(const KPSearchState &state)
    {
        return state.isFileListSearch() ? QStringList() : state.strings(constraintFolders);
    }

    static bool isListing(const KPSearchState &state)
    {
        return state.isFilesAndFolders() && !state.isFileListSearch();
    }

    void addSearchedFolders()
    {
        const QStringList one = foldersOf(m_one);
        const QStringList two = foldersOf(m_two);
        const auto combine = &KPSearchState::combineContraintFoldersAND;
        setOrImpossible(constraintFolders, one, two, combine);
        const QStringList narrowerOne = m_one.postConstraintFolders();
        const QStringList narrowerTwo = m_two.postConstraintFolders();
        if (!narrowerOne.isEmpty() || !narrowerTwo.isEmpty())
            setOrImpossible(postConstraintFolders, narrowerOne.isEmpty() ? one : narrowerOne,
                            narrowerTwo.isEmpty() ? two : narrowerTwo, combine);
    }

    // A listing shows what lies in its folders themselves, in the narrower ones if it has some:
    // those of them stay that the other state lists too, or has below its folders.
    void addListedFolders()
    {
        using Reach = KPOptimizedFolders::Reach;
        const KPSearchState &listing = isListing(m_one) ? m_one : m_two;
        const KPSearchState &other = &listing == &m_one ? m_two : m_one;
        QStringList folders = listing.constraintFolders();
        const auto narrow = [&](const QStringList &by, Reach reach) {
            const QStringList both = KPFolderCombining::common(folders, Reach::Inside, by, reach);
            m_isImpossible = m_isImpossible || (both.isEmpty() && !folders.isEmpty());
            folders = both;
        };
        if (isListing(other)) {
            narrow(other.constraintFolders(), Reach::Inside);
        } else {
            narrow(foldersOf(other), Reach::Below);
            narrow(other.postConstraintFolders(), Reach::Below);
        }
        const bool isNarrower = !listing.postConstraintFolders().isEmpty();
        set(isNarrower ? postConstraintFolders : constraintFolders, folders);
        if (isNarrower)
            set(constraintFolders, listing.strings(constraintFolders));
    }

    // Without those that lie outside the folders of the other state: in a list they do not count.
    QStringList listedFiles(const KPSearchState &state, const KPSearchState &other)
    {
        QStringList files = state.fileListSearch();
        if (files.isEmpty() || other.isFileListSearch())
            return files;
        const KPOptimizedFolders &wanted = other.optimizedConstraintFolders();
        const KPOptimizedFolders &excluded = other.optimizedExcludeFolders();
        files.removeIf([&](const QString &file) {
            return (!wanted.setsNoCondition() && !wanted.holds(file)) || excluded.holds(file);
        });
        m_isImpossible = m_isImpossible || files.isEmpty();
        return files;
    }

    void addTypes()
    {
        const Tags excluded =
            unionOf(m_one.explicitFileUTITagsToExclude(), m_two.explicitFileUTITagsToExclude());
        if (!excluded.isEmpty())
            m_both.insert(fileUTIsToExclude, excluded);
        Tags wanted =
            KPSearchState::utiArrayAND(m_one.explicitFileUTITags(), m_two.explicitFileUTITags());
        if (m_isImpossible)
            wanted = {KPTagName::tagNameForUTITag(KPSearchState::inconsistentUTI, QString())};
        if (!wanted.isEmpty())
            m_both.insert(fileUTIs, wanted);
    }

    void addModes()
    {
        for (const QString &key :
             {fileListGoDeep, showBundleContents, alwaysSearchSystemFiles, showTaggedDocuments}) {
            if (m_one.boolValueForKey(key) || m_two.boolValueForKey(key))
                m_both.insert(key, PropertyValue::boolean(true));
        }
        if ((m_one.isShowingUntaggedDocuments() || m_two.isShowingUntaggedDocuments()) &&
            !m_both.contains(showTaggedDocuments) && !m_both.contains(withTags))
            m_both.insert(documentsWithNoTagsOnly, PropertyValue::boolean(true));
    }

    void addTextFlags()
    {
        const auto flag = [](const KPSearchState &state, const QString &key) {
            return state.nativeDictionary().contains(key)
                       ? std::optional(state.boolValueForKey(key))
                       : std::nullopt;
        };
        for (const QString &key : {searchContents, searchMetaData, searchFileNames}) {
            const auto both = KPSearchState::combineBools(flag(m_one, key), flag(m_two, key));
            if (both)
                m_both.insert(key, PropertyValue::boolean(*both));
        }
    }

    void set(const QString &key, const QStringList &texts)
    {
        if (!texts.isEmpty())
            m_both.insert(key, PropertyValue(texts));
    }

    // An empty list would set no condition at all.
    void setOrImpossible(const QString &key, const QStringList &one, const QStringList &two,
                         QStringList (*combine)(const QStringList &, const QStringList &))
    {
        const QStringList both = combine(one, two);
        if (both.isEmpty() && !(one.isEmpty() && two.isEmpty()))
            m_isImpossible = true;
        set(key, both);
    }

    const KPSearchState &m_one;
    const KPSearchState &m_two;
    KPSearchState::NativeDictionary m_both;
    bool m_isImpossible = false;
};

} // namespace

KPSearchState::Ptr KPSearchState::searchStateWithAND(const KPSearchState &other) const
{
    if (m_dictionary.isEmpty())
        return searchStateWithNativeDictionary(other.m_dictionary);
    if (other.m_dictionary.isEmpty())
        return searchStateWithNativeDictionary(m_dictionary);
    if (isEqualToSearchState(other))
        return searchStateWithNativeDictionary(m_dictionary);
    return Combination(*this, other).state();
}

KPSearchState::Ptr KPSearchState::combineSearchStatesAND(const Ptr &one, const Ptr &two,
                                                         const Ptr &three)
{
    Ptr all;
    for (const Ptr &state : {one, two, three}) {
        if (state)
            all = all ? all->searchStateWithAND(*state) : state;
    }
    return all;
}
