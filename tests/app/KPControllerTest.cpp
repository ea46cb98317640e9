#include "ControllerFixture.h"
#include "KPDocCache.h"
#include "KPNameField.h"
#include "KPSearcher.h"
#include "KPStatusLine.h"
#include "UserDefaults.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"
#include "XPStarsEditor.h"
#include "XPTagChip.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <cstdio>
#include <filesystem>
#include <gmock/gmock.h>

TEST_F(Controller, TagsAndRatingsTypedReachTheFilesAndCanBeUndone)
{
    openWindow();
    m_view->docs().selectAll();
    ASSERT_TRUE(until([&] { return m_window->isSettled(); }));
    typeTag(work);
    ASSERT_TRUE(until([&] {
        return std::all_of(m_paths.begin(), m_paths.end(),
                           [&](const QString &path) { return tagsOf(path) == QStringList{work}; });
    }));
    ASSERT_TRUE(until([&] { return m_tags->tags() == QStringList{work}; }));

    select(1);
    QTest::keyClick(m_window.get(), Qt::Key_4, Qt::AltModifier);
    ASSERT_TRUE(until([&] { return ratingOf(m_paths[1]) == 4; }));
    EXPECT_EQ(ratingOf(m_paths[0]), 0);
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(until([&] { return ratingOf(m_paths[1]) == 0; }));
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(until([&] { return tagsOf(m_paths[2]).isEmpty(); }));
    ASSERT_TRUE(until([&] { return m_tags->tags().isEmpty(); }));
    EXPECT_THAT(m_alerts, testing::IsEmpty());
}

TEST_F(Controller, RenamesTakesBackAndMovesToTheTrash)
{
    ASSERT_FALSE(Karvex::setUserTags(QStringList{work}, m_paths[0]));
    openWindow();
    select(0);
    const auto renameTo = [&](const char *name, bool wholeName) {
        QApplication::setActiveWindow(m_window.get());
        QTest::keyClick(m_window.get(), Qt::Key_F2);
        auto *field = m_view->findChild<KPNameField *>();
        ASSERT_TRUE(field && field->isVisible());
        EXPECT_EQ(field->selectedText(), QStringLiteral("a"));
        if (wholeName)
            field->selectAll();
        QTest::keyClicks(field, QLatin1String(name));
        QTest::keyClick(field, Qt::Key_Return);
        EXPECT_FALSE(field->isVisible());
    };
    renameTo("z.pdf", true);
    EXPECT_TRUE(QFile::exists(m_paths[0])); // the question about the extension was cancelled
    renameTo("z", false);
    const QString renamed = m_folder.path(QStringLiteral("z.txt"));
    ASSERT_TRUE(until([&] { return QFile::exists(renamed); }));
    EXPECT_EQ(tagsOf(renamed), QStringList{work});
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(until([&] { return QFile::exists(m_paths[0]); }));

    ASSERT_TRUE(until([&] { return rows() == 3 && m_window->isSettled(); }));
    m_window->showDocuments({m_paths[1]});
    ASSERT_TRUE(until([&] { return m_window->isSettled() && selectedCount() == 1; }));
    UserDefaults::standard().setValue(QStringLiteral("KPConfirmDelete"),
                                      PropertyValue::boolean(false));
    QTest::keyClick(m_view, Qt::Key_Delete, Qt::ControlModifier);
    ASSERT_TRUE(until([&] { return !QFile::exists(m_paths[1]); }));
    EXPECT_TRUE(until([&] { return rows() == 2; }));
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(until([&] { return QFile::exists(m_paths[1]); }));
    EXPECT_THAT(m_alerts, testing::IsEmpty());
}

TEST_F(Controller, UndoOfARenamingGivesBackTheVeryName)
{
    const QString meeting = m_folder.file(QStringLiteral("Meeting 10:30.txt"));
    makeWindow(m_folder.path());
    ASSERT_TRUE(until([&] { return rows() == 4 && m_window->isSettled(); }));
    m_window->showDocuments({meeting});
    ASSERT_TRUE(until([&] { return m_window->isSettled() && selectedCount() == 1; }));
    const auto rename = [&](const char *stem) {
        QApplication::setActiveWindow(m_window.get());
        QTest::keyClick(m_window.get(), Qt::Key_F2);
        auto *field = m_view->findChild<KPNameField *>();
        ASSERT_TRUE(field && field->isVisible());
        EXPECT_EQ(field->text(), QStringLiteral("Meeting 10/30.txt"));
        QTest::keyClicks(field, QLatin1String(stem));
        QTest::keyClick(field, Qt::Key_Return);
    };
    rename("Talk");
    const QString talk = m_folder.path(QStringLiteral("Talk.txt"));
    ASSERT_TRUE(until([&] {
        return QFile::exists(talk) && KPDocCache::docAtPathIfExists(talk) && m_window->isSettled();
    }));
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    // The record follows its file.
    const auto isKnown = [](const QString &path) {
        return QFile::exists(path) && KPDocCache::docAtPathIfExists(path) != nullptr;
    };
    ASSERT_TRUE(until([&] { return isKnown(meeting) && m_window->isSettled(); }));

    // Somebody else gives it a third name: there is nothing of ours to take back.
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(until([&] { return isKnown(talk) && m_window->isSettled(); }));
    const QString third = m_folder.path(QStringLiteral("third.txt"));
    KPDoc *doc = KPDocCache::docAtPath(talk);
    std::filesystem::rename(talk.toStdString(), third.toStdString());
    doc->setFilePath(third);
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(until([&] { return m_alerts.size() == 1; }));
    EXPECT_TRUE(QFile::exists(third));
}

