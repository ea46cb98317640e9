#pragma once

#include "IndexCatalog.h"
#include "IndexSource.h"
#include "KPDocCache.h"
#include "KPResultSet.h"
#include "KPSearcher.h"
#include "KPSortedResults.h"

#include <sys/stat.h>

// An index of nothing.
class EmptySource : public IndexSource
{
public:
    const IndexCatalog &catalog() const override { return m_catalog; }
    const IndexText *text() const override { return nullptr; }
    int addListener(Listener) override { return 1; }
    void removeListener(int) override {}
    void reimport(const QByteArray &) override {}
    bool waitUntilLoaded(const std::function<bool()> &) const override { return true; }

private:
    IndexCatalog m_catalog;
};

// A record with what a file or the index would say of it.
inline KPDoc *shownDoc(const QString &path, const QStringList &tags = {}, double rating = 0,
                       qint64 size = 1)
{
    KPDocMetaData::holdFilledValues();
    XPFileInfo info;
    info.mode = S_IFREG | 0644;
    info.size = size;
    info.modified = 1'700'000'000'000'000'000;
    const KPPooledString pooled = KPPool::pooledString(path);
    KPDoc *doc = KPDocCache::docAtPath(pooled, &info);
    KPDocMetaData::fill(KPDocMetaData::UserTags, pooled, PropertyValue(tags),
                        KPDocMetaData::Known::Replaced);
    KPDocMetaData::fill(KPDocMetaData::Rating, pooled, PropertyValue::real(rating),
                        KPDocMetaData::Known::Replaced);
    return doc;
}

// A searcher whose results are what a test says; the deliveries are made as its thread makes them.
class ShownSearch
{
public:
    void add(KPDoc *doc) { m_set.add(doc, values(doc)); }
    void change(KPDoc *doc) { m_set.change(doc, values(doc)); }
    void remove(KPDoc *doc) { m_set.remove(doc); }
    void setOrder(const KPSortOrder &order)
    {
        m_set.setOrder(std::make_unique<KPSortedResults>(order));
    }
    // Another search, with none of the documents yet.
    void beginAnother()
    {
        m_set.clear();
        m_set.restart(m_shown);
    }
    void deliver()
    {
        auto delivery = std::make_shared<KPResultsDelivery>();
        m_set.fillDelivery(*delivery, {});
        m_shown = delivery->documents.docs;
        Q_EMIT searcher.delivered(delivery);
    }

    EmptySource source;
    KPSearcher searcher{source};

private:
    KPResultCounts::Values values(const KPDoc *doc)
    {
        KPResultCounts::Values values;
        values.userTags = doc->tagNamesOfTypeUserEntered();
        values.facts = ++m_facts; // each time another
        return values;
    }

    KPResultSet m_set;
    std::shared_ptr<const KPDocArray> m_shown = std::make_shared<const KPDocArray>();
    size_t m_facts = 0;
};
