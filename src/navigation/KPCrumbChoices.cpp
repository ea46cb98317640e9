// KPCrumbs: the menus of the steps.
#include "KPCrumbController.h"
#include "KPCrumbs.h"
#include "KPDateBasedItem.h"
#include "KPFileTypeItems.h"
#include "KPFileTypeRegistry.h"
#include "KPFilesAndFoldersItem.h"
#include "KPLibraryItems.h"
#include "KPSearchFolders.h"
#include "KPSearchStateKeys.h"
#include "KPSearcher.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <algorithm>

using Kind = KPCrumb::Kind;
using Choices = QList<KPCrumbChoice>;

static constexpr qsizetype mostTags = 20;

static KPCrumbChoice choice(const QString &text, const KPSearchState::Ptr &state,
                            const KPSearchState::Ptr &excluding = nullptr, bool isChecked = false)
{
    KPCrumbChoice made;
    made.text = text;
    made.state = state;
    made.excluding = excluding;
    made.isChecked = isChecked;
    return made;
}

// --- Source and location

static Choices sources(const KPCrumbController &controller)
{
    using Item = KPBaseItem::Ptr;
    const QList<QList<Item>> groups = {
        {controller.allDocumentsItem(), controller.taggedItem(), std::make_shared<KPUntaggedItem>(),
         std::make_shared<KPFlagItem>(), std::make_shared<KPManagedItem>()},
        {std::make_shared<KPStandardFileTypesItem>(), std::make_shared<KPAllFileTypesItem>()},
        {std::make_shared<KPFilesAndFoldersItem>(false),
         std::make_shared<KPFilesAndFoldersItem>(true)}};
    Choices choices;
    for (const auto &group : groups) {
        for (const Item &item : group) {
            KPCrumbChoice made = choice(item->displayName(), nullptr);
            made.source = item;
            made.beginsGroup = item == group.first() && !choices.isEmpty();
            // Items of one kind and identifier are told apart by what they search.
            const KPSearchState::Ptr own = controller.sourceItem()->searchState();
            made.isChecked = item->isEqual(*controller.sourceItem()) && own &&
                             own->isEqualToSearchState(*item->searchState());
            choices.append(made);
        }
    }
    return choices;
}

static void addLocation(Choices &choices, const KPNavigator::LocationItem &location,
                        const KPSearchState::Ptr &state, bool beginsGroup = false)
{
    KPCrumbChoice made = choice(location->displayName(), nullptr);
    made.location = location;
    made.beginsGroup = beginsGroup;
    made.isChecked = location->folders() == state->strings(KPSearchStateKey::constraintFolders);
    if (location->singleFolder())
        made.excluding = state->searchStateWithNewExcludeFolders(state->excludeFolders()
                                                                 << *location->singleFolder());
    choices.append(made);
}

static Choices locations(const KPCrumbController &controller, const KPSearchState::Ptr &state)
{
    Choices choices;
    addLocation(choices, KPLocationItem::everywhere(), state);
    addLocation(choices, KPLocationItem::searchFolders(), state);
    addLocation(choices, KPLocationItem::withFolder(KPSearchFolders::filedDocuments), state);
    addLocation(choices, KPLocationItem::withFolder(KPSearchFolders::homeFolder()), state);
    bool isFirst = true; // the folders above the present one
    for (auto above = controller.locationItem()->parentLocation(); above;
         above = above->parentLocation())
        addLocation(choices, above, state, std::exchange(isFirst, false));
    isFirst = true;
    for (const auto &recent : controller.recentLocations())
        addLocation(choices, recent, state, std::exchange(isFirst, false));
    return choices;
}

// --- Criteria

static Choices tags(const KPSearchState::Ptr &base, const KPSearcher &searcher, KPTagName *related)
{
    KPSearcher::TagSets sets = related ? searcher.relatedTags(related) : searcher.zenTagsSorted();
    if (!related)
        std::stable_sort(sets.begin(), sets.end(),
                         [](const auto &a, const auto &b) { return a.count > b.count; });
    Choices choices;
    for (const KPSearcher::TagSet &set : sets) {
        const QString name = set.tag->displayName();
        if (base->hasSearchTag(name) || base->hasExcludeTag(name))
            continue;
        if (choices.size() >= mostTags)
            break;
        choices.append(choice(XPPath::printable(name), base->searchStateByAddingTag(name),
                              base->searchStateByAddingExcludeTag(name)));
    }
    return choices;
}

static Choices types(const KPSearchState::Ptr &state)
{
    const KPSearchState::Tags wanted = state->explicitFileUTITags();
    const KPSearchState::Tags excluded = state->explicitFileUTITagsToExclude();
    Choices choices;
    for (const auto &group : KPFileTypeRegistry::instance().fileTypeGroupsArray()) {
        const auto own = KPTagName::arrayOfUTIsToKPTagNames(group->utiArray());
        if (own.isEmpty())
            continue;
        const bool isWanted = std::all_of(own.begin(), own.end(),
                                          [&](KPTagName *type) { return wanted.contains(type); });
        // A second kind is added to the first; what is wanted already is taken away.
        const auto with = KPTagName::removeDuplicates(KPSearchState::Tags(wanted) + own);
        const auto less = KPTagName::removeTags(wanted, own);
        const auto exclude = KPTagName::removeDuplicates(KPSearchState::Tags(excluded) + own);
        choices.append(choice(
            group->displayName(), state->searchStateWithNewUTIs(isWanted ? less : with),
            state->searchStateWithNewUTIs(less)->searchStateWithNewExcludeUTIs(exclude), isWanted));
    }
    return choices;
}

