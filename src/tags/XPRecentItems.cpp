#include "XPRecentItems.h"

#include "IndexLook.h"
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
            const IndexLook look(m_source);
            for (const IndexItem item : added) {
                if (const auto row = look.at(item))
                    XPItemPaths::setIfNone(m_source, item,
                                           KPPool::pooledString(XPPath::decode(row->path())));
            }
        });
    m_query->execute(MDQuery::WantsUpdates);
}

XPRecentItems::~XPRecentItems() = default;

void XPRecentItems::heatUpTheMDItemCache()
{
    qCDebug(xpLog, "started heatUpTheMDItemCache");
    for (const QString &folder : {XPFolders::desktop(), XPFolders::downloads(), XPFolders::videos(),
                                  XPFolders::documents(), XPFolders::pictures()}) {
        const QByteArray path = XPPath::encode(folder);
        const IndexLook look(m_source);
        for (const IndexLook::Row &row : look.in(path, mostVisited))
            XPItemPaths::setIfNone(m_source, row.item(),
                                   KPPool::pooledString(XPPath::decode(row.path())));
    }
}
