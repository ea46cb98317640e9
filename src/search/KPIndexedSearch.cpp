#include "KPIndexedSearch.h"

#include "KPIndexCoverage.h"
#include "Karvex.h"
#include "XPPath.h"

#include <cmath>

KPIndexedSearch::KPIndexedSearch(IndexSource &source, const Query &query, Deliver deliver)
    : m_source(source), m_request(query), m_deliver(std::move(deliver))
{
}

KPIndexedSearch::~KPIndexedSearch() = default;

void KPIndexedSearch::start()
{
    if (m_request.state)
        m_state = std::make_unique<KPIndexedState>(m_request.state);
    if (m_state && m_state->findsNothing())
        return end({});
    m_folders = m_state ? m_state->scope().folders : m_request.folders;
    if (m_state && m_folders.isEmpty() && !m_state->scope().everywhere)
        return end(placesNotCovered());
    auto query = MDQuery::create(m_source, m_state ? m_state->text() : m_request.text);
    if (!query)
        return end({QStringLiteral("this search cannot be asked: ") + query.error().message});
    m_query = *std::move(query);
    m_query->setSearchScope(m_folders);
    connect(m_query.get(), &MDQuery::progress, this, &KPIndexedSearch::takeResults);
    connect(m_query.get(), &MDQuery::finished, this, &KPIndexedSearch::finish);
    connect(m_query.get(), &MDQuery::updated, this, &KPIndexedSearch::takeChanges);
    m_query->execute(m_request.live ? MDQuery::Options(MDQuery::WantsUpdates) : MDQuery::Options());
}

// With nothing found.
void KPIndexedSearch::end(const QStringList &problems)
{
    m_reports.finished(problems);
    m_deliver(m_reports.take());
}

// Folders may come to be indexed, or cease to be, while the search lives.
void KPIndexedSearch::learnRoots()
{
    if (!m_state || !m_state->scope().everywhere)
        return;
    const IndexCatalog &catalog = m_source.catalog();
    const IndexCatalog::Reading reading(catalog);
    if (m_roots == catalog.roots())
        return;
    m_roots = catalog.roots();
    QStringList paths;
    for (const IndexItem root : m_roots)
        paths.append(XPPath::decode(catalog.path(catalog.slotOf(root))));
    m_state->setRoots(paths);
}

void KPIndexedSearch::takeResults()
{
    learnRoots();
    for (; m_taken < m_query->resultCount(); ++m_taken) {
        const IndexItem item = m_query->itemAt(m_taken);
        if (const auto found = document(item, m_state.get()))
            show(item, *found);
    }
    m_deliver(m_reports.take());
}

void KPIndexedSearch::finish()
{
    takeResults();
    m_reports.finished(placesNotCovered() + unreadableDocuments());
    m_deliver(m_reports.take());
}

void KPIndexedSearch::takeChanges(const QList<IndexItem> &added, const QList<IndexItem> &changed,
                                  const QList<IndexItem> &removed)
{
    learnRoots();
    for (const IndexItem item : removed)
        hide(item);
    // All that leaves its place goes before anything takes one: two may have changed places.
    std::vector<std::pair<IndexItem, KPFoundDocument>> present;
    for (const IndexItem item : added + changed) {
        const auto found = document(item, m_state.get());
        if (!found) {
            hide(item);
            continue;
        }
        if (const auto shown = m_shown.constFind(item);
            shown != m_shown.cend() && shown->path != found->path)
            hide(item);
        present.emplace_back(item, *found);
    }
    for (const auto &[item, found] : present)
        show(item, found);
    m_deliver(m_reports.take());
}

// --- What was reported

static size_t factsOf(const KPFoundDocument &document)
{
    const XPFileInfo &info = document.info;
    return qHashMulti(0, info.mode, info.size, info.modified, info.changed, info.device, info.inode,
                      info.links, document.tags, document.rating, document.error);
}

void KPIndexedSearch::show(IndexItem item, const KPFoundDocument &document)
{
    if (const IndexItem other = m_itemAt.value(document.path); other && other != item)
        hide(other);
    const size_t facts = factsOf(document);
    const auto shown = m_shown.find(item);
    if (shown == m_shown.end()) {
        m_shown.insert(item, {document.path, facts});
        m_itemAt.insert(document.path, item);
        m_reports.document(KPResultReport::Kind::Added, document);
    } else if (shown->facts != facts) {
        shown->facts = facts;
        m_reports.document(KPResultReport::Kind::Changed, document);
    }
}

void KPIndexedSearch::hide(IndexItem item)
{
    const auto shown = m_shown.constFind(item);
    if (shown == m_shown.cend())
        return;
    m_reports.removed(shown->path);
    m_itemAt.remove(shown->path);
    m_shown.erase(shown);
}

// --- Documents

static KPFoundDocument foundDocument(const QString &path, const IndexRecord &record)
{
    KPFoundDocument document;
    document.path = path;
    document.info = record.info;
    const PropertyValue tags = record.attributes.value(Karvex::tagsToSearchFor());
    document.hasUnreadableTags = !tags.isNull() && !tags.isArrayOfStrings();
    if (document.hasUnreadableTags)
        document.error = qtTrId("KPTagsNotReadable");
    else
        document.tags = tags.strings();
    const PropertyValue rating = record.attributes.value(Karvex::starRatingKey);
    const double stars = rating.isNull() ? 0 : rating.doubleValue(std::nan(""));
    if (std::isfinite(stars))
        document.rating = stars;
    else if (document.error.isEmpty())
        document.error = qtTrId("KPRatingNotReadable");
    return document;
}

std::optional<KPFoundDocument> KPIndexedSearch::document(IndexItem item,
                                                         const KPIndexedState *state) const
{
    KPFoundDocument document;
    {
        const IndexCatalog &catalog = m_source.catalog();
        const IndexCatalog::Reading reading(catalog);
        const IndexSlot slot = catalog.slotOf(item);
        if (slot == IndexCatalog::noSlot)
            return {};
        const QString path = XPPath::decode(catalog.path(slot));
        if (state && !state->mayHold(path))
            return {};
        document = foundDocument(path, catalog.record(slot));
    }
    // With no lock held: the state's tests may look at the file.
    return !state || state->holds(document) ? std::optional(document) : std::nullopt;
}

QStringList KPIndexedSearch::placesNotCovered() const
{
    QStringList paths = m_state ? m_request.state->fileListSearch() : QStringList();
    if (paths.isEmpty())
        paths = m_state ? m_folders + m_state->scope().uncovered : m_folders;
    QStringList problems;
    for (const QString &path : paths) {
        if (const QString problem = KPIndexCoverage::problem(m_source, path); !problem.isEmpty())
            problems.append(problem);
    }
    // Entries that stand for no folder at all.
    if (problems.isEmpty() && m_state && m_folders.isEmpty() && !m_state->scope().everywhere)
        problems.append(qtTrId("KPIndexSearchWithoutFolder"));
    return problems;
}

QStringList KPIndexedSearch::unreadableDocuments() const
{
    const auto unreadable = m_state ? m_state->unreadable() : nullptr;
    if (!unreadable)
        return {};
    const auto query = MDQuery::create(m_source, unreadable->text());
    if (!query)
        return {};
    (*query)->setSearchScope(m_folders);
    (*query)->execute(MDQuery::Synchronous);
    QStringList problems;
    for (qsizetype i = 0; i < (*query)->resultCount(); ++i) {
        const IndexItem item = (*query)->itemAt(i);
        const auto found = document(item, unreadable.get());
        if (found && !m_shown.contains(item))
            problems.append(found->path + QStringLiteral(": ") + found->error);
    }
    return problems;
}
