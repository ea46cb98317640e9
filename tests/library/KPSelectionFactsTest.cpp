#include "KPSelectionFacts.h"

#include "Karvex.h"
#include "ShownSearch.h"
#include "TestHome.h"

#include <gtest/gtest.h>

static QStringList lowered(const QStringList &tags)
{
    QStringList result;
    for (const QString &tag : tags)
        result.append(tag.toLower());
    return result;
}

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
        KPDoc::Docs documents;
        QStringList paths;
        for (const QStringList &tags : lists) {
            paths.append(folder.file(QString::number(number++)));
            if (!tags.isEmpty()) {
                EXPECT_FALSE(Karvex::setUserTags(tags, paths.last()));
            }
            documents.append(shownDoc(paths.last(), tags));
        }
        // In whatever spelling the tag is shown.
        EXPECT_EQ(lowered(KPSelectionFacts(documents).commonTags),
                  lowered(Karvex::getCommonUserTags(paths).valueOr({})));
    }
}
