#include "KPLibraryController.h"

#include "KPDocsList.h"
#include "KPDocsView.h"
#include "KPLibraryModel.h"
#include "KPQuickLook.h"
#include "LibraryNavigator.h"
#include "ShownSearch.h"
#include "TestDocs.h"
#include "UserDefaults.h"
#include "XPFactorySettings.h"
#include "XPFolders.h"
#include "XPProgress.h"
#include "XPPrompts.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {

struct Asked : public XPPrompts
{
    explicit Asked(QList<Question> *questions, int *alerts)
        : m_questions(questions), m_alerts(alerts)
    {
    }
    void ask(const Question &question, std::function<void(int)> answer) override
    {
        m_questions->append(question);
        answer(isAgreed ? 0 : question.cancelButton);
    }
    void alert(const QString &, const QString &) override { ++*m_alerts; }

    static inline bool isAgreed = false;

private:
    QList<Question> *m_questions;
    int *m_alerts;
};

// Takes what is opened in place of the desktop's programs.
class Programs : public QObject
{
    Q_OBJECT

public:
    Programs() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~Programs() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    Programs(const Programs &) = delete;
    Programs &operator=(const Programs &) = delete;

    Q_INVOKABLE void open(const QUrl &url)
    {
        opened.append(url.fileName());
        if (task && opened.size() == stopAfter)
            task->isStopAsked = true;
    }

    QStringList opened;
    XPProgress::Task task; // of the work that is shown now
    qsizetype stopAfter = 0;
};

struct Shown : public XPProgress
{
    explicit Shown(Programs &programs) : m_programs(programs) {}
    void begin(const Task &task) override { m_programs.task = task; }
    void end(const Task & /*task*/) override { m_programs.task.reset(); }

private:
    Programs &m_programs;
};

// The centre of the window over results that a test gives.
class LibraryController : public testing::Test
{
protected:
    void SetUp() override
    {
        XPFactorySettings::registerAll();
        KPTagName::intializeGlobals();
        XPPrompts::install(std::make_unique<Asked>(&questions, &alerts));
        make();
    }
    void TearDown() override
    {
        library.reset();
        XPPrompts::install(nullptr);
        for (const char *key : {"KPLibraryMode", "KPThumbnailSize", "KPSavedSortDescriptorsDataRep",
                                "KPVisibleColumnsInDocsList", "KPDocsListColumnWidths"})
            UserDefaults::standard().remove(QLatin1String(key));
    }
    void make()
    {
        library = std::make_unique<KPLibraryController>(navigator, model, pictures);
        library->widget()->resize(900, 600);
        library->widget()->show();
        QApplication::setActiveWindow(library->widget());
    }
    void show(int count)
    {
        for (int number = 0; number < count; ++number)
            search.add(
                shownDoc(QStringLiteral("/gone/doc %1.pdf").arg(number, 3, 10, QLatin1Char('0')),
                         {}, number % 6));
        search.deliver();
    }
    void selectFirst(int count)
    {
        KPDoc::Docs docs;
        for (int row = 0; row < count; ++row)
            docs.append(model.document(row));
        library->setSelections(docs, true);
    }

    ShownSearch search;
    LibraryNavigator navigator{search.searcher};
    KPLibraryModel model{&search.searcher};
    KPQuickLook pictures{{}};
    QList<XPPrompts::Question> questions;
    int alerts = 0;
    std::unique_ptr<KPLibraryController> library;
};

} // namespace

