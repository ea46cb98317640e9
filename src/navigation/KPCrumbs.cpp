#include "KPCrumbs.h"

#include "KPFileTypeRegistry.h"
#include "KPLibraryItems.h"
#include "KPLocationItem.h"
#include "KPSearchStateKeys.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <algorithm>
#include <cmath>

using Kind = KPCrumb::Kind;
using namespace KPSearchStateKey;

// Whether everything that the part asks for is asked for by the whole as well.
static bool contains(const KPSearchState &whole, const KPSearchState &part)
{
    const KPSearchState::SavedDictionary all = whole.searchStateDictionary();
    const KPSearchState::SavedDictionary some = part.searchStateDictionary();
    for (auto entry = some.cbegin(); entry != some.cend(); ++entry) {
        const PropertyValue &other = all.value(entry.key());
        if (entry.key() == withTags) {
            const QStringList tags = entry->strings();
            if (!std::all_of(tags.begin(), tags.end(),
                             [&](const QString &tag) { return whole.hasSearchTag(tag); }))
                return false;
        } else if (other != *entry) {
            return false;
        }
    }
    return true;
}

KPCrumbs::KPCrumbs(const KPSearchState::Ptr &state, const KPNavigator::SourceItem &sourceItem,
                   const KPNavigator::LocationItem &locationItem)
    : m_state(state ? state : KPSearchState::blankSearchState())
{
    if (sourceItem) {
        const KPSearchState::Ptr own = sourceItem->searchState();
        if (own && contains(*m_state, *own))
            m_source = own;
    }
    addSource(m_source ? sourceItem : nullptr);
    addFolders(locationItem);
    addModes();
    addTags();
    addTypes();
    addConditions();
    addWords();
}

bool KPCrumbs::isOfSource(const QString &key) const
{
    return m_source && m_source->nativeDictionary().contains(key);
}

KPSearchState::Ptr KPCrumbs::without(const QStringList &keys) const
{
    KPSearchState::NativeDictionary changed = m_state->nativeDictionary();
    for (const QString &key : keys)
        changed.remove(key);
    return KPSearchState::searchStateWithNativeDictionary(changed);
}

// --- Where

void KPCrumbs::addSource(const KPNavigator::SourceItem &item)
{
    KPCrumb crumb;
    if (item)
        crumb.text = item->displayName();
    else if (m_state->isFileListSearch() || !m_state->isShowingManagedDocuments())
        crumb.text = qtTrId("KPSourceMenuAllFileTypesTitle");
    else
        crumb.text = qtTrId("KPAllDocumentsItemsSourceListItem");
    crumb.spoken = crumb.text;
    crumb.symbol = QStringLiteral("documents");
    add(crumb);
}

void KPCrumbs::addFolders(const KPNavigator::LocationItem &item)
{
    const QStringList folders = m_state->strings(constraintFolders);
    // The state's own folders hold; the item knows a name for them.
    const auto location = item && (folders.isEmpty() || item->folders() == folders)
                              ? item
                              : std::make_shared<KPLocationItem>(folders);
    KPCrumb crumb{Kind::Location};
    crumb.text =
        folders.isEmpty() && !item ? qtTrId("KPPlacesEverywhere") : location->displayName();
    crumb.spoken = qtTrId("KPCrumbIn").arg(crumb.text);
    crumb.symbol = location->itemImage();
    if (location->singleFolder()) {
        crumb.value = *location->singleFolder();
        crumb.negated = without({constraintFolders})
                            ->searchStateWithNewExcludeFolders(m_state->excludeFolders()
                                                               << location->folders().first());
    }
    add(crumb);

    for (const QString &folder : m_state->postConstraintFolders()) {
        QStringList others = m_state->postConstraintFolders();
        others.removeAll(folder);
        const QString name = KPLocationItem({folder}).displayName();
        add({Kind::PostFolders,
             name,
             qtTrId("KPCrumbIn").arg(name),
             folder,
             {},
             m_state->searchStateWithNewPostContstraintFolders(others)});
    }
    for (const QString &folder : m_state->excludeFolders()) {
        QStringList others = m_state->excludeFolders();
        others.removeAll(folder);
        const QString name = KPLocationItem({folder}).displayName();
        const KPSearchState::Ptr rest = m_state->searchStateWithNewExcludeFolders(others);
        add({Kind::NoFolder,
             name,
             qtTrId("KPCrumbWithout").arg(name),
             folder,
             {},
             rest,
             rest->searchStateWithNewContstraintFolders({folder})});
    }
}

