#include "KPSelectionFacts.h"

#include "Karvex.h"
#include "TestHome.h"
#include "TestSource.h"

#include <gtest/gtest.h>

// The inspector's answer, from what the search knows, is the storage layer's own.
TEST(SelectionFacts, CommonTagsAreThoseOfTheStorageLayer)
{
    const QString work = QStringLiteral("work");
    const QString home = QStringLiteral("home");
    const QString mine = QStringLiteral("mine");
    TestFolder folder;
    const QString shouted = QStringLiteral("WORK");
    const QList<QList<QStringList>> cases{
        {{work, home}, {home, shouted}},
        {{work}, {}},
        {{work}, {home}},
        {{mine, work, home}, {home, work}, {work, mine, home}},
    };
    int number = 0;
    for (const auto &lists : cases) {
        QList<KPShownDocument> documents;
        QStringList paths;
        for (const QStringList &tags : lists) {
            paths.append(folder.file(QString::number(number++)));
            if (!tags.isEmpty()) {
                EXPECT_FALSE(Karvex::setUserTags(tags, paths.last()));
            }
            documents.append(KPShownDocument(found(paths.last(), tags)));
        }
        EXPECT_EQ(KPSelectionFacts(documents).commonTags,
                  Karvex::getCommonUserTags(paths).valueOr({}));
    }
}