TEST_F(LibraryController, KeepsToItsModes)
{
    show(10);
    QSignalSpy changed(library.get(), &KPLibraryController::libraryModeChanged);
    library->docsView()->setFocus();
    library->setLibraryMode(KPLibraryController::LibraryMode_List);
    EXPECT_EQ(library->libraryMode(), 1);
    EXPECT_TRUE(library->docsTable()->isVisible() && !library->docsView()->isVisible());
    library->setLibraryMode(KPLibraryController::LibraryMode_Groups);
    EXPECT_TRUE(library->docsView()->isVisible());
    EXPECT_EQ(library->sortOrder().group, KPSortKey());
    for (const int odd : {-1, 3, 77})
        library->setLibraryMode(odd);
    EXPECT_EQ(library->libraryMode(), 2);
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(LibraryController, ZoomsInStepsBetweenTheEnds)
{
    EXPECT_DOUBLE_EQ(library->currentSliderMagnification(), 0.2);
    library->zoomIn();
    EXPECT_DOUBLE_EQ(library->currentSliderMagnification(), 0.22);
    library->maxZoom();
    library->zoomIn();
    EXPECT_EQ(library->currentSliderMagnification(), 1);
    library->minZoom();
    library->zoomOut();
    EXPECT_EQ(library->currentSliderMagnification(), 0);
}

TEST_F(LibraryController, RemembersEverythingAtTheEnd)
{
    library->setLibraryMode(KPLibraryController::LibraryMode_List);
    library->setCurrentSliderMagnification(0.5);
    library->arrangeByColumnAction(KPSortKey::Field::Modified);
    library->arrangeBySortDescendingAction();
    const QStringList columns{QStringLiteral("tags"), QStringLiteral("name"),
                              QStringLiteral("rating")};
    library->docsTable()->setVisibleColumns(columns);
    library->docsTable()->setColumnWidth(KPLibraryModel::NameColumn, 444);
    library->writeOutStateWhenQuiting();
    library.reset();
    make();
    EXPECT_EQ(library->libraryMode(), 1);
    EXPECT_DOUBLE_EQ(library->currentSliderMagnification(), 0.5);
    EXPECT_EQ(library->currentSortDescriptorKey(), KPSortKey::Field::Modified);
    EXPECT_FALSE(library->currentSortIsAscending());
    EXPECT_EQ(library->docsTable()->visibleColumns(), columns);
    EXPECT_EQ(library->docsTable()->columnWidth(KPLibraryModel::NameColumn), 444);

    // Damaged settings are as good as none.
    library.reset();
    UserDefaults::standard().setValue(QStringLiteral("KPSavedSortDescriptorsDataRep"),
                                      QByteArray("\xff nonsense"));
    UserDefaults::standard().setValue(QStringLiteral("KPLibraryMode"), PropertyValue::integer(99));
    UserDefaults::standard().setValue(QStringLiteral("KPVisibleColumnsInDocsList"),
                                      QStringList{QStringLiteral("what?")});
    make();
    EXPECT_EQ(library->libraryMode(), 0);
    EXPECT_EQ(library->sortOrder(), KPSortOrder());
    EXPECT_EQ(library->docsTable()->visibleColumns(), QStringList{QStringLiteral("name")});
}

TEST_F(LibraryController, AsksBeforeItOpensSix)
{
    show(8);
    xpGuiThread.assertHere();
    selectFirst(5);
    library->openSelectedExternallyAction();
    EXPECT_TRUE(questions.isEmpty());
    EXPECT_EQ(alerts, 1) << "the files are not there: told once, not five times";
    selectFirst(6);
    library->openSelectedExternallyAction();
    ASSERT_EQ(questions.size(), 1);
    EXPECT_TRUE(questions.first().title.contains(u'6'));
    EXPECT_EQ(alerts, 1);
}

TEST_F(LibraryController, OpensManyOneAfterTheOtherUntilItIsStopped)
{
    xpGuiThread.assertHere();
    Programs programs;
    XPProgress::install(std::make_unique<Shown>(programs));
    Asked::isAgreed = true;
    show(30);
    selectFirst(30);
    library->openSelectedExternallyAction();
    EXPECT_EQ(questions.size(), 1);
    EXPECT_EQ(programs.opened.size(), 1) << "the others wait for the event loop";
    ASSERT_TRUE(programs.task);
    EXPECT_EQ(programs.task->total, 30);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !programs.task; }));
    EXPECT_EQ(programs.opened.size(), 30);
    EXPECT_EQ(programs.opened.last(), QStringLiteral("doc 029.pdf"));

    programs.opened.clear();
    programs.stopAfter = 3;
    library->openSelectedExternallyAction();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !programs.task; }));
    EXPECT_EQ(programs.opened.size(), 3);

    programs.opened.clear();
    library->openSelectedExternallyAction();
    library.reset();
    EXPECT_FALSE(programs.task) << "what is over is not shown";
    EXPECT_EQ(programs.opened.size(), 1);
    EXPECT_EQ(alerts, 0);
    Asked::isAgreed = false;
    XPProgress::install(nullptr);
}

TEST_F(LibraryController, AsksBeforeItStartsAProgramOfOneFileManyTimes)
{
    const QString folder = XPFolders::applicationSupport() + QStringLiteral("/applications");
    ASSERT_TRUE(QDir().mkpath(folder));
    for (const auto &[name, words] : {std::pair("one", "%f"), std::pair("many", "%F")}) {
        QFile entry(folder + u'/' + QString::fromLatin1(name) + QStringLiteral(".desktop"));
        ASSERT_TRUE(entry.open(QIODevice::WriteOnly));
        entry.write(QByteArray("[Desktop Entry]\nType=Application\nName=x\nExec=true ") + words);
    }
    show(6);
    selectFirst(6);
    UserDefaults &defaults = UserDefaults::standard();
    defaults.setValue(QStringLiteral("KPOpenWithMode"), PropertyValue::integer(1));
    xpGuiThread.assertHere();
    for (const auto &[name, count] : {std::pair("many", 0), std::pair("one", 1)}) {
        defaults.setValue(QStringLiteral("KPOpenWith"),
                          QString::fromLatin1(name) + QStringLiteral(".desktop"));
        library->openSelectedUsingUsersPreferredMethodAction();
        EXPECT_EQ(questions.size(), count) << name;
    }
    EXPECT_EQ(alerts, 0);
    defaults.remove(QStringLiteral("KPOpenWithMode"));
    defaults.remove(QStringLiteral("KPOpenWith"));
}

