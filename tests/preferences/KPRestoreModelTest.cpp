#include "KPRestoreModel.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

static KarvexRestore::Change change(const QString &path, const QStringList &before,
                                    const QStringList &after, double ratingAfter = 0)
{
    KarvexRestore::Change change;
    change.path = path;
    change.recordedAt = QStringLiteral("~/old") + path;
    change.before = {path, before, 0, {}, {}};
    change.after = {path, after, ratingAfter, {}, {}};
    return change;
}

TEST(RestoreModel, ShowsWhatDiffersAndKeepsTheChoice)
{
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    KPRestoreModel model;
    QSignalSpy told(&model, &KPRestoreModel::chosenChanged);
    model.setChanges(
        {change(QStringLiteral("/x/1"), {a}, {a, b}), change(QStringLiteral("/x/2"), {a}, {}),
         change(QStringLiteral("/y/3"), {a}, {a}, 4), change(QStringLiteral("/y/4"), {a}, {a})});
    const auto text = [&model](int row, int column) {
        return model.index(row, column).data().toString();
    };
    EXPECT_EQ(text(0, KPRestoreModel::Name), QStringLiteral("1"));
    EXPECT_EQ(text(0, KPRestoreModel::Folder), QStringLiteral("/x"));
    EXPECT_EQ(text(0, KPRestoreModel::Before), QStringLiteral("a"));
    EXPECT_EQ(text(0, KPRestoreModel::After), QStringLiteral("a, b"));
    EXPECT_EQ(text(1, KPRestoreModel::After), qtTrId("KPRestoreNoTags"));
    EXPECT_EQ(text(2, KPRestoreModel::Before), qtTrId("KPRestoreNoRating"));
    EXPECT_EQ(text(2, KPRestoreModel::After), QStringLiteral("★★★★"));
    EXPECT_EQ(text(3, KPRestoreModel::After), qtTrId("KPRestoreSame"));

    EXPECT_EQ(model.chosenCount(), 4) << "all at first";
    EXPECT_TRUE(model.setData(model.index(1, 0), Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_FALSE(model.setData(model.index(2, 1), Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_EQ(model.chosen(),
              (QSet<QString>{QStringLiteral("~/old/x/1"), QStringLiteral("~/old/y/3"),
                             QStringLiteral("~/old/y/4")}));
    model.choose(false);
    EXPECT_EQ(model.chosenCount(), 0);
    EXPECT_EQ(told.count(), 3);
}
