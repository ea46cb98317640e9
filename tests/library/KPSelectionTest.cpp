#include "KPSelection.h"

#include <QList>
#include <gtest/gtest.h>
#include <random>
#include <set>

static KPSelection selected(int rows, const QList<int> &chosen)
{
    KPSelection selection;
    selection.reset(rows);
    for (const int row : chosen)
        selection.add({row, row});
    return selection;
}

static QList<int> rows(const KPSelection &selection)
{
    QList<int> result;
    for (int row = 0; row < selection.rowCount(); ++row) {
        if (selection.isSelected(row))
            result.append(row);
    }
    return result;
}

TEST(Selection, AgreesWithASetThroughAnyChanges)
{
    std::mt19937 random(3);
    for (const int count : {1, 63, 64, 65, 300}) {
        KPSelection selection;
        selection.reset(count);
        std::set<int> expected;
        for (int round = 0; round < 300; ++round) {
            const auto first = static_cast<int>(random() % static_cast<unsigned>(count));
            const int last = first + static_cast<int>(random() % 90); // beyond the end too
            const bool adds = random() % 2 != 0;
            adds ? selection.add({first, last}) : selection.remove({first, last});
            for (int row = first; row <= std::min(last, count - 1); ++row) {
                if (adds)
                    expected.insert(row);
                else
                    expected.erase(row);
            }
            ASSERT_EQ(rows(selection), QList<int>(expected.begin(), expected.end()));
            EXPECT_EQ(selection.count(), static_cast<qsizetype>(expected.size()));
            EXPECT_EQ(selection.first(), expected.empty() ? -1 : *expected.begin());
            EXPECT_EQ(selection.last(), expected.empty() ? -1 : *expected.rbegin());
            QList<int> fromRuns;
            for (const KPSelection::Run &run : selection.runs()) {
                for (int row = run.first; row <= run.last; ++row)
                    fromRuns.append(row);
                EXPECT_FALSE(selection.isSelected(run.first - 1));
                EXPECT_FALSE(selection.isSelected(run.last + 1));
            }
            ASSERT_EQ(fromRuns, rows(selection));
        }
    }
}

struct ShiftClick
{
    const char *name;
    QList<int> before;
    int row;
    QList<int> after;
};
class ClickWithShift : public testing::TestWithParam<ShiftClick>
{
};

TEST_P(ClickWithShift, JoinsARangeToTheSelection)
{
    KPSelection selection = selected(10, GetParam().before);
    selection.extendByShiftClicking(GetParam().row);
    EXPECT_EQ(rows(selection), GetParam().after);
    EXPECT_EQ(selection.anchor(), GetParam().row < 0 ? -1 : GetParam().row);
}

INSTANTIATE_TEST_SUITE_P(Cases, ClickWithShift,
                         testing::Values(ShiftClick{"Nothing", {}, 4, {4}},
                                         ShiftClick{"After", {2}, 5, {2, 3, 4, 5}},
                                         ShiftClick{"Between", {2, 7}, 4, {2, 4, 5, 6, 7}},
                                         ShiftClick{"Before", {5, 7}, 3, {3, 4, 5, 7}},
                                         ShiftClick{"TheLast", {2, 7}, 7, {2, 7}},
                                         ShiftClick{"NotShown", {2, 7}, -1, {2, 7}}),
                         [](const auto &row) { return row.param.name; });

TEST(ClickWithShift, LeavesASingleDocumentAlone)
{
    KPSelection selection = selected(1, {});
    selection.extendByShiftClicking(0);
    EXPECT_TRUE(selection.isEmpty());
    EXPECT_EQ(selection.anchor(), 0);
}

struct Arrow
{
    const char *name;
    QList<int> before;
    int offset;
    bool extends;
    bool wraps;
    QList<int> after;
    int visible; // -1: nothing changes
};
class ArrowKey : public testing::TestWithParam<Arrow>
{
};

TEST_P(ArrowKey, MovesFromTheEndOfTheSelectionItGoesTo)
{
    const Arrow &row = GetParam();
    KPSelection selection = selected(10, row.before);
    EXPECT_EQ(selection.modify(row.offset, row.extends, row.wraps).value_or(-1), row.visible);
    EXPECT_EQ(rows(selection), row.after);
}

INSTANTIATE_TEST_SUITE_P(Cases, ArrowKey,
                         testing::Values(Arrow{"Nothing", {}, 1, false, true, {9}, 9},
                                         Arrow{"Forward", {2, 4}, 1, false, true, {5}, 5},
                                         Arrow{"Back", {2, 4}, -1, false, true, {1}, 1},
                                         Arrow{"Extends", {2, 4}, 1, true, false, {2, 4, 5}, 5},
                                         Arrow{"WrapsAtTheEnd", {9}, 1, false, true, {0}, 0},
                                         Arrow{"WrapsAtTheStart", {0}, -1, false, true, {9}, 9},
                                         Arrow{"StaysAtTheEnd", {9}, 1, true, false, {9}, -1},
                                         Arrow{"DoesNotLeaveBelow", {8}, 4, false, false, {8}, -1},
                                         Arrow{
                                             "DoesNotLeaveAbove", {2}, -4, false, false, {2}, -1}),
                         [](const auto &row) { return row.param.name; });