TEST_F(Controller, ShowsWhatOtherProgramsDo)
{
    openWindow();
    select(0);
    ASSERT_FALSE(Karvex::setUserTags(QStringList{work}, m_paths[0]));
    EXPECT_TRUE(until([&] { return m_tags->tags() == QStringList{work}; }));

    // The selected document goes while a tag for it is being typed.
    m_tags->focusEntry();
    QTest::keyClicks(m_tags->entry(), QStringLiteral("half"));
    ASSERT_EQ(std::remove(XPPath::encode(m_paths[0]).constData()), 0);
    ASSERT_TRUE(until([&] { return rows() == 2; }));
    QTest::keyClick(m_tags->entry(), Qt::Key_Return);
    EXPECT_TRUE(until([&] { return m_window->isSettled(); }));
    for (const QString &path : {m_paths[1], m_paths[2]})
        EXPECT_EQ(tagsOf(path), QStringList()) << path.toStdString();
}

TEST_F(Controller, SaysWhichFilesCouldNotBeChanged)
{
    const QString name = Karvex::spotlightKey(Karvex::userTagsKey);
    ASSERT_FALSE(XPExtendedAttributes::write(m_paths[1], name, "garbage"));
    openWindow();
    m_view->docs().selectAll();
    ASSERT_TRUE(until([&] { return m_window->isSettled(); }));
    typeTag(work);
    ASSERT_TRUE(until([&] { return !m_alerts.isEmpty(); }));
    EXPECT_TRUE(m_alerts.first().contains(u"1 of 3")) << m_alerts.first().toStdString();
    EXPECT_TRUE(m_alerts.first().contains(u"b.pdf"));
    EXPECT_EQ(tagsOf(m_paths[2]), QStringList{work});
    select(1);
    EXPECT_FALSE(m_tags->isEnabled()) << "nobody can tell what an edit would overwrite";
}

TEST_F(Controller, FindsByWordsAndCopiesFilesByTheirBytes)
{
    const QString odd = m_folder.file(XPPath::decode(QByteArrayView("odd \xff.txt")));
    m_paths.append(odd);
    makeWindow(m_folder.path());
    run("KPFind");
    auto *field = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    ASSERT_TRUE(field);
    QTest::keyClicks(field, QStringLiteral("odd"));
    QTest::keyClick(field, Qt::Key_Return);
    ASSERT_TRUE(until([&] { return m_window->isSettled() && rows() == 1; }));
    m_view->docs().selectAll();
    ASSERT_TRUE(until([&] { return m_window->isSettled(); }));
    run("KPCopyFiles");
    const QMimeData *copied = QGuiApplication::clipboard()->mimeData();
    EXPECT_TRUE(copied->data(QStringLiteral("text/uri-list")).endsWith("/odd%20%FF.txt\r\n"));
    EXPECT_TRUE(
        copied->data(QStringLiteral("x-special/gnome-copied-files")).startsWith("copy\nfile:///"));
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(until([&] { return rows() == 4; }));
}

