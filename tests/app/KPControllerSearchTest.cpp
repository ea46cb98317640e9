#include "ControllerFixture.h"
#include "KPSearchField.h"
#include "KPSearcher.h"
#include "KPWindowPanels.h"
#include "UserDefaults.h"

#include <QAccessible>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>

namespace {

// The window's searches, driven at the search field.
class Searching : public Controller
{
protected:
    void open()
    {
        openWindow();
        // As a person finds it: by what it is called.
        for (QLineEdit *field : m_window->findChildren<QLineEdit *>()) {
            if (field->accessibleName() == qtTrId("KPSearch"))
                m_field = field;
        }
        ASSERT_TRUE(m_field);
    }
    void paste(const QString &text)
    {
        m_field->selectAll();
        m_field->insert(text);
    }
    qsizetype backCount() const { return m_window->history().backListCount(); }
    QStringList recent() const { return m_window->findChild<KPSearchField *>()->recentSearches(); }
    QString words() const { return m_window->searcher().searchState()->searchString(); }
    bool shows(int count)
    {
        return until([&] { return m_window->isSettled() && rows() == count; });
    }
    bool isEnabled(const char *id) const { return m_window->commands().action(id)->isEnabled(); }

    QLineEdit *m_field = nullptr;
};

} // namespace

TEST_F(Searching, AWordThatIsTypedIsOneStepBack)
{
    open();
    EXPECT_EQ(backCount(), 0);
    EXPECT_FALSE(isEnabled("KPBack"));
    QTest::keyClicks(m_field, QStringLiteral("b.pdf"));
    EXPECT_EQ(words(), u"b.pdf") << "every key searches";
    EXPECT_EQ(backCount(), 1);
    EXPECT_EQ(recent(), QStringList{QStringLiteral("b.pdf")});
    ASSERT_TRUE(shows(1));

    paste(QStringLiteral("c.odt"));
    EXPECT_EQ(backCount(), 2);
    EXPECT_EQ(recent().size(), 2);
    QTest::keyClick(m_field, Qt::Key_Backspace);
    EXPECT_EQ(backCount(), 3) << "taking a letter away is another search";
    m_window->backAction();
    m_window->backAction();
    EXPECT_EQ(words(), u"b.pdf");
    EXPECT_EQ(m_field->text(), u"b.pdf");
    ASSERT_TRUE(shows(1));
    EXPECT_TRUE(isEnabled("KPForward"));
    m_window->backAction();
    EXPECT_EQ(words(), QString());
    EXPECT_FALSE(isEnabled("KPBack"));
    m_window->forwardAction();
    paste(QStringLiteral("a"));
    EXPECT_FALSE(isEnabled("KPForward")) << "a new search drops what was ahead";
    m_window->commands().action("KPForgetSearches")->trigger();
    EXPECT_FALSE(isEnabled("KPBack"));
    EXPECT_TRUE(recent().isEmpty());
    EXPECT_EQ(words(), m_field->text()) << "what is shown stays";
}

// An accent is one character, however the state keeps it, and typing on leaves the cursor alone.
TEST_F(Searching, AnAccentIsOneCharacter)
{
    open();
    paste(QStringLiteral("caf"));
    const QString accented = QStringLiteral("café");
    m_field->insert(accented.right(1));
    EXPECT_EQ(backCount(), 1);
    EXPECT_EQ(m_field->text(), accented);
    m_field->setCursorPosition(0);
    QTest::keyClicks(m_field, QStringLiteral("x"));
    EXPECT_EQ(m_field->cursorPosition(), 1);
}

TEST_F(Searching, TypingIsOverWhenTheResultsAreThere)
{
    open();
    QSignalSpy delivered(&m_window->searcher(), &KPSearcher::delivered);
    QTest::keyClicks(m_field, QStringLiteral("a"));
    EXPECT_TRUE(m_window->userIsCurrentlyTyping());
    ASSERT_TRUE(until([&] { return !delivered.isEmpty(); }));
    EXPECT_FALSE(m_window->userIsCurrentlyTyping());
    ASSERT_TRUE(shows(1));
    QTest::keyClick(m_field, Qt::Key_Escape);
    EXPECT_FALSE(m_window->userIsCurrentlyTyping());
    EXPECT_TRUE(shows(3)) << "Escape takes the words away";
    QTest::keyClick(m_field, Qt::Key_Escape);
    EXPECT_TRUE(m_view->hasFocus()) << "and then leaves the field";
}

TEST_F(Searching, FilteringByNameLooksDifferentAndIsSaid)
{
    open();
    paste(QStringLiteral("a"));
    run("KPSearchModeFilenameFilter");
    EXPECT_FALSE(m_window->searcher().searchState()->searchContents());
    EXPECT_EQ(m_field->placeholderText(), qtTrId("KPSearchPlaceholderFilenameFilter"));
    EXPECT_NE(m_field->palette().color(QPalette::Text),
              QApplication::palette().color(QPalette::Text));
    EXPECT_TRUE(m_window->commands().action("KPSearchModeFilenameFilter")->isChecked());
    run("KPSearchModeSpotlight");
    EXPECT_TRUE(m_window->searcher().searchState()->searchContents());
    EXPECT_EQ(m_field->palette().color(QPalette::Text),
              QApplication::palette().color(QPalette::Text));
    // Contents alone off is neither.
    UserDefaults::standard().setValue(QStringLiteral("KPDoSpotlightSearches"),
                                      PropertyValue::boolean(false));
    EXPECT_EQ(m_field->placeholderText(), qtTrId("KPSearchPlaceholderSearch"));
}

