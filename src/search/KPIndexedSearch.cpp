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
    auto query = MDQuery::create(m_source, m_request.text);
    if (!query) {
        m_reports.finished({query.error().message});
        m_deliver(m_reports.take());
        return;
    }
    m_query = *std::move(query);
    m_query->setSearchScope(m_request.folders);
    connect(m_query.get(), &MDQuery::progress, this, &KPIndexedSearch::takeResults);
    connect(m_query.get(), &MDQuery::finished, this, &KPIndexedSearch::finish);
    connect(m_query.get(), &MDQuery::updated, this, &KPIndexedSearch::takeChanges);
    m_query->execute(m_request.live ? MDQuery::Options(MDQuery::WantsUpdates) : MDQuery::Options());
}

void KPIndexedSearch::takeResults()
{
    for (; m_taken < m_query->resultCount(); ++m_taken) {
        const IndexItem item = m_query->itemAt(m_taken);
        if (const auto found = document(item); found && belongs(*found))
            show(item, *found);
    }
    m_deliver(m_reports.take());
}

void KPIndexedSearch::finish()
{
    takeResults();
    m_reports.finished(problems());
    m_deliver(m_reports.take());
}

void KPIndexedSearch::takeChanges(const QList<IndexItem> &added, const QList<IndexItem> &changed,
                                  const QList<IndexItem> &removed)
{
    for (const IndexItem item : removed)
        hide(item);
    // All that leaves its place goes before anything takes one: two may have changed places.
    std::vector<std::pair<IndexItem, KPFoundDocument>> present;
    for (const IndexItem item : added + changed) {
        const auto found = document(item);
        if (!found || !belongs(*found)) {
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

static QString unreadable(const char *what)
{
    return QStringLiteral("%1 cannot be read: the stored value is of an unexpected kind")
        .arg(QLatin1String(what));
}

std::optional<KPFoundDocument> KPIndexedSearch::document(IndexItem item) const
{
    const IndexCatalog &catalog = m_source.catalog();
    const IndexCatalog::Reading reading(catalog);
    const IndexSlot slot = catalog.slotOf(item);
    if (slot == IndexCatalog::noSlot)
        return {};
    const IndexRecord record = catalog.record(slot);
    KPFoundDocument document;
    document.path = XPPath::decode(catalog.path(slot));
    document.info = record.info;
    const PropertyValue tags = record.attributes.value(Karvex::tagsToSearchFor());
    if (tags.isNull() || tags.isArrayOfStrings())
        document.tags = tags.strings();
    else
        document.error = unreadable("tags");
    const PropertyValue rating = record.attributes.value(Karvex::starRatingKey);
    const double stars = rating.isNull() ? 0 : rating.doubleValue(std::nan(""));
    if (std::isfinite(stars))
        document.rating = stars;
    else if (document.error.isEmpty())
        document.error = unreadable("the rating");
    return document;
}

bool KPIndexedSearch::belongs(const KPFoundDocument &document) const
{
    if (!m_request.documentsOnly)
        return true;
    if (!document.info.isRegular())
        return false;
    // Hidden is what is hidden below the folder: somebody asked for that one by its name.
    return std::any_of(m_request.folders.begin(), m_request.folders.end(),
                       [&](const QString &folder) {
                           const QString start = folder.endsWith(u'/') ? folder : folder + u'/';
                           return document.path.startsWith(start) &&
                                  !QStringView(document.path).mid(start.size() - 1).contains(u"/.");
                       });
}

QStringList KPIndexedSearch::problems() const
{
    QStringList problems;
    for (const QString &folder : m_request.folders) {
        if (const QString problem = KPIndexCoverage::problem(m_source, folder); !problem.isEmpty())
            problems.append(problem);
    }
    if (m_request.unreadableText.isEmpty())
        return problems;
    const auto query = MDQuery::create(m_source, m_request.unreadableText);
    if (!query)
        return problems;
    (*query)->setSearchScope(m_request.folders);
    (*query)->execute(MDQuery::Synchronous);
    for (qsizetype i = 0; i < (*query)->resultCount(); ++i) {
        const IndexItem item = (*query)->itemAt(i);
        const auto found = document(item);
        if (found && belongs(*found) && !m_shown.contains(item))
            problems.append(found->path + QStringLiteral(": ") + found->error);
    }
    return problems;
}
