// KPSearchState: states that differ in one criterion.
#include "KPSearchState.h"
#include "KPSearchStateKeys.h"
#include "XPText.h"

using namespace KPSearchStateKey;

using Dictionary = KPSearchState::NativeDictionary;
using Ptr = KPSearchState::Ptr;

static Ptr stateOf(const Dictionary &dictionary)
{
    return KPSearchState::searchStateWithNativeDictionary(dictionary);
}

static void setBool(Dictionary &dictionary, const QString &key, bool on)
{
    if (on)
        dictionary.insert(key, PropertyValue::boolean(true));
    else
        dictionary.remove(key);
}

static void setTexts(Dictionary &dictionary, const QString &key, const QStringList &texts)
{
    if (texts.isEmpty())
        dictionary.remove(key);
    else
        dictionary.insert(key, PropertyValue(texts));
}

static void setText(Dictionary &dictionary, const QString &key, const QString &text)
{
    if (text.isEmpty())
        dictionary.remove(key);
    else
        dictionary.insert(key, PropertyValue(text));
}

static void setTypes(Dictionary &dictionary, const QString &key, const KPTagName::Tags &types)
{
    if (types.isEmpty())
        dictionary.remove(key);
    else
        dictionary.insert(key, types);
}

// --- Tags

Ptr KPSearchState::searchStateWithNewTags(const QStringList &tags) const
{
    Dictionary changed = m_dictionary;
    setTexts(changed, withTags, tags);
    if (!tags.isEmpty())
        changed.remove(documentsWithNoTagsOnly);
    return stateOf(changed);
}

Ptr KPSearchState::searchStateWithNewExcludeTags(const QStringList &tags) const
{
    Dictionary changed = m_dictionary;
    setTexts(changed, KPSearchStateKey::excludeTags, tags);
    if (!tags.isEmpty())
        changed.remove(documentsWithNoTagsOnly);
    return stateOf(changed);
}

Ptr KPSearchState::searchStateByAddingTag(const QString &tag) const
{
    return searchStateWithNewTags(searchTags() << tag);
}

Ptr KPSearchState::searchStateByAddingExcludeTag(const QString &tag) const
{
    return searchStateWithNewExcludeTags(excludeTags() << tag);
}

static bool removeCaseAside(QStringList &tags, const QString &tag)
{
    const QString wanted = lowerCase(decomposed(tag));
    return tags.removeIf(
               [&](const QString &known) { return lowerCase(decomposed(known)) == wanted; }) > 0;
}

Ptr KPSearchState::searchStateByClearingTag(const QString &tag) const
{
    QStringList wanted = searchTags();
    QStringList excluded = excludeTags();
    if (!removeCaseAside(wanted, tag) && removeCaseAside(excluded, tag))
        return searchStateWithNewExcludeTags(excluded);
    return searchStateWithNewTags(wanted);
}

// --- Text

Ptr KPSearchState::searchStateWithNewSearchString(const QString &text, bool searchContents,
                                                  bool searchMeta, bool searchFileNames) const
{
    Dictionary changed = m_dictionary;
    const std::pair<QString, bool> flags[] = {{KPSearchStateKey::searchContents, searchContents},
                                              {KPSearchStateKey::searchMetaData, searchMeta},
                                              {KPSearchStateKey::searchFileNames, searchFileNames}};
    for (const auto &[key, on] : flags) {
        if (text.isEmpty())
            changed.remove(key);
        else
            changed.insert(key, PropertyValue::boolean(on));
    }
    setTexts(changed, KPSearchStateKey::searchStrings,
             text.isEmpty() ? QStringList() : QStringList{decomposed(text)});
    return stateOf(changed);
}

// --- Modes

Ptr KPSearchState::searchStateWithNewTaggedFiles(bool on) const
{
    Dictionary changed = m_dictionary;
    setBool(changed, showTaggedDocuments, on);
    if (on)
        changed.remove(documentsWithNoTagsOnly);
    return stateOf(changed);
}

Ptr KPSearchState::searchStateWithNewUntaggedFiles(bool on) const
{
    Dictionary changed = m_dictionary;
    setBool(changed, documentsWithNoTagsOnly, on);
    if (on)
        changed.remove(showTaggedDocuments);
    return stateOf(changed);
}

Ptr KPSearchState::searchStateWithNewManagedDocuments(bool on) const
{
    Dictionary changed = m_dictionary;
    setBool(changed, showManagedDocuments, on);
    return stateOf(changed);
}

