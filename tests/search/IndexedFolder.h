#pragma once

#include "IndexSettings.h"
#include "IndexSetup.h"
#include "KPSearchState.h"
#include "MetadataIndex.h"
#include "TestHome.h"

#include <gtest/gtest.h>

// A folder of files and a metadata index kept over it, both for one test.
class IndexedFolder : public TestFolder
{
public:
    QStringList moreRoots; // beside the folder itself

    // Starts to keep; the files made before are in the index when this returns.
    IndexSource &index()
    {
        if (!m_index) {
            IndexSetup setup;
            setup.path = m_store.path(QStringLiteral("index.sqlite"));
            setup.roots = QStringList{path()} + moreRoots;
            setup.rules = IndexSettings::rules();
            m_index = MetadataIndex::open(setup);
            EXPECT_TRUE(m_index->waitUntilLoaded());
            catchUp();
        }
        return m_index->source();
    }
    void catchUp() { EXPECT_FALSE(m_index->sync(false)); }

    // All documents of the folder.
    KPSearchState::Ptr state() const { return stateIn({path()}); }
    static KPSearchState::Ptr stateIn(const QStringList &folders)
    {
        return KPSearchState::searchStateWithNativeDictionary({})
            ->searchStateWithNewContstraintFolders(folders);
    }

private:
    const TestFolder m_store;
    std::unique_ptr<MetadataIndex> m_index;
};