TEST_F(Searching, FromOutsideSearchesWithWhatIsASearch)
{
    open();
    const QString longest(74, u'x');
    m_window->performSpotlightSearchFromExternalAppWithString(longest + u'x');
    m_window->performSpotlightSearchFromExternalAppWithString({});
    EXPECT_EQ(words(), QString());
    m_window->performSpotlightSearchFromExternalAppWithString(longest);
    EXPECT_EQ(words(), longest);
    EXPECT_EQ(m_field->text(), longest);
    ASSERT_EQ(QGuiApplication::applicationState(), Qt::ApplicationActive);
    m_window->performSpotlightSearchFromExternalAppWithString(QStringLiteral("b"));
    EXPECT_EQ(words(), longest) << "what somebody is looking for here is not taken away";
}

TEST_F(Searching, GoesToAllAndToUntaggedDocuments)
{
    ASSERT_FALSE(Karvex::setUserTags(QStringList{work}, m_paths[0]));
    open();
    EXPECT_FALSE(m_window->isCurrentSearchSavable());
    QSignalSpy savable(m_window.get(), &KPController::currentSearchSavableChanged);
    paste(QStringLiteral("nothing like it"));
    ASSERT_TRUE(shows(0));
    EXPECT_TRUE(m_window->isCurrentSearchSavable());
    EXPECT_EQ(savable.size(), 1);
    run("KPUntaggedDocuments");
    EXPECT_EQ(m_field->text(), QString());
    ASSERT_TRUE(shows(2));
    run("KPAllDocuments");
    ASSERT_TRUE(shows(3));
}

// A kind is no tag of that name; and turning from one to the other is one step back.
TEST_F(Searching, TheMenuOfATagNarrowsByKindsAndTags)
{
    ASSERT_FALSE(Karvex::setUserTags(QStringList{work}, m_paths[0]));
    open();
    const auto choose = [&](KPTagName *tag, int which) {
        m_window->showTagMenu(tag, {10, 10});
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        ASSERT_TRUE(menu);
        menu->actions().at(which)->trigger();
        menu->close();
    };
    constexpr int with = 0, without = 1;
    KPTagName *pdf = KPTagName::arrayOfUTIsToKPTagNames({QStringLiteral("com.adobe.pdf")}).first();
    KPTagName *tag = KPTagName::tagNameForUserEnteredTag(work);
    choose(pdf, with);
    EXPECT_TRUE(shows(1));
    choose(pdf, without);
    EXPECT_TRUE(shows(2));
    choose(tag, with);
    EXPECT_TRUE(shows(1));
    const qsizetype before = backCount();
    choose(tag, without);
    EXPECT_TRUE(shows(1)) << "no PDF, no work";
    EXPECT_EQ(backCount(), before + 1);
    choose(tag, without);
    EXPECT_EQ(backCount(), before + 1) << "it is so already";
}

TEST_F(Searching, PanelsAreShownAsTheSettingsSay)
{
    using Place = KPWindowPanels::Place;
    open();
    const KPWindowPanels &panels = m_window->panels();
    const auto isVisible = [&](Place place) { return panels.panel(place)->isVisible(); };
    EXPECT_TRUE(isVisible(Place::SourceList) && isVisible(Place::TagPanel));
    EXPECT_FALSE(isVisible(Place::Locations));
    QAction *tags = m_window->commands().action("KPTagPanelShown");
    EXPECT_TRUE(tags->isChecked());
    run("KPTagPanelShown");
    EXPECT_FALSE(isVisible(Place::TagPanel) || tags->isChecked());
    EXPECT_FALSE(UserDefaults::standard().boolValue(QStringLiteral("KPShowKeywordsPanel")));
    UserDefaults::standard().setValue(QStringLiteral("KPShowKeywordsPanel"),
                                      PropertyValue::boolean(true));
    EXPECT_TRUE(isVisible(Place::TagPanel));
    EXPECT_GE(m_window->minimumWidth(), 600);
    EXPECT_EQ(m_window->minimumHeight(), 350);
    run("KPShowActionBar");
    EXPECT_TRUE(isVisible(Place::ActionBar));

    run("KPShowBookmarksPanel");
    EXPECT_TRUE(isVisible(Place::BookmarksPanel));
    EXPECT_FALSE(m_view->isVisible()) << "it takes the results' place";
    EXPECT_EQ(m_window->commands().action("KPShowBookmarksPanel")->text(),
              qtTrId("KPHideBookmarksPanel"));
    run("KPShowBookmarksPanel");
    EXPECT_TRUE(m_view->isVisible());
}
