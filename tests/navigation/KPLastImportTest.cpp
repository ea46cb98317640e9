#include "KPLastImport.h"

#include "FollowedSearch.h"
#include "KPLastImportItem.h"
#include "TestNavigator.h"

#include <gtest/gtest.h>

static QStringList list(const char *names)
{
    return QString::fromLatin1(names).split(u' ', Qt::SkipEmptyParts);
}

TEST(LastImport, FollowsWhatIsMovedAndSoDoesTheListInSight)
{
    struct Row
    {
        const char *what;
        const char *moves; // from and to, in turn
        const char *imported;
        const char *shown;
    };
    static constexpr std::array rows = {
        Row{"another file", "/x /y", "/a /b", "/b /c"},
        Row{"in one list", "/a /d", "/d /b", "/b /c"},
        Row{"in both", "/b /d", "/a /d", "/d /c"},
        Row{"twice", "/b /d /d /e", "/a /e", "/e /c"},
        Row{"in turn", "/a /t /b /a /t /b", "/b /a", "/a /c"},
        Row{"back", "/c /d /d /c", "/a /b", "/b /c"},
    };
    IndexedFolder folder;
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        TestNavigator navigator{folder.index()};
        KPLastImport last(*navigator.crumbs);
        last.setPaths(list("/a /b"));
        const auto shown =
            KPSearchState::blankSearchState()->searchStateWithNewFileList(list("/b /c"));
        navigator.setSearchStateAndUpdateUI(shown, true, std::make_shared<KPLastImportItem>(shown),
                                            {});
        const int applied = navigator.applied;
        const QStringList moves = list(row.moves);
        for (qsizetype at = 0; at < moves.size(); at += 2)
            last.pathChanged(moves[at], moves[at + 1]);
        EXPECT_TRUE(FollowedSearch::waitFor(
            [&] { return last.searchState()->fileListSearch() == list(row.imported); }));
        QCoreApplication::processEvents();
        EXPECT_EQ(navigator.state()->fileListSearch(), list(row.shown));
        EXPECT_EQ(navigator.crumbs->sourceItem()->searchState()->fileListSearch(), list(row.shown));
        EXPECT_LE(navigator.applied, applied + 1) << "once for all";
    }
}
