#include "KPLibraryModel.h"

#include "KPDocsTable.h"
#include "ShownSearch.h"

#include <QAbstractItemModelTester>
#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QTest>
#include <gmock/gmock.h>
#include <random>

using Field = KPSortKey::Field;

static QStringList paths(const KPLibraryModel &model)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row)
        result.append(model.document(row)->filePath());
    return result;
}

static KPSortOrder order(Field field, bool ascending = true)
{
    return {{{field, ascending}}, std::nullopt};
}

// A view that only believes the model's signals.
class Mirror
{
public:
    explicit Mirror(const KPLibraryModel &model)
    {
        using Model = QAbstractItemModel;
        const auto all = [this, &model] { m_paths = paths(model); };
        QObject::connect(&model, &Model::modelReset, all);
        QObject::connect(&model, &Model::layoutChanged, all);
        QObject::connect(&model, &Model::rowsRemoved, [this](auto, int first, int last) {
            m_paths.remove(first, last - first + 1);
        });
        QObject::connect(&model, &Model::rowsInserted, [this, &model](auto, int first, int last) {
            for (int row = first; row <= last; ++row)
                m_paths.insert(row, model.document(row)->filePath());
        });
    }
    const QStringList &shown() const { return m_paths; }

private:
    QStringList m_paths;
};

// Random lots of changes, small and large, other orders and other searches, against a plain map
// that is sorted anew; a document that stays is selected throughout.
TEST(LibraryModel, FollowsAnyDeliveriesAndKeepsTheSelection)
{
    ShownSearch search;
    KPLibraryModel model(&search.searcher);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    const Mirror mirror(model);
    QItemSelectionModel selection(&model);
    std::mt19937 random(7);
    const auto below = [&](int count) { return static_cast<int>(random() % unsigned(count)); };
    const auto pathOf = [](int number) { return QStringLiteral("/d/file %1.txt").arg(number); };
    QMap<int, int> ratings; // by the number of the file
    bool isByRating = true;
    search.setOrder(order(Field::Rating, false));
    int chosen = -1;
    const KPDocsTable table(model);
    QList<QPersistentModelIndex> cells; // its whole row in the table
    for (int round = 0; round < 300; ++round) {
        const int edits = round % 10 == 0 ? 200 : below(6);
        if (round % 25 == 24) {
            search.beginAnother();
            for (auto each = ratings.begin(); each != ratings.end();) {
                if (each.key() == chosen || below(3) > 0)
                    search.add(shownDoc(pathOf(each++.key())));
                else
                    each = ratings.erase(each);
            }
            for (auto each = ratings.begin(); each != ratings.end(); ++each)
                shownDoc(pathOf(each.key()), {}, each.value());
        }
        if (round % 20 == 19) {
            isByRating = !isByRating;
            search.setOrder(isByRating ? order(Field::Rating, false) : order(Field::Name));
        }
        for (int edit = 0; edit < edits; ++edit) {
            const int number = below(400);
            const int rating = below(6);
            const bool isThere = ratings.contains(number);
            if (isThere && number != chosen && below(2)) {
                search.remove(shownDoc(pathOf(number), {}, ratings.take(number)));
                continue;
            }
            KPDoc *doc = shownDoc(pathOf(number), {}, rating);
            ratings[number] = rating;
            isThere ? search.change(doc) : search.add(doc);
        }
        search.deliver();
        if (chosen < 0 && ratings.size() > 20) {
            chosen = std::next(ratings.begin(), 10).key();
            selection.select(model.indexForPath(pathOf(chosen)), QItemSelectionModel::Select);
            for (int column = 0; column < table.columnCount(); ++column)
                cells.append(table.index(selection.selectedIndexes().first().row(), column));
        }
        QList<int> numbers = ratings.keys();
        if (isByRating)
            std::stable_sort(numbers.begin(), numbers.end(),
                             [&](int a, int b) { return ratings[a] > ratings[b]; });
        QStringList sorted;
        for (const int number : numbers)
            sorted.append(pathOf(number));
        ASSERT_EQ(paths(model), sorted) << "round " << round;
        ASSERT_EQ(mirror.shown(), sorted) << "round " << round;
        if (chosen >= 0) {
            ASSERT_EQ(selection.selectedIndexes(),
                      QModelIndexList{model.indexForPath(pathOf(chosen))})
                << "round " << round;
            const int row = model.indexForPath(pathOf(chosen)).row();
            for (int column = 0; column < table.columnCount(); ++column)
                ASSERT_EQ(cells[column], table.index(row, column)) << "round " << round;
        }
    }
}