// --- Modes

void KPCrumbs::addModes()
{
    const auto addMode = [this](Kind kind, const QString &text, const KPSearchState::Ptr &rest,
                                const KPSearchState::Ptr &negated = nullptr) {
        add({kind, text, text, {}, {}, rest, negated});
    };
    if (m_state->isFinderListing() && !isOfSource(finderListingMode)) {
        const bool deep = m_state->isDeep();
        addMode(Kind::Listing, deep ? qtTrId("KPCrumbListingDeep") : qtTrId("KPCrumbListing"),
                m_state->searchStateWithNewFinderListing(false, false)
                    ->searchStateWithDeepAndBundleRemoved());
    }
    if (m_state->isShowBundleContents())
        addMode(Kind::Packages, qtTrId("KPCrumbPackages"),
                m_state->searchStateWithNewShowBundleContents(false));
    if (m_state->alwaysShowSystemFiles())
        addMode(Kind::SystemFiles, qtTrId("KPCrumbSystemFiles"),
                without({alwaysSearchSystemFiles}));
    if (m_state->isFileListSearch() && !isOfSource(fileList))
        addMode(Kind::FileList,
                qtTrId("KPCrumbFileList", static_cast<int>(m_state->fileListSearch().size())),
                m_state->searchStateWithNewFileList({}));
    if (m_state->isShowingTaggedDocuments() && !isOfSource(showTaggedDocuments))
        addMode(Kind::Tagged, qtTrId("KPLibraryTaggedFolder"),
                m_state->searchStateWithNewTaggedFiles(false),
                m_state->searchStateWithNewUntaggedFiles(true));
    if (m_state->isShowingUntaggedDocuments() && !isOfSource(documentsWithNoTagsOnly))
        addMode(Kind::Untagged, qtTrId("KPLibraryUntaggedFolder"),
                m_state->searchStateWithNewUntaggedFiles(false),
                m_state->searchStateWithNewTaggedFiles(true));
}

// --- Tags

void KPCrumbs::addTags()
{
    for (const QString &tag : m_state->searchTags()) {
        if (m_source && m_source->hasSearchTag(tag))
            continue;
        const KPSearchState::Ptr rest = m_state->searchStateByClearingTag(tag);
        const QString name = XPPath::printable(tag);
        add({Kind::Tag,
             name,
             qtTrId("KPCrumbTagged").arg(name),
             tag,
             {},
             rest,
             rest->searchStateByAddingExcludeTag(tag)});
    }
    for (const QString &tag : m_state->excludeTags()) {
        QStringList others = m_state->excludeTags();
        others.removeIf(
            [&](const QString &each) { return each.compare(tag, Qt::CaseInsensitive) == 0; });
        const KPSearchState::Ptr rest = m_state->searchStateWithNewExcludeTags(others);
        const QString name = XPPath::printable(tag);
        add({Kind::NoTag,
             name,
             qtTrId("KPCrumbWithout").arg(name),
             tag,
             {},
             rest,
             rest->searchStateByAddingTag(tag)});
    }
}

// --- Types

// The name of the group that has exactly these types, else the types'.
static QString nameOfTypes(const KPSearchState::Tags &types)
{
    const QStringList identifiers = KPTagName::arrayForSavingUTITags(types);
    const QSet<QString> wanted(identifiers.begin(), identifiers.end());
    for (const auto &group : KPFileTypeRegistry::instance().fileTypeGroupsArray()) {
        const QStringList own = group->utiArray();
        if (!own.isEmpty() && QSet<QString>(own.begin(), own.end()) == wanted)
            return group->displayName();
    }
    return KPSearchState::searchStateWithNativeDictionary({})
        ->searchStateWithNewUTIs(types)
        ->fileTypesHumanReadableString();
}

