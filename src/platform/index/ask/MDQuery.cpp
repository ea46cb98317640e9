#include "MDQuery.h"

#include "IndexEvaluator.h"
#include "IndexLook.h"
#include "IndexOrder.h"
#include "MDQueryParser.h"
#include "MDQueryScope.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <algorithm>

const QString MDQuery::scopeHome = QStringLiteral("kMDQueryScopeHome");
const QString MDQuery::scopeComputer = QStringLiteral("kMDQueryScopeComputer");
const QString MDQuery::scopeNetwork = QStringLiteral("kMDQueryScopeNetwork");

// Where the applying thread leaves the numbers of touched items. Shared with the listener, which
// may be called once more while the query is being destroyed.
struct MDQuery::Inbox
{
    XPMutex mutex;
    std::vector<IndexItem> touched XP_GUARDED_BY(mutex);
    MDQuery *query XP_GUARDED_BY(mutex) = nullptr; // null: gone
    bool woken XP_GUARDED_BY(mutex) = false;

    void add(const std::vector<IndexItem> &items)
    {
        const XPLocker lock(mutex);
        if (!query)
            return;
        touched.insert(touched.end(), items.begin(), items.end());
        if (!std::exchange(woken, true))
            Q_EMIT query->changesWaiting(QPrivateSignal());
    }
};

// The catalog's sets of rows stay out of the header.
struct MDQuery::Members
{
    Roaring set;
};

MDQuery::MDQuery(IndexSource &source, MDPredicatePtr predicate, const QStringList &valueList)
    : m_source(source), m_predicate(std::move(predicate)), m_valueList(valueList),
      m_scope(std::make_unique<MDQueryScope>(QStringList())),
      m_members(std::make_unique<Members>()), m_inbox(std::make_shared<Inbox>())
{
    connect(this, &MDQuery::changesWaiting, this, &MDQuery::takeChanges, Qt::QueuedConnection);
}

MDQuery::~MDQuery()
{
    stop();
}

XPResult<std::unique_ptr<MDQuery>> MDQuery::create(IndexSource &source, const QString &text,
                                                   const QStringList &valueList)
{
    auto predicate = MDQueryParser::parse(text);
    if (!predicate)
        return predicate.error();
    return std::unique_ptr<MDQuery>(new MDQuery(source, *std::move(predicate), valueList));
}

void MDQuery::setSearchScope(const QStringList &scope)
{
    m_scope = std::make_unique<MDQueryScope>(scope);
}

void MDQuery::execute(Options options)
{
    stop();
    m_live = options.testFlag(WantsUpdates);
    if (m_live) {
        // Listening begins before looking, so that no change falls between.
        {
            const XPLocker lock(m_inbox->mutex);
            m_inbox->query = this;
        }
        m_listener = m_source.addListener(
            [inbox = m_inbox](const std::vector<IndexItem> &touched) { inbox->add(touched); });
    }
    gather();
    if (options.testFlag(Synchronous)) {
        m_delivered = static_cast<qsizetype>(m_results.size());
        m_complete = true;
        return;
    }
    QMetaObject::invokeMethod(this, &MDQuery::deliver, Qt::QueuedConnection);
}

void MDQuery::stop()
{
    m_live = false;
    if (m_listener)
        m_source.removeListener(std::exchange(m_listener, 0));
    const XPLocker lock(m_inbox->mutex);
    m_inbox->query = nullptr;
    m_inbox->touched.clear();
    m_inbox->woken = false;
}

template <typename Slots>
static std::vector<IndexItem> itemsOf(const IndexCatalog &catalog, const Slots &slots,
                                      size_t most = 0)
{
    std::vector<IndexItem> items;
    for (const IndexSlot slot : slots) {
        items.push_back(catalog.itemAt(slot));
        if (items.size() == most)
            break;
    }
    return items;
}

void MDQuery::gather()
{
    m_results.clear();
    m_members->set = Roaring();
    m_delivered = 0;
    m_complete = false;
    const IndexCatalog &catalog = m_source.catalog();
    m_scope->resolve(m_source);
    // Of content alone no more need be asked for than is wanted; of what is found some may be gone.
    const bool limited = m_scope->isEverything() && m_sortAttribute.isEmpty();
    for (const qsizetype limit : {limited ? m_maxCount : 0, qsizetype{0}}) {
        const auto texts = IndexTextAnswers::ask(*m_predicate, m_source.text(), limit);
        const IndexCatalog::Reading reading(catalog);
        const RowSet rows =
            IndexEvaluator(catalog, &texts).rows(m_predicate, m_scope->rows(catalog));
        const auto *answer = texts.answerTo(*m_predicate);
        if (limit > 0 && answer && static_cast<qsizetype>(answer->size()) >= limit &&
            static_cast<qsizetype>(rows->cardinality()) < limit)
            continue;
        const auto most = static_cast<size_t>(std::max<qsizetype>(m_maxCount, 0));
        m_results =
            m_sortAttribute.isEmpty()
                ? itemsOf(catalog, *rows, most)
                : itemsOf(catalog,
                          IndexOrder(m_sortAttribute, m_sortAscending).first(catalog, *rows, most));
        m_members->set.addMany(m_results.size(), m_results.data());
        return;
    }
}

