#pragma once

#include "IndexKeeper.h"
#include "KPSearchRequest.h"
#include "TestHome.h"

#include <gtest/gtest.h>

// A folder of files and a metadata index kept over it, both for one test.
class IndexedFolder : public TestFolder
{
public:
    // Starts to keep; the files made before are in the index when this returns.
    IndexSource &index()
    {
        if (!m_keeper) {
            auto keeper = IndexKeeper::start(m_store.path(QStringLiteral("index.sqlite")), {path()},
                                             IndexRules::fromSettings());
            EXPECT_TRUE(keeper) << (keeper ? "" : keeper.error().message.toStdString());
            m_keeper = *std::move(keeper);
            catchUp();
        }
        return *m_keeper;
    }
    void catchUp() { EXPECT_TRUE(m_keeper->sync(false)); }

    KPSearchRequest request(const QString &words = {}) const
    {
        KPSearchRequest request;
        request.words = words;
        request.folders = QStringList{path()};
        return request;
    }

private:
    const TestFolder m_store;
    std::unique_ptr<IndexKeeper> m_keeper;
};
