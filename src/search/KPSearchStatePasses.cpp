// KPSearchState: whether a document fulfils it. These run for every document of every search:
// nothing here allocates unless a document's own facts do.
#include "KPFileType.h"
#include "KPPredicateBuilder.h"
#include "KPSearchStateCaches.h"
#include "KPSearchStateKeys.h"
#include "KPStarCondition.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPText.h"

#include <algorithm>
#include <cmath>

bool KPSearchState::docPasses(const KPDoc &doc) const
{
    return docPassesSearchString(doc) && docPassesFileTypeTest(doc) &&
           docPassesContraintFolders(doc) && docPassesExcludeTags(doc) && docPassesTags(doc) &&
           docPassesFileList(doc) && docPassesDateRange(doc) &&
           docPassesHardCodedExcludePaths(doc) && docPassesRating(doc);
}

bool KPSearchState::docPassesMDQuery(const KPDoc &doc) const
{
    if (mdQuerysNeedtoCheckFileTypes() && !docPassesFileTypeTest(doc))
        return false;
    if (modes().needsFolderCheck && !docPassesContraintFolders(doc))
        return false;
    if (!modes().excludesHiddenOnly && !docPassesExcludeTags(doc))
        return false;
    if (!docPassesFileList(doc) || !docPassesHardCodedExcludePathsMDQuery(doc))
        return false;
    // Taken out of the library a moment ago, a document may still be in the index's answer. One
    // without a mark is there for its tags, its rating or its type, and stays.
    return KPDoc::numDocsRemovedFromLibrary() == 0 || !doc.isTakenOut();
}

// --- Text

const KPSearchState::Words &KPSearchState::words() const
{
    return m_caches->words.get([this] {
        Words words;
        const QString text = searchString();
        words.searchStringLC = lowerCase(decomposed(text));
        words.words = componentsSeparatedByBlanksAndQuotes(text);
        words.wordsLC = componentsSeparatedByBlanksAndQuotes(words.searchStringLC);
        return words;
    });
}

bool KPSearchState::docPassesSearchString(const KPDoc &doc) const
{
    if (!modes().hasSearchString)
        return true;
    const Words &text = words();
    if (modes().isShortSearchString)
        return doc.fsDisplayNameLC().startsWith(text.searchStringLC);
    const qsizetype count = std::min(text.words.size(), text.wordsLC.size());
    for (qsizetype i = 0; i < count; ++i) {
        if (!doc.searchForText(text.words[i], modes().searchesMetaData, text.wordsLC[i]))
            return false;
    }
    return count > 0;
}

// --- File types

static KPTagName *typeTag(const QString &identifier)
{
    return KPTagName::tagNameForUTITag(identifier, QString());
}

KPSearchState::FileTypes KPSearchState::setUpFileTypeFilters() const
{
    FileTypes types;
    const auto split = [](const Tags &given, Tags &tree, Tags &exact) {
        for (KPTagName *tag : given) {
            const QString identifier = tag->uti();
            if (identifier.startsWith(treePrefix))
                tree.append(typeTag(identifier.mid(treePrefix.size())));
            else
                exact.append(tag);
        }
        tree.removeAll(nullptr); // "tree_" alone
    };
    split(explicitFileUTITags(), types.tree, types.exact);
    split(explicitFileUTITagsToExclude(), types.treeExclude, types.exactExclude);
    types.mustCheck = !types.treeExclude.isEmpty() || !types.exactExclude.isEmpty();
    const auto addTree = [](const KPTagName *tag, std::vector<FileTypes::Tree> &trees) {
        trees.push_back({tag, tag->uti(), KPContentTypes::numberOf(tag->uti())});
    };
    for (const KPTagName *tag : types.tree)
        addTree(tag, types.wantedTrees);
    for (const KPTagName *tag : types.treeExclude)
        addTree(tag, types.excludedTrees);
    // Entries of other kinds ask what the query asks for them.
    for (const KPTagName *tag : types.exact) {
        const QString entry = tag->uti();
        if (entry.startsWith(extensionPrefix) && entry.size() > extensionPrefix.size())
            types.wantedExtensions.append(u'.' +
                                          lowerCase(decomposed(entry.mid(extensionPrefix.size()))));
        else if (entry.startsWith(kindPrefix) && entry.size() > kindPrefix.size())
            types.wantedKinds.append(entry.mid(kindPrefix.size()));
        else if (entry == u"public.image")
            addTree(tag, types.wantedTrees);
    }
    return types;
}