// Every command stands in a menu, once, and says truly whether it can work.
TEST_F(Controller, MenusTellWhatCanBeDone)
{
    openWindow();
    QHash<QKeySequence, QString> shortcuts;
    QHash<QString, QAction *> byText;
    for (QAction *menu : m_window->menuBar()->actions()) {
        for (QAction *action : menu->menu()->actions()) {
            if (action->isSeparator())
                continue;
            byText.insert(action->text().section(u'\t', 0, 0), action);
            if (const QKeySequence keys = action->shortcut(); !keys.isEmpty()) {
                EXPECT_FALSE(shortcuts.contains(keys)) << keys.toString().toStdString();
                shortcuts.insert(keys, action->text());
            }
        }
    }
    const auto enabled = [&](const char *id) {
        QAction *action = byText.value(qtTrId(id));
        EXPECT_TRUE(action) << id;
        return action && action->isEnabled();
    };
    const auto onDocuments = {"KPOpen",        "KPReveal",    "KPEditTags", "KPRenameFile",
                              "KPMoveToTrash", "KPCopyFiles", "KPGetInfo"};
    m_view->docs().selectNone();
    EXPECT_TRUE(until([&] { return m_window->isSettled(); }));
    for (const char *id : onDocuments)
        EXPECT_FALSE(enabled(id)) << id;
    EXPECT_FALSE(enabled("KPUndo"));
    select(1);
    for (const char *id : onDocuments)
        EXPECT_TRUE(enabled(id)) << id;
    run("KPGetInfo");
    run("KPGetInfo");
    EXPECT_EQ(m_window->findChildren<QWidget *>(QStringLiteral("KPInfoWindow")).size(), 1)
        << "one a document";
    QTest::keyClick(m_window.get(), Qt::Key_4, Qt::AltModifier);
    ASSERT_TRUE(until([&] { return ratingOf(m_paths[1]) == 4 && m_window->isSettled(); }));
    EXPECT_TRUE(until([&] {
        const auto ratings = byText.value(qtTrId("KPRate"))->menu()->actions();
        return ratings.size() == 6 && ratings.at(4)->isChecked();
    })) << "the menu shows the rating that holds";
    bool takesBack = false;
    for (const QAction *action : std::as_const(byText))
        takesBack |= action->isEnabled() &&
                     action->shortcut() == QKeySequence(QKeySequence::Undo) &&
                     action->text() != qtTrId("KPUndo");
    EXPECT_TRUE(takesBack) << "undo says what it takes back";
}

// A folder outside the index is told, with the remedy at hand; then the window follows it.
TEST_F(Controller, OffersToIndexAFolderThatIsNot)
{
    const TestFolder other;
    other.file(QStringLiteral("new.txt"));
    makeWindow(other.path());
    ASSERT_TRUE(until([&] { return m_window->isSettled(); }));
    EXPECT_EQ(rows(), 0);
    const auto isShown = [](const QPushButton *each) { return each->isVisible(); };
    const auto buttons = m_view->findChildren<QPushButton *>();
    const auto found = std::find_if(buttons.begin(), buttons.end(), isShown);
    ASSERT_NE(found, buttons.end());
    QPushButton *button = *found;
    EXPECT_FALSE(m_window->findChild<KPStatusLine *>()->problems().isEmpty());
    QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_TRUE(until([&] { return rows() == 1; }));
    EXPECT_FALSE(button->isVisible());
    EXPECT_TRUE(until([&] { return m_window->isSettled(); }));
    EXPECT_THAT(m_window->findChild<KPStatusLine *>()->problems(), testing::IsEmpty());
    EXPECT_TRUE(IndexSettings::roots().contains(other.path()));
}

// Without a place to save the index the window works all the same, and says so.
TEST_F(Controller, ShowsWhatIsDegraded)
{
    const QByteArray caches = qgetenv("XDG_CACHE_HOME");
    const auto restore = qScopeGuard([&] { qputenv("XDG_CACHE_HOME", caches); });
    qputenv("XDG_CACHE_HOME", XPPath::encode(m_paths[0] + QStringLiteral("/no folder")));
    openWindow();
    const auto *status = m_window->findChild<KPStatusLine *>();
    ASSERT_TRUE(until([&] { return !status->problems().isEmpty(); }));
    EXPECT_TRUE(status->problems().join(u'\n').contains(u"saved"))
        << status->problems().first().toStdString();
    const auto *button = status->findChild<QToolButton *>(QStringLiteral("problems"));
    EXPECT_TRUE(button->isVisible());
    EXPECT_TRUE(button->toolTip().contains(u"saved"));
}

// Every control says what it is; a document says its name, tags and rating.
TEST_F(Controller, SpeaksToAssistivePrograms)
{
    ASSERT_FALSE(Karvex::setUserTags(QStringList{work}, m_paths[0]));
    ASSERT_FALSE(Karvex::setRating(4, m_paths[0]));
    openWindow();
    select(0);
    for (const QWidget *widget : m_window->findChildren<QWidget *>()) {
        if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible() ||
            widget->parentWidget()->inherits("QComboBox"))
            continue;
        auto *spoken = QAccessible::queryAccessibleInterface(const_cast<QWidget *>(widget));
        ASSERT_TRUE(spoken);
        EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty())
            << widget->metaObject()->className();
    }
    auto *grid = QAccessible::queryAccessibleInterface(m_view);
    ASSERT_EQ(grid->childCount(), 3);
    EXPECT_EQ(grid->child(0)->text(QAccessible::Name), u"a.txt, tags work, 4 stars, 1 of 3");
}
