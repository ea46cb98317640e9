#include "KPAppDelegate.h"

#include "KPController.h"
#include "KPDocServices.h"
#include "KPLaunchSettings.h"
#include "KPSearchFolders.h"
#include "KPSearcher.h"
#include "KPSourceList.h"
#include "TestHome.h"
#include "UserDefaults.h"
#include "XPFileUrls.h"
#include "XPFiledDocuments.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QTest>
#include <gtest/gtest.h>

namespace {

constexpr int patience = 60'000;

// Says no to every question.
struct Refusing : public XPPrompts
{
    explicit Refusing(QStringList *list) : m_titles(list) {}
    void ask(const Question &question, std::function<void(int)> answer) override
    {
        m_titles->append(question.title);
        answer(question.cancelButton);
    }
    void alert(const QString &title, const QString &) override { m_titles->append(title); }
    QStringList *m_titles;
};

// The application, without its event loop, as a start and an end have it. One for the process: the
// end is final.
class AppDelegate : public testing::Test
{
protected:
    AppDelegate() : m_delegate(std::make_unique<KPAppDelegate>(KPCommandLine(), nullptr))
    {
        UserDefaults::standard().setValue(QStringLiteral("KPVirginLaunch"),
                                          PropertyValue::boolean(false));
        XPFiledDocuments::setPacing(std::chrono::microseconds(0));
    }

    void launch()
    {
        m_delegate->applicationWillFinishLaunching();
        m_delegate->applicationDidFinishLaunching();
    }
    KPSearchState::Ptr shown() const { return m_delegate->controller()->searcher().searchState(); }
    bool showsFiles(const QStringList &files)
    {
        return QTest::qWaitFor([&] { return shown() && shown()->fileListSearch() == files; },
                               patience);
    }

    // The search behind the row of the last import.
    QStringList lastImport() const
    {
        const auto *list = m_delegate->controller()->findChild<KPSourceList *>();
        const QAbstractItemModel &rows = *list->model();
        for (int row = 0; row < rows.rowCount(rows.index(0, 0)); ++row) {
            const auto item = static_cast<const KPSourceListModel &>(rows).itemAt(
                rows.index(row, 0, rows.index(0, 0)));
            if (item->persistantID() == QStringLiteral("KPLibraryLastImportItem"))
                return item->isSelectable() ? item->searchState()->fileListSearch() : QStringList();
        }
        return {QStringLiteral("no such row")};
    }

    const TestFolder m_folder;
    std::unique_ptr<KPAppDelegate> m_delegate;
};

} // namespace

// One life, in its order: what came before the window, what comes while it is there, the end.
TEST_F(AppDelegate, ShowsWhatComesAndEndsInOrder)
{
    const QString early = m_folder.file(QStringLiteral("early"));
    const QString late = m_folder.file(XPPath::decode(QByteArrayView("late\xff")));
    EXPECT_TRUE(m_delegate->openFiles({m_folder.path(QStringLiteral("missing"))})); // not known yet
    EXPECT_TRUE(m_delegate->openFiles({early}));
    EXPECT_FALSE(m_delegate->isFinishedLaunching());
    launch();
    EXPECT_TRUE(m_delegate->isFinishedLaunching());
    EXPECT_TRUE(UserDefaults::standard().boolValue(QStringLiteral("KPIsRunning")));
    EXPECT_FALSE(UserDefaults::standard().boolValue(QStringLiteral("KPDropZoneOverlapWithScreen")));
    ASSERT_TRUE(showsFiles({early}));
    EXPECT_TRUE(XPFiledDocuments::isManaged(early)); // where it lies

    EXPECT_FALSE(m_delegate->openFiles({}));
    EXPECT_FALSE(m_delegate->handleOpenUrl(QStringLiteral("file:///no/such/file")));
    EXPECT_TRUE(m_delegate->handleOpenUrl(QString::fromLatin1(XPFileUrls::encoded(late))));
    ASSERT_TRUE(showsFiles({late}));

    // The row of the last import shows them, wherever they are moved.
    EXPECT_TRUE(QTest::qWaitFor([&] { return lastImport() == QStringList{late}; }, patience));
    const QString moved = m_folder.path(QStringLiteral("moved"));
    KPDocServices::current().pathChanged(late, early + u'2');
    KPDocServices::current().pathChanged(early + u'2', moved);
    KPDocServices::current().pathChanged(late, m_folder.path(QStringLiteral("another")));
    EXPECT_TRUE(QTest::qWaitFor([&] { return lastImport() == QStringList{moved}; }, patience));
    KPDocServices::current().documentsImported({});
    EXPECT_EQ(lastImport(), QStringList{moved}) << "nothing came in";

    EXPECT_TRUE(m_delegate->handleOpenUrl(QStringLiteral("murn://tags/a/b")));
    EXPECT_EQ(shown()->searchTags(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_TRUE(shown()->fileListSearch().isEmpty());
    EXPECT_TRUE(m_delegate->handleOpenUrl(QStringLiteral("murn://search/some%20text")));
    EXPECT_EQ(shown()->searchString(), QStringLiteral("some text"));
    EXPECT_TRUE(shown()->searchTags().isEmpty());
    EXPECT_FALSE(m_delegate->handleOpenUrl(QStringLiteral("murn://search/%00")));

    // No disk that keeps marks: what would have to be copied is asked about first.
    QStringList asked;
    XPPrompts::install(std::make_unique<Refusing>(&asked));
    EXPECT_TRUE(m_delegate->openFiles({QStringLiteral("/proc/version")}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !asked.isEmpty(); }, patience));
    EXPECT_EQ(asked, QStringList{qtTrId("KPCopyToOpenTitle")});
    EXPECT_EQ(shown()->searchString(), QStringLiteral("some text")) << "and left where it is";

    // A folder is looked into, and nothing in it marked.
    m_delegate->openUrls({QString::fromLatin1(XPFileUrls::encoded(m_folder.path()))}, {});
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return shown()->constraintFolders() == QStringList{m_folder.path()}; }, patience));
    EXPECT_FALSE(XPFiledDocuments::isManaged(m_folder.path()));

    const qint64 ends = UserDefaults::standard().integerValue(QStringLiteral("KPNumTimesLaunched"));
    EXPECT_TRUE(m_delegate->applicationShouldTerminate());
    EXPECT_TRUE(KPAppDelegate::isTerminating());
    m_delegate->applicationWillTerminate();
    EXPECT_EQ(m_delegate->controller(), nullptr);
    EXPECT_EQ(KPController::instance(), nullptr);
    EXPECT_FALSE(UserDefaults::standard().boolValue(QStringLiteral("KPIsRunning")));
    EXPECT_EQ(UserDefaults::standard().integerValue(QStringLiteral("KPNumTimesLaunched")),
              ends + 1);
}
