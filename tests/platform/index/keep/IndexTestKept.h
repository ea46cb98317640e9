#pragma once

#include "IndexSetup.h"
#include "MetadataIndex.h"
#include "TestTextImporter.h"

#include <QDeadlineTimer>
#include <gtest/gtest.h>
#include <thread>

// Waits until it is true; false after half a minute.
inline bool holdsSoon(const std::function<bool()> &condition)
{
    const QDeadlineTimer deadline(30'000);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

// An index kept in the test's process.
class IndexTestKept
{
public:
    IndexTestKept(const QString &store, const QString &root)
    {
        IndexSetup setup;
        setup.path = store;
        setup.roots = {root};
        setup.waitedFor = true; // a busy machine leaves nothing to what is idle
        m_index = MetadataIndex::open(setup);
    }
    bool isOpen() const { return m_index->isKeptHere(); }
    IndexSource &source() { return m_index->source(); }
    QList<IndexProblem> problems() const { return m_index->status()->problems; }

    // Up to date, contents too; false after a minute.
    bool settle()
    {
        const QDeadlineTimer deadline(60'000);
        return !m_index->sync(true, [&] { return deadline.hasExpired(); });
    }

private:
    std::unique_ptr<MetadataIndex> m_index;
};
