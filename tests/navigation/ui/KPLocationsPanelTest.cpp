#include "KPLocationsPanel.h"

#include "FollowedSearch.h"
#include "KPDocIcons.h"
#include "KPDocPasteboard.h"
#include "KPLocationsModel.h"
#include "TestNavigator.h"

#include <QMimeData>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>
#include <sys/stat.h>

static QString words(const char *text)
{
    return QString::fromUtf8(text);
}

class LocationsPanel : public testing::Test
{
protected:
    void SetUp() override
    {
        KPDocIcons::registerIcons();
        for (const char *name : {"a/1.txt", "a/deep/2.txt", "b/3.txt", "a/deep/er/4.txt"})
            m_folder.file(words(name));
        const QByteArray odd = m_folder.path().toUtf8() + "/odd\xFF";
        ASSERT_EQ(::mkdir(odd.constData(), 0700), 0);
        ASSERT_EQ(::mknod((odd + "/5.txt").constData(), S_IFREG | 0600, 0), 0);
        m_folder.catchUp();
    }
    // "a:3 b:1": the folders of a level with their counts.
    QString level(const QModelIndex &above) const
    {
        QStringList rows;
        for (int row = 0; row < m_model->rowCount(above); ++row) {
            const QModelIndex index = m_model->index(row, 0, above);
            rows.append(index.data().toString() + u':' +
                        index.data(KPLocationsModel::CountText).toString());
        }
        return rows.join(u' ');
    }
    bool shows(const char *expected, const QString &below)
    {
        return FollowedSearch::waitFor(
            [&] { return level(m_model->indexOf(below)) == words(expected); });
    }
    void open()
    {
        m_panel.resize(240, 600);
        m_panel.show();
        m_model = qobject_cast<KPLocationsModel *>(m_panel.tree().model());
        m_navigator.crumbs->applyState(KPSearcher::allDocumentsOf(m_folder.state()));
    }

    IndexedFolder m_folder;
    TestNavigator m_navigator{m_folder.index()};
    KPLocationsPanel m_panel{*m_navigator.crumbs};
    KPLocationsModel *m_model = nullptr;
};

TEST_F(LocationsPanel, ShowsTheFoldersThatHoldResultsAndFollowsThem)
{
    open();
    ASSERT_TRUE(shows("a:3 b:1 odd\\xff:1", m_folder.path()))
        << qPrintable(level(m_model->indexOf(m_folder.path())));
    const QString a = m_folder.path(words("a"));
    m_panel.tree().expand(m_model->indexOf(a));
    EXPECT_TRUE(shows("deep:2", a));
    m_folder.file(words("a/new/6.txt"));
    m_folder.catchUp();
    EXPECT_TRUE(shows("deep:2 new:1", a));
    EXPECT_TRUE(shows("a:4 b:1 odd\\xff:1", m_folder.path()));
    m_navigator.crumbs->applyState(m_navigator.state()->searchStateWithNewExcludeFolders({a}));
    EXPECT_TRUE(shows("b:1 odd\\xff:1", m_folder.path()));
}

TEST_F(LocationsPanel, GoesToAFolderAndNarrowsAListing)
{
    open();
    ASSERT_TRUE(shows("a:3 b:1 odd\\xff:1", m_folder.path()));
    m_panel.tree().setCurrentIndex(m_model->indexOf(m_folder.path(words("b"))));
    EXPECT_TRUE(m_navigator.state()->postConstraintFolders().isEmpty()) << "this is no listing";
    m_navigator.crumbs->applyState(
        m_navigator.state()->searchStateWithNewFinderListing(true, true));
    ASSERT_TRUE(shows("a:3 b:1 odd\\xff:1", m_folder.path()));
    m_panel.tree().clearSelection();
    m_panel.tree().setCurrentIndex(m_model->indexOf(m_folder.path(words("a"))));
    EXPECT_EQ(m_navigator.state()->postConstraintFolders(), QStringList{m_folder.path(words("a"))});
    QTest::keyClick(&m_panel.tree(), Qt::Key_Return);
    EXPECT_EQ(m_navigator.state()->constraintFolders(), QStringList{m_folder.path(words("a"))});
    EXPECT_TRUE(m_navigator.state()->postConstraintFolders().isEmpty());
}

TEST_F(LocationsPanel, TakesDocumentsOfTheLibrary)
{
    open();
    ASSERT_TRUE(shows("a:3 b:1 odd\\xff:1", m_folder.path()));
    const QModelIndex b = m_model->indexOf(m_folder.path(words("b")));
    QMimeData documents;
    KPDocPasteboard::setPaths(documents, {m_folder.path(words("a/1.txt"))});
    EXPECT_TRUE(m_model->canDropMimeData(&documents, Qt::MoveAction, -1, 0, b));
    EXPECT_FALSE(m_model->canDropMimeData(&documents, Qt::MoveAction, -1, 0, {}));
    // What other programs drag becomes a document, or is nothing to us.
    QMimeData text;
    text.setText(words("words"));
    EXPECT_TRUE(m_model->canDropMimeData(&text, Qt::MoveAction, -1, 0, b));
    QMimeData strange;
    strange.setData(words("application/x-strange"), "?");
    EXPECT_FALSE(m_model->canDropMimeData(&strange, Qt::MoveAction, -1, 0, b));
}

// Checked against a table that is looked through in the plain way.
TEST(ActiveFolders, AreAskedForOneLevelAtATime)
{
    KPActiveFolders::Table table;
    for (int i = 0; i < 40; ++i)
        for (int j = 0; j < 40; ++j) {
            const QString path = QStringLiteral("/r/%1/%2").arg(i).arg(j);
            ++table[KPPool::pooledString(path)];
            ++table[KPPool::pooledString(QStringLiteral("/r/%1").arg(i))];
            ++table[KPPool::pooledString(words("/r"))];
            ++table[KPPool::pooledString(words("/"))];
        }
    const KPActiveFolders folders(table);
    const auto levels = folders.below({words("/"), words("/r"), words("/r/7"), words("/r/7/3")});
    EXPECT_EQ(levels.value(words("/")),
              (QList<KPActiveFolders::Folder>{{words("/r"), 1600, true}}));
    EXPECT_EQ(levels.value(words("/r")).size(), 40);
    EXPECT_TRUE(levels.value(words("/r")).first().hasChildren);
    EXPECT_EQ(levels.value(words("/r/7")).last().count, 1);
    EXPECT_FALSE(levels.value(words("/r/7")).last().hasChildren);
    EXPECT_TRUE(levels.value(words("/r/7/3")).isEmpty());
    EXPECT_EQ(folders.roots({words("/none"), words("/r")}).size(), 1);
}