const KPSearchState::FileTypes &KPSearchState::fileTypes() const
{
    return m_caches->fileTypes.get([this] { return setUpFileTypeFilters(); });
}

const KPSearchState::Tags &KPSearchState::treedFileTypeNames() const
{
    return fileTypes().tree;
}

const KPSearchState::Tags &KPSearchState::equalToFileTypeNames() const
{
    return fileTypes().exact;
}

const KPSearchState::Tags &KPSearchState::treedFileTypeNamesExclude() const
{
    return fileTypes().treeExclude;
}

const KPSearchState::Tags &KPSearchState::equalToFileTypeNamesExclude() const
{
    return fileTypes().exactExclude;
}

bool KPSearchState::mdQuerysNeedtoCheckFileTypes() const
{
    return fileTypes().mustCheck;
}

template <typename Trees>
static bool isInTrees(const KPTagName *type, const Trees &trees)
{
    if (trees.empty() || type == nullptr)
        return false;
    const QString identifier = type->uti();
    const KPContentTypes::Number number = KPContentTypes::numberOf(identifier);
    return std::any_of(trees.begin(), trees.end(), [&](const auto &tree) {
        if (type == tree.tag)
            return true;
        return number != KPContentTypes::none && tree.number != KPContentTypes::none
                   ? KPContentTypes::conforms(number, tree.number)
                   : KPContentTypes::conformsTo(identifier, tree.identifier);
    });
}

bool KPSearchState::docPassesFileTypeTest(const KPDoc &doc) const
{
    const FileTypes &types = fileTypes();
    if (!types.mustCheck && types.exact.isEmpty() && types.tree.isEmpty())
        return true;
    KPTagName *type = doc.utiTagName();
    if (types.exactExclude.contains(type))
        return false;
    if (types.exact.contains(type))
        return true;
    if (isInTrees(type, types.excludedTrees))
        return false;
    if (isInTrees(type, types.wantedTrees))
        return true;
    if (!types.wantedExtensions.isEmpty()) {
        const QString name = doc.fsDisplayNameLC();
        for (const QString &extension : types.wantedExtensions) {
            if (name.endsWith(extension))
                return true;
        }
    }
    if (!types.wantedKinds.isEmpty() &&
        types.wantedKinds.contains(KPFileType::displayNameForUTI(doc.fileType())))
        return true;
    return types.tree.isEmpty() && types.exact.isEmpty();
}

// --- Folders

bool KPSearchState::docPassesContraintFolders(const KPDoc &doc) const
{
    if (modes().isFileList)
        return true;
    // The answer is that of the document's folder, and a walk brings those of one folder in a row:
    // the last folder's address is kept, with the answer in its lowest bit.
    const KPPooledString folder = doc.pooledParentPath();
    const auto address = reinterpret_cast<quintptr>(folder.data());
    const quintptr last = m_caches->lastFolder.load(std::memory_order_relaxed);
    if ((last & ~quintptr(1)) == address)
        return (last & 1) != 0;
    const QString anyFile =
        (folder.size() > 1 ? folder.toString() : QString()) + QStringLiteral("/x");
    const KPOptimizedFolders &wanted = optimizedConstraintFolders();
    const bool passes = (wanted.setsNoCondition() || wanted.holds(anyFile)) &&
                        !optimizedExcludeFolders().holds(anyFile);
    m_caches->lastFolder.store(address | (passes ? 1 : 0), std::memory_order_relaxed);
    return passes;
}

bool KPSearchState::docPassesFileList(const KPDoc &doc) const
{
    if (!modes().isFileList)
        return true;
    const QSet<KPPooledString> &files = m_caches->fileList.get([this] {
        QSet<KPPooledString> paths;
        for (const QString &path : fileListSearch())
            paths.insert(KPPool::pooledString(path));
        return paths;
    });
    return files.contains(doc.pooledPath());
}

bool KPSearchState::docPassesHardCodedExcludePaths(const KPDoc &doc) const
{
    return doc.passesExcludePaths();
}

bool KPSearchState::docPassesHardCodedExcludePathsMDQuery(const KPDoc &doc) const
{
    return modes().showsEverywhere ? doc.passesExcludePaths() : doc.passesMDQueryExcludePaths();
}

