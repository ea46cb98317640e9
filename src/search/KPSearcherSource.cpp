#include "KPSearcherSource.h"

#include "KPDocCache.h"
#include "XPPath.h"

static constexpr qsizetype batchSize = 1000;

KPSearcherSource::KPSearcherSource(IndexSource &source, const KPThreadedSearcher::Setup &setup,
                                   QObject *parent)
    : KPResultSource(parent), m_source(source), m_searcher(source, setup)
{
    m_next.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, &KPSearcherSource::deliverNext);
    connect(&m_searcher, &KPSearcher::delivered, this, &KPSearcherSource::take);
}

KPSearcherSource::~KPSearcherSource() = default;

void KPSearcherSource::setSearchState(const KPSearchState::Ptr &state)
{
    m_reports.clear();
    append(Report::Kind::Reset, {});
    // The same state once more is searched afresh: the model begins anew.
    m_searcher.forceNewSearchNextTime();
    m_searcher.setSearchState(KPSearcher::allDocumentsOf(state), false);
}

void KPSearcherSource::stop()
{
    m_reports.clear();
    m_searcher.stop();
}

void KPSearcherSource::take(const KPResultsDelivery::Ptr &delivery)
{
    if (!delivery)
        return append(Report::Kind::Finished, {});
    const KPResultsDifference &difference = delivery->difference;
    QStringList removed, changed, added;
    for (const auto &told : difference.removed)
        removed.append(told.path.toString());
    for (const KPPooledString path : delivery->addedPaths)
        added.append(path.toString());
    for (size_t i = 0; i < difference.changed.size(); ++i) {
        const KPPooledString before = difference.changed[i].path;
        const KPPooledString now = delivery->changedPaths[i];
        if (now != before)
            removed.append(before.toString());
        (now != before ? added : changed).append(now.toString());
    }
    if (!removed.isEmpty())
        append(Report::Kind::Removed, removed);
    append(Report::Kind::Added, added);
    append(Report::Kind::Changed, changed);
    if (delivery->isDone)
        append(Report::Kind::Finished, delivery->problems);
}

void KPSearcherSource::append(Report::Kind kind, const QStringList &texts)
{
    if (kind != Report::Kind::Added && kind != Report::Kind::Changed) {
        m_reports.push_back({kind, texts});
    } else {
        for (qsizetype from = 0; from < texts.size(); from += batchSize)
            m_reports.push_back({kind, texts.mid(from, batchSize)});
    }
    if (!m_next.isActive())
        m_next.start(0);
}

void KPSearcherSource::deliverNext()
{
    if (m_reports.empty())
        return;
    const Report report = std::move(m_reports.front());
    m_reports.pop_front();
    if (!m_reports.empty())
        m_next.start(0);
    switch (report.kind) {
    case Report::Kind::Reset:
        Q_EMIT resultsReset();
        break;
    case Report::Kind::Added:
        Q_EMIT documentsAdded(found(report.texts));
        break;
    case Report::Kind::Changed:
        Q_EMIT documentsChanged(found(report.texts));
        break;
    case Report::Kind::Removed:
        Q_EMIT documentsRemoved(report.texts);
        break;
    case Report::Kind::Finished:
        Q_EMIT finished(report.texts);
        break;
    }
}

// With the values that the index has of them.
QList<KPFoundDocument> KPSearcherSource::found(const QStringList &paths) const
{
    QList<KPFoundDocument> documents;
    documents.reserve(paths.size());
    const IndexCatalog &catalog = m_source.catalog();
    const IndexCatalog::Reading reading(catalog);
    for (const QString &path : paths) {
        KPFoundDocument document;
        document.path = path;
        const IndexSlot slot = catalog.slotOf(catalog.itemAtPath(XPPath::encode(path)));
        if (slot != IndexCatalog::noSlot) {
            const KPDocValues values = KPDocValues::ofRow(catalog, slot);
            document.info = catalog.info(slot);
            document.tags = values.tags();
            document.rating = values.rating();
            document.error = values.problem();
        } else if (const KPDoc *doc = KPDocCache::docAtPathIfExists(path)) {
            document.info = doc->facts();
        }
        documents.append(document);
    }
    return documents;
}
