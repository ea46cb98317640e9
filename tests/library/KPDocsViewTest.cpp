#include "KPDocsView.h"

#include "KPArrangedDocs.h"
#include "KPDocPasteboard.h"
#include "KPDocServices.h"
#include "KPDocsKeys.h"
#include "KPEmptyPlace.h"
#include "KPNameField.h"
#include "KPQuickLook.h"
#include "KPTagMime.h"
#include "ShownSearch.h"
#include "TestDocs.h"
#include "UserDefaults.h"
#include "XPFactorySettings.h"

#include <QAccessible>
#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {

// A grid of 800 by 600 with its keys, driven by events.
class DocsView : public testing::Test
{
protected:
    DocsView()
    {
        XPFactorySettings::registerAll();
        setting("KPSizeThumbnailsToFit", PropertyValue::boolean(false));
        keys.handleKeyDown = [this](const QKeyEvent &event) {
            handled.append(event.key());
            return event.key() == Qt::Key_Return;
        };
        keys.removeOrDelete = [this](bool command) { removed.append(command); };
        keys.cancel = [this] { ++cancelled; };
        keys.scrollSelectionToVisible = [this] { view.scrollToRow(docs.selection().current()); };
        view.resize(800, 600);
        view.show();
        QApplication::setActiveWindow(&view);
        view.setFocus();
        view.setThumbnailWidth(100);
    }
    ~DocsView() override
    {
        for (const char *key : {"KPSizeThumbnailsToFit", "KPGroupStates", "KPDefaultGroupState",
                                "KPTypeAheadTimeoutDelay", "KPShowTags"})
            UserDefaults::standard().remove(QLatin1String(key));
    }
    static void setting(const char *key, const PropertyValue &value)
    {
        UserDefaults::standard().setValue(QLatin1String(key), value);
    }
    void show(int count) { docs.setArrangedObjects(testArrangement(numberedNames(count)), false); }
    // Two groups, of the first `first` documents and of the others.
    void showGroups(int count, int first)
    {
        KPResultsArrangement arranged = testArrangement(numberedNames(count));
        KPResultGrouper grouper(KPSortKey::Field::Size, QDateTime::currentDateTime());
        auto groups = std::make_shared<KPResultGroups>();
        groups->key = {KPSortKey::Field::Size, true};
        groups->runs = {{grouper.placeOf(*testDoc(QStringLiteral("small"), 10), 0).group, 0, first},
                        {grouper.placeOf(*testDoc(QStringLiteral("large"), 1 << 30), 0).group,
                         first, count - first}};
        arranged.groups = groups;
        docs.setArrangedObjects(arranged, false);
        view.setGrouped(true);
    }
    QList<int> selected() const
    {
        QList<int> rows;
        for (int row = 0; row < docs.count(); ++row) {
            if (docs.selection().isSelected(row))
                rows.append(row);
        }
        return rows;
    }
    QPoint centre(int row) const { return view.visibleRect(row).center().toPoint(); }
    void press(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&view, Qt::Key(key), modifiers);
    }
    void click(const QPoint &at, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, at);
    }
    void drag(const QPoint &from, const QPoint &to, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mousePress(view.viewport(), Qt::LeftButton, modifiers, from);
        QMouseEvent move(QEvent::MouseMove, to, view.viewport()->mapToGlobal(to), Qt::NoButton,
                         Qt::LeftButton, modifiers);
        QApplication::sendEvent(view.viewport(), &move);
    }
    void release(const QPoint &at) { QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, at); }

    KPArrangedDocs docs;
    KPDocsKeys keys{docs};
    KPQuickLook pictures{{}};
    KPDocsView view{docs, pictures, keys};
    QList<int> handled;
    QList<bool> removed;
    int cancelled = 0;
};

using Rows = QList<int>;

} // namespace

TEST_F(DocsView, ClicksSelect)
{
    show(20);
    click(centre(2));
    EXPECT_EQ(selected(), Rows({2}));
    click(centre(5), Qt::ControlModifier);
    EXPECT_EQ(selected(), Rows({2, 5}));
    click(centre(7), Qt::ShiftModifier);
    EXPECT_EQ(selected(), Rows({2, 5, 6, 7}));
    click(centre(5), Qt::ControlModifier);
    EXPECT_EQ(selected(), Rows({2, 6, 7}));
    click(centre(6)); // one of several: the click alone decides
    EXPECT_EQ(selected(), Rows({6}));
    click({795, 595});
    EXPECT_EQ(selected(), Rows());
    QTest::mouseClick(view.viewport(), Qt::RightButton, {}, centre(3));
    EXPECT_EQ(selected(), Rows({3}));
    QSignalSpy opened(&view, &KPDocsView::openRequested);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, centre(4));
    EXPECT_EQ(opened.count(), 1);
    EXPECT_EQ(selected(), Rows({4}));
}