// One change among very many is told as one.
TEST(LibraryModel, TellsOfOneChangeAlone)
{
    ShownSearch search;
    KPLibraryModel model(&search.searcher);
    search.setOrder(order(Field::Name));
    for (int number = 0; number < 20'000; ++number)
        search.add(shownDoc(QStringLiteral("/many/%1").arg(number)));
    search.deliver();
    ASSERT_EQ(model.rowCount(), 20'000);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy others(&model, &QAbstractItemModel::layoutChanged);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    KPDoc *doc = shownDoc(QStringLiteral("/many/100"));
    search.change(doc);
    search.deliver();
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed.first().first().toModelIndex().row(), 100);
    search.remove(doc);
    search.deliver();
    search.add(doc);
    search.deliver();
    EXPECT_EQ(removed.size(), 1);
    ASSERT_EQ(inserted.size(), 1);
    EXPECT_EQ(inserted.first().at(1).toInt(), 100);
    EXPECT_EQ(others.size() + resets.size(), 0);
}

TEST(LibraryModel, KnowsTheGroupOfEachRow)
{
    ShownSearch search;
    KPLibraryModel model(&search.searcher);
    EXPECT_EQ(model.groupOfRow(0), -1);
    search.setOrder({{KPSortKey()}, KPSortKey{Field::Rating, false}});
    for (int number = 0; number < 10; ++number)
        search.add(shownDoc(QStringLiteral("/g/%1").arg(number), {}, number % 3));
    search.deliver();
    ASSERT_TRUE(model.groups());
    QList<int> groups;
    for (int row = 0; row < model.rowCount(); ++row)
        groups.append(model.groupOfRow(row));
    EXPECT_EQ(groups, (QList<int>{0, 0, 0, 1, 1, 1, 2, 2, 2, 2}));
    EXPECT_EQ(model.groups()->runs[2].group->key, u"KPGroupNameUnrated");
    EXPECT_EQ(model.document(9)->cachedGroup(), model.groups()->runs[2].group);
}

TEST(LibraryModel, ShowsHostileNamesAsPlainVisibleText)
{
    ShownSearch search;
    KPLibraryModel model(&search.searcher);
    KPDoc *doc = shownDoc(QStringLiteral("/d/<b>x\u202egpj.exe\n"), {QStringLiteral("a\nb")}, 4);
    search.add(doc);
    search.deliver();
    const QModelIndex index = model.index(0);
    const QString name = index.data().toString();
    EXPECT_FALSE(name.contains(u'\u202e') || name.contains(u'\n')) << name.toStdString();
    EXPECT_TRUE(index.data(Qt::ToolTipRole).toString().contains(u"&lt;b&gt;"));
    EXPECT_TRUE(index.data(Qt::AccessibleTextRole).toString().startsWith(name));
    EXPECT_TRUE(index.data(Qt::AccessibleTextRole).toString().endsWith(u", 4 stars"));
    EXPECT_EQ(index.data(KPLibraryModel::PathRole).toString(), doc->filePath());
    for (int column = 0; column < KPLibraryModel::ColumnCount; ++column) {
        const QString text = index.data(KPLibraryModel::ColumnTextRole + column).toString();
        EXPECT_FALSE(text.contains(u'\u202e') || text.contains(u'\n')) << column;
    }
}

// Values that cannot be read are neither none nor left out.
TEST(LibraryModel, SaysWhatCannotBeRead)
{
    ShownSearch search;
    KPLibraryModel model(&search.searcher);
    KPDoc *doc = shownDoc(QStringLiteral("/unreadable"));
    KPDocMetaData::fill(KPDocMetaData::UserTags, doc->pooledPath(), PropertyValue::real(1),
                        KPDocMetaData::Known::Replaced);
    search.add(doc);
    search.deliver();
    EXPECT_FALSE(model.index(0).data(KPLibraryModel::ErrorRole).toString().isEmpty());
    // A value that this program wrote shows without a delivery.
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    doc->dataChanged();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !changed.isEmpty(); }, 10'000));
}

TEST(LibraryModel, KnowsTagsOnceByCaseMostUsedFirst)
{
    ShownSearch search;
    KPLibraryModel model(&search.searcher);
    search.add(shownDoc(QStringLiteral("/a"), {QStringLiteral("rare")}));
    search.add(shownDoc(QStringLiteral("/b"), {QStringLiteral("Work")}));
    search.add(shownDoc(QStringLiteral("/c"), {QStringLiteral("work")}));
    search.deliver();
    EXPECT_THAT(model.knownTags(), testing::SizeIs(2));
    EXPECT_EQ(model.knownTags().first().toLower(), u"work");
}
