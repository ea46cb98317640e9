// KPSearchState: what fulfils two states at once.
#include "KPContentTypes.h"
#include "KPSearchFolders.h"
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
    if (one.isEmpty() || two.isEmpty())
        return one + two;
    const auto isIn = [](const QString &folder, const QStringList &folders) {
        return folders.contains(folder) ||
               KPSearchFolders::instance().pathInFolderArray(folders, folder);
    };
    QStringList both;
    for (const QString &folder : one) {
        if (isIn(folder, two))
            both.append(folder);
    }
    for (const QString &folder : two) {
        if (isIn(folder, one) && !both.contains(folder))
            both.append(folder);
    }
    return both;
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
    const KPSearchDates::Narrowed narrowed =
        KPSearchDates::narrow({dateString, KPSearchDates::rangeOf(dateString)},
                              {otherDateString, KPSearchDates::rangeOf(otherDateString)});
    return narrowed.kind == KPSearchDates::Narrowed::Kind::Key ? std::optional(narrowed.key)
                                                               : std::nullopt;
}

namespace {

// The combination under construction.
class Combination
{
public:
    Combination(const KPSearchState &one, const KPSearchState &two) : m_one(one), m_two(two) {}

    KPSearchState::Ptr state()
    {
        addTextsAndTags();
        addDate();
        addRating();
        addFolders();
        addTypes();
        addModes();
        addTextFlags();
        return KPSearchState::searchStateWithNativeDictionary(m_both);
    }

private:
    void addTextsAndTags()
    {
        set(searchStrings, unionCaseAside(m_one.searchStrings(), m_two.searchStrings()));
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
        const auto narrowed = KPSearchDates::narrow({m_one.dateString(), m_one.getStart()},
                                                    {m_two.dateString(), m_two.getStart()});
        switch (narrowed.kind) {
        case KPSearchDates::Narrowed::Kind::Key:
            if (!narrowed.key.isEmpty())
                m_both.insert(dateSearch, PropertyValue(narrowed.key));
            break;
        case KPSearchDates::Narrowed::Kind::Range:
            m_both.insert(relativeStart, PropertyValue::real(*narrowed.range.start));
            if (narrowed.range.end)
                m_both.insert(relativeEnd, PropertyValue::real(*narrowed.range.end));
            break;
        case KPSearchDates::Narrowed::Kind::None:
            m_isImpossible = true;
            break;
        }
    }

    void addRating()
    {
        const auto both = KPStarCondition::narrow(m_one.ratingString(), m_two.ratingString());
        if (!both)
            m_isImpossible = true;
        else if (!both->isEmpty())
            m_both.insert(ratingSearch, PropertyValue(*both));
    }

    void addFolders()
    {
        // The stored folders: constraintFolders() answers others in some modes.
        setOrImpossible(constraintFolders, m_one.strings(constraintFolders),
                        m_two.strings(constraintFolders),
                        &KPSearchState::combineContraintFoldersAND);
        setOrImpossible(postConstraintFolders, m_one.postConstraintFolders(),
                        m_two.postConstraintFolders(), &KPSearchState::combineContraintFoldersAND);
        set(excludeFolders, unionOf(m_one.excludeFolders(), m_two.excludeFolders()));
        setOrImpossible(fileList, m_one.fileListSearch(), m_two.fileListSearch(), &commonOf);
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
        if (both.isEmpty() && !one.isEmpty())
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