Ptr KPSearchState::searchStateWithNewFileList(const std::optional<QStringList> &paths) const
{
    Dictionary changed = m_dictionary;
    if (paths) {
        changed.insert(fileList, PropertyValue(*paths));
        changed.remove(KPSearchStateKey::excludeTags);
    } else {
        changed.remove(fileList);
    }
    return stateOf(changed);
}

Ptr KPSearchState::searchStateWithNewFinderListing(bool on, bool goDeep) const
{
    Dictionary changed = m_dictionary;
    setBool(changed, finderListingMode, on);
    setBool(changed, fileListGoDeep, goDeep);
    return stateOf(changed);
}

Ptr KPSearchState::searchStateWithNewShowBundleContents(bool on) const
{
    Dictionary changed = m_dictionary;
    setBool(changed, fileListShowBundleContents, on);
    return stateOf(changed);
}

Ptr KPSearchState::searchStateWithDeepAndBundleRemoved() const
{
    Dictionary changed = m_dictionary;
    changed.remove(fileListGoDeep);
    changed.remove(fileListShowBundleContents);
    return stateOf(changed);
}

// Absent reads as on, for both of these.
Ptr KPSearchState::searchStateWithNewSearchUserTags(bool on) const
{
    Dictionary changed = m_dictionary;
    if (on)
        changed.remove(KPSearchStateKey::searchUserTags);
    else
        changed.insert(KPSearchStateKey::searchUserTags, PropertyValue::boolean(false));
    return stateOf(changed);
}

Ptr KPSearchState::searchStateWithNewSearchReadOnlyKeywords(bool on) const
{
    Dictionary changed = m_dictionary;
    changed.insert(KPSearchStateKey::searchReadOnlyKeywords, PropertyValue::boolean(on));
    return stateOf(changed);
}

// --- Folders

Ptr KPSearchState::searchStateWithNewContstraintFolders(const QStringList &folders) const
{
    Dictionary changed = m_dictionary;
    setTexts(changed, KPSearchStateKey::constraintFolders, folders);
    if (!arePostConstraintsAllowed(postConstraintFolders()))
        changed.remove(KPSearchStateKey::postConstraintFolders);
    return stateOf(changed);
}

Ptr KPSearchState::searchStateWithNewPostContstraintFolders(const QStringList &folders) const
{
    Dictionary changed = m_dictionary;
    setTexts(changed, KPSearchStateKey::postConstraintFolders, folders);
    return stateOf(changed);
}

Ptr KPSearchState::searchStateWithNewExcludeFolders(const QStringList &folders) const
{
    Dictionary changed = m_dictionary;
    setTexts(changed, KPSearchStateKey::excludeFolders, folders);
    return stateOf(changed);
}

// --- File types

Ptr KPSearchState::searchStateWithNewUTIs(const Tags &types) const
{
    Dictionary changed = m_dictionary;
    setTypes(changed, KPSearchStateKey::fileUTIs, types);
    return stateOf(changed);
}

Ptr KPSearchState::searchStateWithNewExcludeUTIs(const Tags &types) const
{
    Dictionary changed = m_dictionary;
    setTypes(changed, fileUTIsToExclude, types);
    return stateOf(changed);
}

Ptr KPSearchState::searchStateByAddingUTIExcludeTag(KPTagName *type) const
{
    Tags types = explicitFileUTITagsToExclude();
    if (type != nullptr && !types.contains(type))
        types.append(type);
    return searchStateWithNewExcludeUTIs(types);
}

Ptr KPSearchState::searchStateByClearingUTITag(KPTagName *type) const
{
    Tags wanted = explicitFileUTITags();
    if (wanted.removeAll(type) > 0)
        return searchStateWithNewUTIs(wanted);
    Tags excluded = explicitFileUTITagsToExclude();
    excluded.removeAll(type);
    return searchStateWithNewExcludeUTIs(excluded);
}

// --- Date and rating

Ptr KPSearchState::searchStateWithNewDateString(const QString &dateKey) const
{
    Dictionary changed = m_dictionary;
    setText(changed, dateSearch, dateKey);
    changed.remove(dateSearchAlso);
    // A range in days was the old date.
    changed.remove(relativeStart);
    changed.remove(relativeEnd);
    return stateOf(changed);
}

Ptr KPSearchState::searchStateWithNewRating(const QString &condition) const
{
    Dictionary changed = m_dictionary;
    setText(changed, ratingSearch, condition);
    changed.remove(ratingSearchAlso);
    return stateOf(changed);
}
