#include "XPRecentItems.h"

#include "MDQuery.h"
#include "XPFolders.h"
#include "XPItemPaths.h"
#include "XPLog.h"
#include "XPPath.h"

// Of one folder. Paths that enter the pool stay.
static constexpr size_t mostVisited = 5000;

XPRecentItems::XPRecentItems(IndexSource &source) : m_source(source)
{
    heatUpTheMDItemCache();
    auto query = MDQuery::create(source, QStringLiteral("(kMDItemLastUsedDate > $time.now)"));
    if (!query) {
        qCWarning(xpLog, "MDQuery for recently opened files failed to start in Murn.");
        return;
    }
    m_query = *std::move(query);
    QObject::connect(
        m_query.get(), &MDQuery::updated, m_query.get(), [this](const QList<IndexItem> &added) {
            const IndexCatalog &catalog = m_source.catalog();
            const IndexCatalog::Reading reading(catalog);
            for (const IndexItem item : added) {
                const IndexSlot slot = catalog.slotOf(item);
                if (slot != IndexCatalog::noSlot)
                    XPItemPaths::setIfNone(
                        m_source, item, KPPool::pooledString(XPPath::decode(catalog.path(slot))));
            }
        });
    m_query->execute(MDQuery::WantsUpdates);
}

XPRecentItems::~XPRecentItems() = default;

void XPRecentItems::heatUpTheMDItemCache()
{
    qCDebug(xpLog, "started heatUpTheMDItemCache");
    const IndexCatalog &catalog = m_source.catalog();
    for (const QString &folder : {XPFolders::desktop(), XPFolders::downloads(), XPFolders::videos(),
                                  XPFolders::documents(), XPFolders::pictures()}) {
        const QByteArray path = XPPath::encode(folder);
        const IndexCatalog::Reading reading(catalog);
        std::vector<IndexItem> items = catalog.children(catalog.itemAtPath(path));
        items.resize(std::min(items.size(), mostVisited));
        for (const IndexItem item : items) {
            const QByteArray file = catalog.path(catalog.slotOf(item));
            XPItemPaths::setIfNone(m_source, item, KPPool::pooledString(XPPath::decode(file)));
        }
    }
}