void MDQuery::deliver()
{
    if (m_complete)
        return;
    const int batch = m_delivered == 0 ? m_batching.firstMaxCount : m_batching.progressMaxCount;
    const auto all = static_cast<qsizetype>(m_results.size());
    m_delivered = std::min(all, m_delivered + std::max(1, batch));
    if (m_delivered == all) {
        m_complete = true;
        Q_EMIT finished();
        return;
    }
    // Asked for before the signal, as its receiver may destroy this query.
    QMetaObject::invokeMethod(this, &MDQuery::deliver, Qt::QueuedConnection);
    Q_EMIT progress();
}

void MDQuery::takeChanges()
{
    if (!m_live)
        return;
    if (!m_complete) {
        // The first results come first; the changes wait for them.
        Q_EMIT changesWaiting(QPrivateSignal());
        return;
    }
    std::vector<IndexItem> touched;
    {
        const XPLocker lock(m_inbox->mutex);
        touched.swap(m_inbox->touched);
    }
    QElapsedTimer timer;
    timer.start();
    const QPointer<MDQuery> self = this; // a receiver may destroy this query
    std::sort(touched.begin(), touched.end());
    touched.erase(std::unique(touched.begin(), touched.end()), touched.end());
    takeTouched(std::move(touched));
    if (!self)
        return;
    // A change after a rest is told of at once. While more come in, a tenth of the time goes to
    // them at the most.
    const qint64 rest = std::min<qint64>(timer.nsecsElapsed() / 100'000, m_batching.updateMaxMs);
    QTimer::singleShot(std::chrono::milliseconds(rest), Qt::PreciseTimer, this, [this] {
        {
            const XPLocker lock(m_inbox->mutex);
            m_inbox->woken = !m_inbox->touched.empty();
            if (!m_inbox->woken)
                return;
        }
        takeChanges();
    });
}

void MDQuery::takeTouched(std::vector<IndexItem> touched)
{
    QList<IndexItem> added;
    QList<IndexItem> changed;
    QList<IndexItem> removed;
    const IndexCatalog &catalog = m_source.catalog();
    const auto texts = IndexTextAnswers::ask(*m_predicate, m_source.text(), 0, &touched);
    m_scope->resolve(m_source);
    {
        const IndexCatalog::Reading reading(catalog);
        const std::vector<IndexItem> folders = m_scope->folders(catalog);
        std::vector<IndexSlot> slots;
        for (const IndexItem item : touched) {
            const IndexSlot slot = catalog.slotOf(item);
            if (slot != IndexCatalog::noSlot && m_scope->contains(catalog, slot, folders))
                slots.push_back(slot);
        }
        const RowSet matching =
            IndexEvaluator(catalog, &texts)
                .rows(m_predicate, std::make_shared<const Roaring>(slots.size(), slots.data()));
        for (const IndexItem item : touched) {
            const IndexSlot slot = catalog.slotOf(item);
            const bool matches = slot != IndexCatalog::noSlot && matching->contains(slot);
            const bool member = m_members->set.contains(item);
            if (matches && member)
                changed.append(item);
            else if (member)
                removed.append(item);
            else if (matches &&
                     (m_maxCount == 0 ||
                      static_cast<qsizetype>(m_results.size()) + added.size() < m_maxCount))
                added.append(item);
        }
    }
    if (!removed.isEmpty()) {
        for (const IndexItem item : removed)
            m_members->set.remove(item);
        std::erase_if(m_results, [&](IndexItem item) { return !m_members->set.contains(item); });
    }
    for (const IndexItem item : added) {
        m_members->set.add(item);
        m_results.push_back(item);
    }
    m_delivered = static_cast<qsizetype>(m_results.size());
    if (!added.isEmpty() || !changed.isEmpty() || !removed.isEmpty())
        Q_EMIT updated(added, changed, removed);
}

// --- Results

std::shared_ptr<MDItem> MDQuery::resultAt(qsizetype index) const
{
    return MDItem::withNumber(m_source, itemAt(index));
}

bool MDQuery::holds(IndexItem item) const
{
    return m_members->set.contains(item);
}

qsizetype MDQuery::indexOf(IndexItem item) const
{
    if (!holds(item))
        return -1;
    const auto found = std::find(m_results.begin(), m_results.begin() + m_delivered, item);
    return found - m_results.begin() < m_delivered ? found - m_results.begin() : -1;
}

PropertyValue MDQuery::valueAt(qsizetype index, const QString &attribute) const
{
    const IndexLook look(m_source);
    const auto row = look.at(itemAt(index));
    return row ? row->attribute(attribute) : PropertyValue();
}
