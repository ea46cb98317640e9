#include "KPSelectionFacts.h"

#include "Karvex.h"
#include "ShownSearch.h"
#include "TestHome.h"

#include <gtest/gtest.h>
#include <random>

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
        EXPECT_EQ(lowered(KPSelectionFacts(documents).commonTags()),
                  lowered(Karvex::getCommonUserTags(paths).valueOr({})));
    }
}

// However it came about, what is kept by differences is what is summed up afresh.
TEST(SelectionFacts, FollowAnyChangesOfSelectionAndDocuments)
{
    std::mt19937 random(11);
    const QStringList names{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    const auto change = [&](int number) {
        QStringList tags;
        for (const QString &name : names) {
            if (random() % 4 != 0)
                tags.append(name);
        }
        return shownDoc(QStringLiteral("/facts/%1").arg(number), tags, random() % 3 == 0 ? 2 : 4,
                        static_cast<qint64>(random() % 1000));
    };
    KPSelectionFacts kept;
    for (int round = 0; round < 200; ++round) {
        KPDoc::Docs selected;
        KPDoc::Docs changed;
        for (int number = 0; number < 6; ++number) {
            KPDoc *doc = change(number);
            changed.append(doc);
            if (random() % 2 != 0)
                selected.append(doc);
        }
        kept.setDocuments(selected);
        kept.update(changed);
        const KPSelectionFacts fresh(selected);
        ASSERT_EQ(kept.commonTags(), fresh.commonTags()) << round;
        EXPECT_EQ(kept.rating(), fresh.rating());
        EXPECT_EQ(kept.size(), fresh.size());
        EXPECT_EQ(kept.paths(), fresh.paths());
        EXPECT_EQ(kept.canEdit(), !selected.isEmpty());
    }
}