static Choices dates(const KPSearchState::Ptr &without, const QString &present)
{
    Choices choices;
    for (const QString &key : KPSearchDates::allKeys()) {
        if (key == KPSearchDates::anyDate)
            continue;
        const QString opposite = KPCrumbs::oppositeDate(key);
        choices.append(
            choice(KPSearchState::prettyDateStringFromDateString(key),
                   without->searchStateWithNewDateString(key),
                   opposite.isEmpty() ? nullptr : without->searchStateWithNewDateString(opposite),
                   key == present));
    }
    KPCrumbChoice own = choice(qtTrId("KPCrumbDateRange"), nullptr);
    own.asksForDates = true;
    own.beginsGroup = true;
    choices.append(own);
    return choices;
}

static Choices ratings(const KPSearchState::Ptr &without, const QString &present)
{
    QStringList conditions{QStringLiteral("!= *")};
    for (const QString &form : {QStringLiteral(">= %1"), QStringLiteral("<= %1")}) {
        for (int stars = 1; stars <= 5; ++stars)
            conditions.append(form.arg(stars));
    }
    conditions.removeAll(QStringLiteral("<= 5")); // every document
    Choices choices;
    for (const QString &condition : conditions) {
        const QString opposite = KPCrumbs::oppositeRating(condition);
        choices.append(choice(KPSearchState::prettyRatingsStringFromRatingString(condition),
                              without->searchStateWithNewRating(condition),
                              without->searchStateWithNewRating(opposite), condition == present));
        choices.last().beginsGroup = condition == QStringLiteral("<= 1");
    }
    return choices;
}

static Choices wherePlacesOfWords(const KPSearchState::Ptr &state)
{
    const auto looking = [&](const QString &text, bool contents, bool metaData) {
        return choice(
            text,
            state->searchStateWithNewSearchString(state->searchString(), contents, metaData, true),
            nullptr, state->searchContents() == contents && state->searchMetaData() == metaData);
    };
    return {looking(qtTrId("KPCrumbWordsNames"), false, false),
            looking(qtTrId("KPCrumbWordsContents"), true, false),
            looking(qtTrId("KPCrumbWordsDetails"), false, true),
            looking(qtTrId("KPCrumbWordsAll"), true, true)};
}

static Choices listings(const KPSearchState::Ptr &state)
{
    return {choice(qtTrId("KPCrumbListing"), state->searchStateWithNewFinderListing(true, false),
                   nullptr, !state->isDeep()),
            choice(qtTrId("KPCrumbListingDeep"), state->searchStateWithNewFinderListing(true, true),
                   nullptr, state->isDeep()),
            choice(qtTrId("KPCrumbPackages"),
                   state->searchStateWithNewShowBundleContents(!state->isShowBundleContents()),
                   nullptr, state->isShowBundleContents())};
}

// --- What belongs to which step

Choices KPCrumbs::choices(const KPCrumb &crumb, const KPCrumbController &controller) const
{
    const KPSearcher &searcher = controller.navigator().searcher();
    Choices choices;
    switch (crumb.kind) {
    case Kind::Source:
        return sources(controller);
    case Kind::Location:
        choices = locations(controller, m_state);
        break;
    case Kind::Tag:
    case Kind::NoTag:
        choices =
            tags(crumb.without, searcher, KPTagName::tagNameForExistingUserEnteredTag(crumb.value));
        break;
    case Kind::Types:
    case Kind::NoTypes:
        choices = types(m_state);
        break;
    case Kind::Date:
        choices = dates(crumb.without, crumb.value);
        break;
    case Kind::Rating:
        choices = ratings(crumb.without, crumb.value);
        break;
    case Kind::Words:
        if (!m_state->isFinderListing() && !m_state->isFileListSearch())
            choices = wherePlacesOfWords(m_state);
        break;
    case Kind::Listing:
    case Kind::Packages:
        choices = listings(m_state);
        break;
    case Kind::PostFolders:
    case Kind::NoFolder:
    case Kind::SystemFiles:
    case Kind::FileList:
    case Kind::Tagged:
    case Kind::Untagged:
        break;
    }
    return choices;
}

Choices KPCrumbs::additions(const KPCrumbController &controller) const
{
    const auto group = [](const QString &title, const Choices &below) {
        KPCrumbChoice made;
        made.title = title;
        made.below = below;
        return made;
    };
    Choices groups{
        group(qtTrId("KPCrumbAddTag"), tags(m_state, controller.navigator().searcher(), nullptr)),
        group(qtTrId("KPCrumbAddKind"), types(m_state)),
        group(qtTrId("KPCrumbAddDate"), dates(m_state, m_state->dateString())),
        group(qtTrId("KPCrumbAddRating"), ratings(m_state, m_state->ratingString()))};
    groups.removeIf([](const KPCrumbChoice &each) { return each.below.isEmpty(); });
    KPCrumbChoice tagged =
        choice(qtTrId("KPLibraryTaggedFolder"), m_state->searchStateWithNewTaggedFiles(true),
               m_state->searchStateWithNewUntaggedFiles(true), m_state->isShowingTaggedDocuments());
    tagged.beginsGroup = true;
    groups.append(tagged);
    groups.append(choice(
        qtTrId("KPLibraryUntaggedFolder"), m_state->searchStateWithNewUntaggedFiles(true),
        m_state->searchStateWithNewTaggedFiles(true), m_state->isShowingUntaggedDocuments()));
    if (m_state->isFinderListing()) {
        Choices listing = listings(m_state);
        listing.first().beginsGroup = true;
        groups += listing;
    }
    return groups;
}
