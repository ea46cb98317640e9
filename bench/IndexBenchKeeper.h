#pragma once

#include "IndexSettings.h"
#include "IndexSetup.h"
#include "MetadataIndex.h"

#include <QTemporaryDir>

// An index for the length of a measurement, in a folder of its own on the disk at hand.
namespace XPBench {

class StoreFolder
{
public:
    StoreFolder() : m_folder(QStringLiteral("index-bench-XXXXXX")) {}
    QString store() const { return m_folder.filePath(QStringLiteral("index.sqlite")); }

private:
    QTemporaryDir m_folder;
};

// What stands in the store is loaded when this returns.
inline std::unique_ptr<MetadataIndex> keep(const QString &store, const QStringList &roots)
{
    IndexSetup setup;
    setup.path = store;
    setup.roots = roots;
    setup.rules = IndexSettings::defaultRules();
    auto index = MetadataIndex::open(setup);
    index->waitUntilLoaded();
    return index;
}

} // namespace XPBench