void KPCrumbs::addTypes()
{
    const KPSearchState::Tags wanted = m_state->explicitFileUTITags();
    const KPSearchState::Tags excluded = m_state->explicitFileUTITagsToExclude();
    if (m_state->utiIsInconsistent()) {
        const QString text = qtTrId("KPCrumbNothing");
        add({Kind::Types, text, text, {}, {}, m_state->searchStateWithNewUTIs({})});
    } else if (!wanted.isEmpty() && !isOfSource(fileUTIs)) {
        const QString name = nameOfTypes(wanted);
        const KPSearchState::Ptr rest = m_state->searchStateWithNewUTIs({});
        add({Kind::Types,
             name,
             name,
             {},
             {},
             rest,
             rest->searchStateWithNewExcludeUTIs(
                 KPTagName::removeDuplicates(KPSearchState::Tags(excluded) + wanted))});
    }
    if (!excluded.isEmpty()) {
        const QString name = nameOfTypes(excluded);
        const KPSearchState::Ptr rest = m_state->searchStateWithNewExcludeUTIs({});
        add({Kind::NoTypes,
             name,
             qtTrId("KPCrumbWithout").arg(name),
             {},
             {},
             rest,
             rest->searchStateWithNewUTIs(
                 KPTagName::removeDuplicates(KPSearchState::Tags(wanted) + excluded))});
    }
}

// --- Dates and ratings

QString KPCrumbs::textOfDates(const KPSearchState &state)
{
    QStringList texts;
    for (const QString &key : state.dateKeys())
        texts.append(KPSearchState::prettyDateStringFromDateString(key));
    return texts.join(QStringLiteral(", "));
}

// Named ranges first: "Last 7 days" rather than the same in numbers.
static QString keyOfRange(const KPSearchDates::Range &range)
{
    for (const QString &key : KPSearchDates::allKeys()) {
        if (KPSearchDates::rangeOf(key) == range)
            return key;
    }
    return KPSearchDates::keyOf(range);
}

QString KPCrumbs::oppositeDate(const QString &dateKey)
{
    constexpr double forEver = 100 * 365.25; // as far back as "older" reaches
    const KPSearchDates::Range range = KPSearchDates::rangeOf(dateKey);
    if (range.start && !range.end)
        return keyOfRange({forEver, range.start});
    if (range.start && range.end && *range.start >= forEver - 366)
        return keyOfRange({range.end, {}});
    return {};
}

QString KPCrumbs::oppositeRating(const QString &condition)
{
    const auto bounds = KPStarCondition::bounds(condition);
    const auto isWhole = [](double stars) { return stars == std::floor(stars); };
    if (!bounds || !isWhole(bounds->lower) || !isWhole(bounds->upper))
        return {}; // between whole stars there are ratings that neither would pass
    if (bounds->upper == KPStarCondition::noUpperBound)
        return bounds->lower <= 1 ? QStringLiteral("!= *")
                                  : QStringLiteral("<= %1").arg(bounds->lower - 1);
    const double next = bounds->upper + 1;
    return next > 5 ? QString() : QStringLiteral(">= %1").arg(next);
}

KPSearchState::Ptr KPCrumbs::withDates(double start, std::optional<double> end) const
{
    return without({dateSearchAlso, relativeStart, relativeEnd})
        ->searchStateWithNewDateString(keyOfRange({start, end}));
}

void KPCrumbs::addConditions()
{
    if (m_state->searchHasDateRange() && !isOfSource(dateSearch)) {
        const QString text = textOfDates(*m_state);
        const KPSearchState::Ptr rest =
            without({dateSearch, dateSearchAlso, relativeStart, relativeEnd});
        const QStringList keys = m_state->dateKeys();
        const QString opposite = keys.size() == 1 ? oppositeDate(keys.first()) : QString();
        add({Kind::Date,
             text,
             text,
             keys.value(0),
             {},
             rest,
             opposite.isEmpty() ? nullptr : rest->searchStateWithNewDateString(opposite)});
    }
    const QStringList ratings = m_state->ratingConditions();
    if (!ratings.isEmpty()) {
        QStringList texts;
        for (const QString &condition : ratings)
            texts.append(KPSearchState::prettyRatingsStringFromRatingString(condition));
        const QString text = texts.join(QStringLiteral(", "));
        const KPSearchState::Ptr rest = without({ratingSearch, ratingSearchAlso});
        const QString opposite = ratings.size() == 1 ? oppositeRating(ratings.first()) : QString();
        add({Kind::Rating,
             text,
             text,
             ratings.first(),
             {},
             rest,
             opposite.isEmpty() ? nullptr : rest->searchStateWithNewRating(opposite)});
    }
}