TEST_F(DocsView, KeysGoInTheirOrder)
{
    setting("KPTypeAheadTimeoutDelay", PropertyValue::real(3600));
    docs.setArrangedObjects(
        testArrangement({QStringLiteral("2024-01.pdf"), QStringLiteral("2024-03.pdf"),
                         QStringLiteral("alpha.pdf")}),
        false);
    QTest::keyClicks(&view, QStringLiteral("2024-03"));
    EXPECT_EQ(selected(), Rows({1}));
    EXPECT_TRUE(handled.isEmpty()) << "a digit of a name is not for others";
    press(Qt::Key_Home);
    EXPECT_EQ(selected(), Rows({0}));
    press(Qt::Key_End, Qt::ShiftModifier);
    EXPECT_EQ(selected(), Rows({2})) << "never extends";
    press(Qt::Key_Return);
    EXPECT_EQ(handled.last(), Qt::Key_Return);
    press(Qt::Key_Delete);
    press(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(removed, QList<bool>({false, true}));
    press(Qt::Key_Escape);
    EXPECT_EQ(cancelled, 1);
    docs.selectNone();
    press(Qt::Key_Delete);
    EXPECT_EQ(removed.size(), 2);
}

TEST_F(DocsView, ArrowsMoveTheSelection)
{
    show(20);
    const int columns = view.numColumns();
    ASSERT_GT(columns, 3);
    struct Row
    {
        int key = 0;
        Qt::KeyboardModifiers modifiers;
        Rows after;
    };
    docs.selectRow(0);
    for (const Row &row :
         {Row{Qt::Key_Left, {}, {19}}, Row{Qt::Key_Right, {}, {0}}, Row{Qt::Key_Right, {}, {1}},
          Row{Qt::Key_Up, {}, {1}}, Row{Qt::Key_Down, {}, {1 + columns}},
          Row{Qt::Key_Right, Qt::ShiftModifier, {1 + columns, 2 + columns}},
          Row{Qt::Key_Up, {}, {1}}}) {
        press(row.key, row.modifiers);
        EXPECT_EQ(selected(), row.after) << row.key;
    }
    show(1);
    press(Qt::Key_Down); // a single one is reached
    EXPECT_EQ(selected(), Rows({0}));
}

TEST_F(DocsView, RubberBandBeginsBetweenDocuments)
{
    show(40);
    const QPoint gap = view.visibleRect(0).topLeft().toPoint() - QPoint(8, 8);
    drag(gap, centre(1));
    EXPECT_EQ(selected(), Rows({0, 1}));
    release(centre(1));
    drag(view.visibleRect(3).topLeft().toPoint() - QPoint(8, 8), centre(3), Qt::ControlModifier);
    EXPECT_EQ(selected(), Rows({0, 1, 3}));
    release(centre(3));
    drag(gap, centre(0));
    release(centre(0));
    EXPECT_EQ(selected(), Rows({0}));
    // Below the view it scrolls, as long as the button is down.
    drag(gap, {400, 700});
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return selected().contains(view.numColumns() * 5); }, 20'000));
    EXPECT_TRUE(QTest::qWaitFor([&] { return view.verticalScrollBar()->value() > 0; }, 20'000));
    release({400, 700});
    const int stays = view.verticalScrollBar()->value();
    QApplication::processEvents();
    EXPECT_EQ(view.verticalScrollBar()->value(), stays);
}

TEST_F(DocsView, KeepsTheCurrentDocumentInSight)
{
    show(400);
    docs.selectRow(300);
    view.scrollToRow(300);
    const auto isInSight = [&] {
        return QRectF(view.viewport()->rect()).contains(view.visibleRect(300));
    };
    ASSERT_TRUE(isInSight());
    for (const double zoom : {0.0, 0.3, 0.5, 0.1}) {
        view.setThumbnailWidthUnitless(zoom);
        EXPECT_TRUE(isInSight()) << zoom;
    }
    for (const int width : {400, 1300, 800}) {
        view.resize(width, 600);
        EXPECT_TRUE(isInSight()) << width;
    }
    // Documents that come above do not push it away.
    QApplication::processEvents();
    const double top = view.visibleRect(300).top();
    QStringList names = numberedNames(400);
    for (int number = 0; number < 70; ++number)
        names.prepend(QStringLiteral("another %1").arg(number));
    docs.setArrangedObjects(testArrangement(names), true);
    EXPECT_EQ(docs.selection().current(), 370);
    EXPECT_NEAR(view.visibleRect(370).top(), top, 1);
}

TEST_F(DocsView, GroupsCloseAndAreRemembered)
{
    showGroups(30, 12);
    const auto header = [&](int group) {
        const QRectF rect = view.geometryOfDocs().headerRect(group);
        return QPoint(60, static_cast<int>(rect.center().y()) - view.verticalScrollBar()->value());
    };
    const auto isOpen = [&](size_t group) { return view.geometryOfDocs().groups()[group].isOpen; };
    click(header(0));
    EXPECT_FALSE(isOpen(0));
    EXPECT_TRUE(isOpen(1));
    EXPECT_TRUE(view.visibleRect(3).isEmpty());
    showGroups(31, 12); // remembered by what the group is
    EXPECT_FALSE(isOpen(0));
    click(header(1), Qt::AltModifier);
    EXPECT_FALSE(isOpen(0) || isOpen(1));
    click(header(0), Qt::AltModifier);
    EXPECT_TRUE(isOpen(0) && isOpen(1));
    // The header of what is at the top stays there.
    view.verticalScrollBar()->setValue(100);
    click({60, 10});
    EXPECT_FALSE(isOpen(0));
    view.setGrouped(false);
    EXPECT_FALSE(view.geometryOfDocs().isGrouped());
}

TEST_F(DocsView, RenamesWhereTheNameStands)
{
    show(5);
    QSignalSpy renamed(&view, &KPDocsView::renameRequested);
    ASSERT_TRUE(view.editName(2));
    auto *field = view.findChild<KPNameField *>();
    EXPECT_EQ(field->selectedText(), QStringLiteral("doc 0002"));
    QTest::keyClicks(field, QStringLiteral("x"));
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(field->isHidden());
    view.editName(2);
    QTest::keyClicks(field, QStringLiteral("report"));
    QTest::keyClick(field, Qt::Key_Return);
    ASSERT_EQ(renamed.count(), 1);
    EXPECT_EQ(renamed.first().at(1).toString(), QStringLiteral("report.pdf"));
    EXPECT_TRUE(view.hasFocus());
    for (const char *none : {"", ".hidden", "doc 0002.pdf"}) {
        view.editName(2);
        field->setText(QLatin1String(none));
        QTest::keyClick(field, Qt::Key_Return);
        EXPECT_EQ(renamed.count(), 1) << none;
    }
    // What is edited goes away.
    view.editName(4);
    show(3);
    EXPECT_TRUE(field->isHidden());
    EXPECT_EQ(renamed.count(), 1);
}

TEST_F(DocsView, TakesFilesOfOthersAndGivesItsOwn)
{
    show(3);
    docs.selectAll();
    const std::unique_ptr<QMimeData> own(KPDocsView::mimeData(docs.selectedDocs()));
    EXPECT_EQ(KPDocPasteboard::paths(*own).size(), 3);
    EXPECT_FALSE(KPDocsView::takesDrop(own.get(), nullptr));
    EXPECT_FALSE(view.dragPicture(*docs.at(0), 3).isNull());

    QMimeData files;
    files.setData(QStringLiteral("text/uri-list"), "file:///tmp/a%FF.pdf\r\n");
    QSignalSpy dropped(&view, &KPDocsView::dropped);
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton,
                          Qt::AltModifier);
    QApplication::sendEvent(view.viewport(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event(QPointF(10, 10), Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton,
                     Qt::AltModifier);
    QApplication::sendEvent(view.viewport(), &event);
    ASSERT_EQ(dropped.count(), 1);
    EXPECT_TRUE(dropped.first().at(1).toBool());
    EXPECT_EQ(event.dropAction(), Qt::CopyAction);
}

TEST_F(DocsView, GivesTagsThatAreDroppedOnDocuments)
{
    struct Services : KPDocServices
    {
        explicit Services(QStringList *to) : paths(to) {}
        void replaceOriginalTags(const TagChange &change) override
        {
            EXPECT_EQ(KPTagName::displayStringsForTagNames(change.newTags),
                      QStringList{QStringLiteral("harbour")});
            *paths = change.filePaths;
        }
        QStringList *paths;
    };
    QStringList given;
    KPDocServices::install(std::make_unique<Services>(&given));
    show(3);
    const std::unique_ptr<QMimeData> tags(
        KPTagMime::mimeData({KPTagName::tagNameForUserEnteredTag(QStringLiteral("harbour"))}));
    const auto drop = [&](const QPointF &at) {
        given.clear();
        QDragEnterEvent enter(at.toPoint(), Qt::CopyAction, tags.get(), Qt::LeftButton,
                              Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDragMoveEvent move(at.toPoint(), Qt::CopyAction, tags.get(), Qt::LeftButton,
                            Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &move);
        QDropEvent event(at, Qt::CopyAction, tags.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &event);
        EXPECT_EQ(move.isAccepted(), event.isAccepted());
        EXPECT_EQ(event.isAccepted(), !given.isEmpty());
        return given.size();
    };
    docs.selectRow(0);
    EXPECT_EQ(drop(view.visibleRect(1).center()), 1);
    EXPECT_EQ(given, QStringList{docs.at(1)->filePath()});
    docs.selectAll();
    EXPECT_EQ(drop(view.visibleRect(1).center()), 3);
    EXPECT_EQ(drop({790, 590}), 0);
    KPDocServices::install(nullptr);
}

TEST_F(DocsView, TellsAssistiveProgramsOfItsDocuments)
{
    show(2);
    docs.setArrangedObjects({std::make_shared<KPDocArray>(KPDocArray{
                                 shownDoc(QStringLiteral("/d/spoken.pdf"),
                                          {QStringLiteral("work"), QStringLiteral("tax")}, 4),
                                 testDoc(QStringLiteral("b.pdf"))}),
                             nullptr},
                            false);
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->role(), QAccessible::List);
    ASSERT_EQ(list->childCount(), 2);
    QAccessibleInterface *first = list->child(0);
    const QString name = first->text(QAccessible::Name);
    EXPECT_TRUE(name.startsWith(u"spoken.pdf, ")) << name.toStdString();
    EXPECT_TRUE(name.contains(u"work, tax")) << name.toStdString();
    EXPECT_TRUE(name.endsWith(u"1 of 2")) << name.toStdString();
    EXPECT_EQ(list->indexOfChild(first), 0);
    EXPECT_FALSE(first->state().selected);
    docs.selectRow(0);
    EXPECT_TRUE(first->state().selected && first->state().focusable);
    EXPECT_EQ(list->child(1)->text(QAccessible::Name), QStringLiteral("b.pdf, 2 of 2"));
    EXPECT_EQ(list->child(7), nullptr);
    docs.setArrangedObjects({}, false);
    ASSERT_EQ(list->childCount(), 1);
    QAccessibleInterface *said = list->child(0);
    ASSERT_NE(said, nullptr);
    EXPECT_EQ(said->object(), &view.emptyPlace()) << "with its button";
    EXPECT_EQ(list->indexOfChild(said), 0);
}

TEST_F(DocsView, SaysWhatIsSoWhereNothingIs)
{
    KPEmptyPlace &place = view.emptyPlace();
    docs.setArrangedObjects({}, false);
    EXPECT_TRUE(place.isVisible());
    const KPEmptyPlace::Texts source{QStringLiteral("s"), {}};
    const KPEmptyPlace::Texts narrowed{QStringLiteral("n"), {}};
    const KPEmptyPlace::Texts reason{QStringLiteral("r"), {}};
    struct Row
    {
        KPEmptyPlace::Facts facts;
        QString title;
    };
    const Row rows[] = {
        {{true, true, true, reason, source, narrowed}, qtTrId("KPStartupSearchingNoDocuments")},
        {{false, true, true, reason, source, narrowed}, qtTrId("KPSearchingForDocuments")},
        {{false, false, true, reason, source, narrowed}, QStringLiteral("r")},
        {{false, false, true, {}, source, narrowed}, QStringLiteral("n")},
        {{false, false, false, {}, source, narrowed}, QStringLiteral("s")},
        {{}, qtTrId("KPNoDocuments")},
    };
    for (const Row &row : rows)
        EXPECT_EQ(KPEmptyPlace::texts(row.facts).title, row.title);
    place.setFacts({.isNarrowed = true});
    auto *button = view.viewport()->findChild<QPushButton *>();
    ASSERT_NE(button, nullptr);
    EXPECT_TRUE(button->isVisible());
    QSignalSpy cleared(&place, &KPEmptyPlace::clearFiltersRequested);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(cleared.count(), 1);
    show(1);
    EXPECT_FALSE(place.isVisible() || button->isVisible());
}

// Everything drawn once, with what is odd: it must not fail, nor draw outside what was asked for.
TEST_F(DocsView, DrawsOddNamesAtEveryZoom)
{
    docs.setArrangedObjects(
        testArrangement({QStringLiteral("a"), QString(200, u'w') + QStringLiteral(".pdf"),
                         QString::fromUtf8("דוח רבעוני מאוד ארוך של החברה 2024.pdf"),
                         QString(QChar(0xDCFF)) + QStringLiteral(".txt"),
                         QStringLiteral("x.aVeryLongExtension")}),
        false);
    docs.selectAll();
    for (const double zoom : {0.0, 0.5, 1.0}) {
        view.setThumbnailWidthUnitless(zoom);
        EXPECT_FALSE(view.grab().isNull());
    }
    view.setKeepsStill([] { return true; });
    const QImage still = view.viewport()->grab().toImage();
    const QRgb background = still.pixel(0, 0);
    for (int y = 0; y < still.height(); y += 7) {
        for (int x = 0; x < still.width(); x += 7)
            ASSERT_EQ(still.pixel(x, y), background);
    }
}