// --- Tags

// Or one that is below it: "tax/2024" is below "tax".
static bool isAmong(KPPooledString wanted, const KPTagName::Tags &tags)
{
    const auto isBelow = [&](KPPooledString tag) {
        return tag.size() > wanted.size() && tag.data()[wanted.size()] == u'/' &&
               std::equal(wanted.data(), wanted.data() + wanted.size(), tag.data());
    };
    return std::any_of(tags.begin(), tags.end(), [&](const KPTagName *tag) {
        const KPPooledString name = tag->pooledDisplayNameLC();
        return name == wanted || isBelow(name);
    });
}

bool KPSearchState::docPassesExcludeTags(const KPDoc &doc) const
{
    const KPTagName::PooledTags &excluded = excludeTagsPooledLC();
    if (excluded.isEmpty())
        return true;
    if (modes().excludesHiddenOnly)
        return !doc.hasUserEnteredTag(KPTagName::hiddenUserTag());
    const auto isOn = [&](const Tags &tags) {
        return !tags.isEmpty() &&
               std::any_of(excluded.begin(), excluded.end(),
                           [&](KPPooledString tag) { return isAmong(tag, tags); });
    };
    return !isOn(doc.tagNamesOfTypeUserEntered()) &&
           !(modes().readOnlyKeywords && isOn(doc.tagNamesOfTypeReadOnly()));
}

bool KPSearchState::docPassesTags(const KPDoc &doc) const
{
    const KPTagName::PooledTags &wanted = searchTagsLC();
    if (!wanted.isEmpty()) {
        const Tags own = doc.tagNamesOfTypeUserEntered();
        const Tags keywords = modes().readOnlyKeywords ? doc.tagNamesOfTypeReadOnly() : Tags();
        return std::all_of(wanted.begin(), wanted.end(), [&](KPPooledString tag) {
            return isAmong(tag, own) || isAmong(tag, keywords);
        });
    }
    if (modes().showsUntagged)
        return doc.tagNamesOfTypeUserEntered().isEmpty();
    if (modes().showsTagged)
        return !doc.tagNamesOfTypeUserEntered().isEmpty() ||
               (modes().readOnlyKeywords && !doc.tagNamesOfTypeReadOnly().isEmpty());
    return true;
}

// --- Date and rating

bool KPSearchState::docPassesDateRange(const KPDoc &doc) const
{
    const auto &window = m_caches->dateWindow.get([this]() -> std::optional<Caches::Window> {
        const KPSearchDates::Range days = getStart();
        if (!days.start)
            return {};
        const double now = static_cast<double>(KPSearchDates::now().toMSecsSinceEpoch()) / 1000;
        const auto seconds = [now](double daysBefore) {
            constexpr double secondsADay = 86400;
            constexpr double far = 1e15; // what an integer holds exactly, whatever was stored
            return static_cast<qint64>(
                std::clamp(std::floor(now - daysBefore * secondsADay), -far, far));
        };
        return Caches::Window{seconds(*days.start), seconds(days.end.value_or(0))};
    });
    if (!window)
        return true;
    constexpr qint64 nanosecondsASecond = 1'000'000'000;
    const qint64 modified = doc.unixModificationTime() / nanosecondsASecond;
    return modified > window->start && modified < window->end;
}

std::optional<KPStarCondition::Bounds> KPSearchState::ratingBounds() const
{
    return m_caches->ratingBounds.get([this] {
        const QStringList conditions = ratingConditions();
        for (const QString &condition : conditions) {
            if (!KPStarCondition::bounds(condition))
                qCWarning(xpLog, "unable to parse ratings string, %ls",
                          qUtf16Printable(XPPath::printable(condition)));
        }
        return KPStarCondition::commonBounds(conditions);
    });
}

bool KPSearchState::docPassesRating(const KPDoc &doc) const
{
    const auto bounds = ratingBounds();
    if (!bounds)
        return true;
    const double rating = doc.ratingFast();
    return bounds->lower <= rating && rating <= bounds->upper;
}

std::optional<double> KPSearchState::ratingThatPasses() const
{
    constexpr double unbounded = 100;
    const auto bounds = ratingBounds();
    if (!bounds)
        return {};
    return bounds->upper > unbounded ? bounds->lower : (bounds->lower + bounds->upper) / 2;
}