TEST_F(LibraryController, ShowsTheSameSelectionInTheList)
{
    show(40);
    library->setLibraryMode(KPLibraryController::LibraryMode_List);
    auto *list = library->docsTable();
    const auto place = [&](int row) {
        return list->visualRect(list->model()->index(row, KPLibraryModel::NameColumn)).center();
    };
    const auto rows = [&] {
        QList<int> result;
        for (const QModelIndex &index :
             list->selectionModel()->selectedRows(KPLibraryModel::NameColumn))
            result.append(index.row());
        std::sort(result.begin(), result.end());
        return result;
    };
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place(2));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::ShiftModifier, place(4));
    EXPECT_EQ(rows(), QList<int>({2, 3, 4}));
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(rows(), QList<int>({5}));
    QTest::keyClick(list, Qt::Key_End);
    EXPECT_EQ(rows(), QList<int>({39}));
    // The other way round, the same documents are selected.
    library->arrangeBySortDescendingAction();
    search.setOrder(library->sortOrder());
    search.deliver();
    EXPECT_EQ(rows(), QList<int>({0}));
    // What is selected goes away: the next one takes its place.
    search.remove(model.document(0));
    search.deliver();
    EXPECT_EQ(rows(), QList<int>({0}));
    EXPECT_EQ(library->numberOfSelections(), 1);
}

TEST_F(LibraryController, EditsCellsOfTheListWhereTheyStand)
{
    show(5);
    library->docsTable()->setVisibleColumns(
        {QStringLiteral("flag"), QStringLiteral("name"), QStringLiteral("rating")});
    library->setLibraryMode(KPLibraryController::LibraryMode_List);
    auto *list = library->docsTable();
    QSignalSpy edits(library.get(), &KPLibraryController::editRequested);
    const QRect rating = list->visualRect(list->model()->index(1, KPLibraryModel::RatingColumn));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      rating.topLeft() + QPoint(8 + 3 * 14 + 5, 10));
    ASSERT_EQ(edits.count(), 1);
    EXPECT_EQ(edits.first().first().value<KPFileEdit>().rating, 4);
    QSignalSpy sorted(library.get(), &KPLibraryController::sortOrderChanged);
    QTest::mouseClick(
        list->header()->viewport(), Qt::LeftButton, {},
        QPoint(list->header()->sectionViewportPosition(KPLibraryModel::RatingColumn) + 20, 8));
    EXPECT_EQ(library->currentSortDescriptorKey(), KPSortKey::Field::Rating);
    EXPECT_EQ(sorted.count(), 1);
}

TEST_F(LibraryController, SelectsWhatIsStillToCome)
{
    show(2);
    KPDoc *later = shownDoc(QStringLiteral("/gone/later.pdf"));
    QSignalSpy editing(library.get(), &KPLibraryController::tagEditorRequested);
    library->selectDocsAndEditTags({later});
    EXPECT_EQ(editing.count(), 1) << "nothing is being searched: it does not wait";
    EXPECT_FALSE(library->hasSelection());
    search.add(later);
    search.deliver();
    library->selectDocsAndEditTags({later});
    EXPECT_TRUE(library->currentSearchController().isSelected(later));
}

TEST_F(LibraryController, SelectsFilesThatTheIndexHearsOfLater)
{
    show(2);
    const auto selected = [&](const KPDoc *doc) {
        return library->currentSearchController().isSelected(doc);
    };
    library->selectAll();
    library->selectWhenShown({QStringLiteral("/gone/pasted.pdf")});
    EXPECT_FALSE(library->hasSelection());
    search.add(shownDoc(QStringLiteral("/gone/other.pdf")));
    search.deliver();
    EXPECT_FALSE(library->hasSelection());
    KPDoc *pasted = shownDoc(QStringLiteral("/gone/pasted.pdf"));
    search.add(pasted);
    search.deliver();
    EXPECT_TRUE(selected(pasted));
    EXPECT_EQ(library->numberOfSelections(), 1);

    library->selectWhenShown({QStringLiteral("/gone/late.pdf")});
    library->selectAll();
    KPDoc *late = shownDoc(QStringLiteral("/gone/late.pdf"));
    search.add(late);
    search.deliver();
    EXPECT_FALSE(selected(late)) << "something else was chosen by then";
}

// However many records say something else, they are told of together and not at once.
TEST_F(LibraryController, GathersChangesOfWhatIsSelected)
{
    show(200);
    library->selectAll();
    QSignalSpy told(library.get(), &KPLibraryController::selectedDocumentsChanged);
    for (int row = 0; row < 200; ++row) {
        search.change(model.document(row));
        search.deliver();
    }
    EXPECT_EQ(told.count(), 0);
    ASSERT_TRUE(told.wait(20'000));
    EXPECT_EQ(told.count(), 1);
    EXPECT_EQ(told.first().first().value<QList<KPDoc *>>().size(), 200);
}

TEST_F(LibraryController, SearchesForWhatIsSelected)
{
    show(3);
    selectFirst(2);
    library->showAllDocumentsInFolderAction();
    ASSERT_TRUE(navigator.asked);
    EXPECT_EQ(navigator.asked->constraintFolders(), QStringList{QStringLiteral("/gone")});
    library->onlyShowSelectedDocumentsAction();
    EXPECT_EQ(navigator.asked->fileListSearch().size(), 2);
}

#include "KPLibraryControllerTest.moc"
