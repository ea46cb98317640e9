#include "KPLibraryModel.h"

#include "KPDocCache.h"
#include "TestSource.h"

#include <QAbstractItemModelTester>
#include <QItemSelectionModel>
#include <QSignalSpy>
#include <gmock/gmock.h>
#include <random>

static QStringList paths(const KPLibraryModel &model)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row)
        result.append(model.document(row).path);
    return result;
}

// Random batches as a walk and inotify report them, against a plain map that is sorted anew.
TEST(LibraryModel, StaysSortedAndKeepsTheSelectionThroughAnyChanges)
{
    TestSource source;
    KPLibraryModel model(&source);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    QItemSelectionModel selection(&model);
    QMap<QString, double> expected;
    std::mt19937 random(7);
    const auto anyPath = [&] { return QStringLiteral("/d/file %1.txt").arg(random() % 300); };

    model.setOrder({KPDocOrder::Key::Rating, false});
    QString chosen;
    for (int round = 0; round < 120; ++round) {
        QList<KPFoundDocument> added;
        QList<KPFoundDocument> changed;
        QStringList removed;
        for (int number = 0; number < 8; ++number) {
            const QString path = anyPath();
            const auto rating = static_cast<double>(random() % 6);
            if (!expected.contains(path) || random() % 3 == 0) {
                // Also of a path that is there already: a late notice.
                added.append(found(path, {}, rating));
                expected[path] = rating;
            } else if (random() % 2) {
                changed.append(found(path, {}, rating));
                expected[path] = rating;
            }
        }
        Q_EMIT source.documentsAdded(added);
        Q_EMIT source.documentsChanged(changed);
        for (int number = 0; number < 4; ++number) {
            const QString path = anyPath();
            if (path != chosen && expected.remove(path))
                removed.append(path);
        }
        Q_EMIT source.documentsRemoved(removed);
        if (round == 10) {
            chosen = model.document(model.rowCount() / 2).path;
            selection.select(model.indexForPath(chosen), QItemSelectionModel::Select);
        }
        QStringList sorted = expected.keys();
        std::sort(sorted.begin(), sorted.end(), [&](const QString &a, const QString &b) {
            const auto number = [](const QString &path) {
                return path.section(u' ', 1).section(u'.', 0, 0).toInt();
            };
            return expected[a] != expected[b] ? expected[a] > expected[b] : number(a) < number(b);
        });
        ASSERT_EQ(paths(model), sorted) << "round " << round;
        if (!chosen.isEmpty()) {
            ASSERT_EQ(selection.selectedIndexes(), QModelIndexList{model.indexForPath(chosen)});
        }
    }
}

TEST(LibraryModel, AHundredThousandDocumentsComeInAFewPasses)
{
    TestSource source;
    KPLibraryModel model(&source);
    const QSignalSpy inserts(&model, &QAbstractItemModel::rowsInserted);
    for (int batch = 0; batch < 100; ++batch) {
        QList<KPFoundDocument> documents;
        for (int number = 0; number < 1000; ++number)
            documents.append(found(QStringLiteral("/d/%1.txt").arg(number * 100 + batch)));
        Q_EMIT source.documentsAdded(documents);
    }
    Q_EMIT source.finished({});
    EXPECT_EQ(model.rowCount(), 100'000);
    EXPECT_EQ(model.document(99'999).path, u"/d/99999.txt");
    EXPECT_EQ(inserts.size(), 1);
}

TEST(LibraryModel, ShowsHostileNamesAsPlainVisibleText)
{
    TestSource source;
    KPLibraryModel model(&source);
    auto document = found(QStringLiteral("/d/<b>x\u202egpj.exe\n"), {QStringLiteral("a\nb")}, 4);
    Q_EMIT source.documentsAdded({document});
    Q_EMIT source.finished({});
    const QModelIndex index = model.index(0);
    const QString name = index.data().toString();
    EXPECT_FALSE(name.contains(u'\u202e') || name.contains(u'\n')) << name.toStdString();
    EXPECT_TRUE(index.data(Qt::ToolTipRole).toString().contains(u"&lt;b&gt;"));
    EXPECT_EQ(index.data(Qt::AccessibleTextRole).toString(),
              name + QStringLiteral(", tags a\\nb, 4 stars"));
    EXPECT_EQ(index.data(KPLibraryModel::PathRole).toString(), document.path);
}

TEST(LibraryModel, KnowsTagsOnceByCaseMostUsedFirst)
{
    TestSource source;
    KPLibraryModel model(&source);
    Q_EMIT source.documentsAdded({found(QStringLiteral("/a"), {QStringLiteral("rare")}),
                                  found(QStringLiteral("/b"), {QStringLiteral("Work")}),
                                  found(QStringLiteral("/c"), {QStringLiteral("work")})});
    Q_EMIT source.finished({});
    EXPECT_THAT(model.knownTags(), testing::SizeIs(2));
    EXPECT_EQ(model.knownTags().first().toLower(), u"work");
}

// A record changes at any time: what a row is sorted by is what it was when it took its place.
TEST(LibraryModel, ShowsTheOneRecordOfEachPathInTheOrderOfItsFacts)
{
    TestSource source;
    KPLibraryModel model(&source);
    model.setOrder({KPDocOrder::Key::Size, true});
    QList<KPFoundDocument> documents = {found(QStringLiteral("/r/a")),
                                        found(QStringLiteral("/r/b"))};
    documents[0].info.size = 1;
    documents[1].info.size = 2;
    Q_EMIT source.documentsAdded(documents);
    Q_EMIT source.finished({});
    ASSERT_EQ(paths(model), (QStringList{QStringLiteral("/r/a"), QStringLiteral("/r/b")}));
    KPDoc *doc = KPDocCache::docAtPathIfExists(QStringLiteral("/r/a"));
    EXPECT_EQ(model.document(0).doc, doc);
    documents[0].info.size = 3;
    doc->updateFromLStat(documents[0].info);
    Q_EMIT source.documentsChanged({documents[0]});
    EXPECT_EQ(paths(model), (QStringList{QStringLiteral("/r/b"), QStringLiteral("/r/a")}));
    EXPECT_EQ(model.document(1).doc->unixFileSize(), 3);
}
