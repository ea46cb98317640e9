#pragma once

#include "IndexKeeper.h"

#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

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

inline std::unique_ptr<IndexKeeper> keep(const QString &store, const QStringList &roots)
{
    auto keeper = IndexKeeper::start(store, roots, IndexRules(IndexRules::defaultRules()));
    if (!keeper) {
        std::fprintf(stderr, "no index: %s\n", qPrintable(keeper.error().message));
        std::abort();
    }
    return *std::move(keeper);
}

} // namespace XPBench
