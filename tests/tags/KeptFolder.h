#pragma once

#include "IndexSetup.h"
#include "MetadataIndex.h"
#include "TestHome.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>
#include <gtest/gtest.h>

// A folder of files and a metadata index kept over it, both for one test.
class KeptFolder : public TestFolder
{
public:
    // Starts to keep; the files made before are in the index when this returns.
    IndexSource &index() { return kept().source(); }
    MetadataIndex &kept()
    {
        if (!m_index) {
            IndexSetup setup;
            setup.path = m_store.path(QStringLiteral("index.sqlite"));
            setup.roots = QStringList{path()};
            m_index = MetadataIndex::open(setup);
            EXPECT_TRUE(m_index->waitUntilLoaded());
            catchUp();
        }
        return *m_index;
    }
    void endKeeping() { m_index.reset(); }
    void catchUp() { EXPECT_FALSE(m_index->sync(false)); }

private:
    const TestFolder m_store;
    std::unique_ptr<MetadataIndex> m_index;
};

// Runs the event loop until the condition holds; false after 30 seconds.
inline bool holdsSoon(const std::function<bool()> &condition)
{
    const QDeadlineTimer deadline(30'000);
    QTimer tick; // for conditions that come true without an event
    tick.start(5);
    while (!condition() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return condition();
}