// --- Words

QString KPCrumbs::writtenWord(const QString &word)
{
    if (!word.contains(u' '))
        return word;
    const qsizetype colon = word.indexOf(u':');
    const bool hasPrefix = colon > 0 && colon < word.indexOf(u' ');
    return hasPrefix ? word.first(colon + 1) + u' ' + u'"' + word.mid(colon + 1) + u'"'
                     : u'"' + word + u'"';
}

// The opposite of a word alone; empty: there is none.
static QString oppositeWord(const QString &word, const KPSearchState &state)
{
    constexpr qsizetype shortestNegated = 3; // with its sign
    const bool isListed = state.isFinderListing() || state.isFileListSearch();
    const bool isPrefixed = word.startsWith(QStringLiteral("tag:")) ||
                            word.startsWith(QStringLiteral("rating:")) ||
                            word.startsWith(QStringLiteral("name:"));
    if (isListed || isPrefixed || word.contains(u' '))
        return {};
    if (word.size() >= shortestNegated && (word.startsWith(u'-') || word.startsWith(u'!')))
        return word.mid(1);
    return word.size() + 1 >= shortestNegated ? u'-' + word : QString();
}

void KPCrumbs::addWords()
{
    const QString text = m_state->searchString();
    if (text.isEmpty())
        return;
    const auto withText = [this](const QString &changed) {
        return m_state->searchStateWithNewSearchString(changed, m_state->searchContents(),
                                                       m_state->searchMetaData(),
                                                       m_state->searchFileNames());
    };
    // What is not a list of words is one criterion.
    const bool isRaw = text.startsWith(QStringLiteral("mdq:"));
    const QStringList words = isRaw ? QStringList{text} : m_state->delimitedSearchStrings();
    for (qsizetype place = 0; place < words.size(); ++place) {
        const QString &word = words[place];
        const auto joined = [&](const QString &replacement) {
            QStringList all;
            for (qsizetype each = 0; each < words.size(); ++each)
                all.append(each == place ? replacement : writtenWord(words[each]));
            all.removeAll(QString());
            return withText(all.join(u' '));
        };
        const QString opposite = isRaw ? QString() : oppositeWord(word, *m_state);
        const QString name = u'\u201c' + XPPath::printable(word) + u'\u201d';
        add({Kind::Words,
             name,
             name,
             word,
             {},
             joined({}),
             opposite.isEmpty() ? nullptr : joined(opposite)});
    }
    if (words.isEmpty()) // quotes alone, say: nothing is found, and why is to be seen
        add({Kind::Words,
             XPPath::printable(text),
             XPPath::printable(text),
             text,
             {},
             withText({})});
}

// --- In words

QString KPCrumbs::sentence() const
{
    QStringList parts;
    for (const KPCrumb &crumb : m_crumbs)
        parts.append(crumb.spoken);
    return parts.join(QStringLiteral(", "));
}

QString KPCrumbs::sentenceOf(const KPSearchState::Ptr &state)
{
    const KPCrumbs crumbs(state);
    QStringList parts;
    for (const KPCrumb &crumb : crumbs.crumbs()) {
        const bool isPlain =
            crumb.kind == Kind::Source ||
            (crumb.kind == Kind::Location && crumbs.state()->strings(constraintFolders).isEmpty());
        if (!isPlain)
            parts.append(crumb.spoken);
    }
    return parts.isEmpty() ? crumbs.crumbs().first().text : parts.join(QStringLiteral(", "));
}
