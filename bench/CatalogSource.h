#pragma once

#include "IndexCatalog.h"
#include "IndexSource.h"

namespace XPBench {

// A catalog in memory that nothing changes, as an index. The catalog must outlive it.
class CatalogSource : public IndexSource
{
public:
    explicit CatalogSource(const IndexCatalog &catalog) : m_catalog(catalog) {}
    const IndexCatalog &catalog() const override { return m_catalog; }
    const IndexText *text() const override { return nullptr; }
    int addListener(Listener) override { return 1; }
    void removeListener(int) override {}
    void reimport(const QByteArray &) override {}
    bool waitUntilLoaded(const std::function<bool()> &) const override { return true; }

private:
    const IndexCatalog &m_catalog;
};

} // namespace XPBench
