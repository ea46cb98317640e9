#include "KPSearchFolders.h"

#include "IndexSettings.h"
#include "KPSearchFolderSetting.h"
#include "KPSearchState.h"
#include "KPSearchVolumes.h"
#include "MDQuery.h"
#include "MetadataIndex.h"
#include "TestHome.h"
#include "TestSystem.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPVolumes.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

KPSearchFolders &folders()
{
    return KPSearchFolders::instance();
}

// A tree of folders, with the setting empty again at the end.
class SearchFolders : public testing::Test
{
protected:
    void SetUp() override { set({}); }
    void TearDown() override
    {
        UserDefaults::standard().remove(KPSearchFolderSetting::key);
        UserDefaults::standard().remove(XPFiledDocuments::preferredPathKey);
        folders().rebuildSearchFoldersList();
    }

    static void set(const QStringList &paths)
    {
        KPSearchFolderSetting::setFolders(paths);
        folders().rebuildSearchFoldersList();
    }
    QString make(const QString &name) const
    {
        QString path = tree.path(name);
        QDir().mkpath(XPPath::folder(path));
        ::mkdir(XPPath::encode(path).constData(), 0755); // may be there
        return path;
    }

    const TestFolder tree;
};

} // namespace

TEST_F(SearchFolders, AreTheDiskWithoutASetting)
{
    EXPECT_EQ(folders().userSearchFolders(), QStringList{text("/")});
    EXPECT_EQ(folders().trackingFolders(), QStringList{text("/")});
    EXPECT_TRUE(folders().pathIsInTrackingFolders(text("/usr/x")));
    EXPECT_FALSE(folders().pathIsInTrackingFolders(text("/media/ann/stick/x")));
    set({text("~/a/b"), text("~/a"), text("/b/"), text("~/a")});
    const QString home = XPFolders::home();
    EXPECT_EQ(folders().userSearchFolders(),
              (QStringList{home + text("/a/b"), home + text("/a"), text("/b")}));
    EXPECT_EQ(folders().trackingFolders(), (QStringList{home + text("/a"), text("/b")}));
    EXPECT_EQ(folders().trackingFolderThatIsParentOf(home + text("/a/b/c")), home + text("/a"));
    EXPECT_EQ(folders().trackingFolderThatIsParentOf(home + text("/ab")), std::nullopt);
}

TEST_F(SearchFolders, ReduceToWhatAQueryIsToLookIn)
{
    const QString a = make(text("a"));
    const QString b = make(text("a/b"));
    const QString c = make(text("a c"));
    const QString file = tree.file(text("d/file.txt"));
    const QString odd = make(XPPath::decode("odd\xff"));
    ASSERT_TRUE(QDir(tree.path()).mkpath(text("filed")));
    const QString link = tree.path(text("link"));
    ASSERT_TRUE(QFile::link(b, link));
    UserDefaults::standard().setValue(XPFiledDocuments::preferredPathKey, tree.path(text("filed")));
    set({b, a});
    using List = QStringList;
    const struct
    {
        const char *name = nullptr;
        List given;
        std::optional<List> scope;
    } cases[] = {
        {"everywhere",
         {KPSearchFolders::everywhere},
         List{MDQuery::scopeComputer, MDQuery::scopeNetwork}},
        {"none", {}, {}},
        {"preferred", {KPSearchFolders::preferredShort}, List{a}},
        {"preferred, long", {KPSearchFolders::preferredLocations}, List{a}},
        {"filed", {KPSearchFolders::filedDocuments}, List{tree.path(text("filed"))}},
        {"filed today: nothing was", {KPSearchFolders::filedToday}, {}},
        {"inside another", {b, a, b, a}, List{a}},
        {"a name that begins alike", {c, a}, List{c, a}},
        {"a file", {file}, List{tree.path(text("d"))}},
        {"gone", {tree.path(text("gone")), c}, List{c}},
        {"all gone", {tree.path(text("gone")), text("nonsense")}, {}},
        {"a constant", {MDQuery::scopeHome, b, a}, List{MDQuery::scopeHome, a}},
        {"undecodable", {odd}, List{odd}},
        {"a link", {link}, List{b}},
        {"the disk", {a, text("/")}, List{text("/")}},
        {"home", {text("~")}, List{XPFolders::realFolder(XPFolders::home()).valueOr(QString())}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(folders().reduceScopeForMDQuery(row.given), row.scope);
        EXPECT_EQ(folders().allAreGone(row.given), !row.given.isEmpty() && !row.scope);
    }
    EXPECT_FALSE(
        QDir(tree.path(text("filed"))).exists(QString::number(QDate::currentDate().year())))
        << "asking makes no folder";
}

TEST_F(SearchFolders, OfThePast7DaysAreThoseThatExist)
{
    UserDefaults::standard().setValue(XPFiledDocuments::preferredPathKey, tree.path());
    folders().rebuildSearchFoldersList();
    const QDateTime now = QDateTime::currentDateTime();
    const auto make = [&](int daysBefore) {
        const QDate date = now.addSecs(-86400LL * daysBefore).date();
        return this->make(
            QStringLiteral("%1/%2/%3").arg(date.year()).arg(date.month()).arg(date.day()));
    };
    const QStringList wanted = {make(2), make(6)};
    make(7);
    const QStringList entry = {KPSearchFolders::filedPast7Days};
    EXPECT_EQ(folders().filedDocumentsFolders(entry.first()), wanted);
    EXPECT_TRUE(folders().pathInFolderArray(entry, wanted.last() + text("/x.pdf")));
    EXPECT_FALSE(folders().pathInFolderArray(entry, make(7) + text("/x.pdf")));
    UserDefaults::standard().setValue(text("KPUseYearMonthFiledDocs"),
                                      PropertyValue::boolean(true));
    const auto reset =
        qScopeGuard([] { UserDefaults::standard().remove(text("KPUseYearMonthFiledDocs")); });
    EXPECT_EQ(folders().filedDocumentsFolders(entry.first()),
              QStringList{tree.path() +
                          QStringLiteral("/%1/%2").arg(now.date().year()).arg(now.date().month())});
}

TEST_F(SearchFolders, HoldPaths)
{
    set({text("/pref"), text("/pref2/x")});
    const QString home = XPFolders::home();
    const struct
    {
        QStringList list;
        const char *path = nullptr;
        bool isIn = false;
    } cases[] = {
        {{}, "/a", false},
        {{text("/a")}, "/a", true},
        {{text("/a/")}, "/a", true},
        {{text("/a")}, "/a/b", true},
        {{text("/a")}, "/ab", false},
        {{text("/a"), text("/a b"), text("/a-")}, "/a/b", true},
        {{text("/a/b"), text("/a-"), text("/a.")}, "/a/b", true},
        {{text("/a/b"), text("/a")}, "/a", true},
        {{text("/a/b/c")}, "/a/b", false},
        {{KPSearchFolders::everywhere}, "/media/ann/stick/x", true},
        {{text("/")}, "/a", true},
        {{text("/")}, "/", true},
        {{text("/")}, "/Volumes/Stick/x", false},
        {{MDQuery::scopeComputer}, "/usr/x", true},
        {{MDQuery::scopeComputer}, "/Volumes/Stick/x", false},
        {{MDQuery::scopeHome}, "/usr/x", false},
        {{MDQuery::scopeNetwork}, "/usr/x", false},
        {{KPSearchFolders::preferredShort}, "/pref/x", true},
        {{KPSearchFolders::preferredLocations}, "/pref2/y", false},
        {{text("nonsense")}, "/nonsense", false},
        {{text("/a")}, "", false},
    };
    for (const auto &row : cases)
        EXPECT_EQ(folders().pathInFolderArray(row.list, text(row.path)), row.isIn)
            << qPrintable(row.list.join(u' ')) << " holds " << row.path;
    EXPECT_TRUE(folders().pathInFolderArray({MDQuery::scopeHome}, home + text("/x")));
    EXPECT_TRUE(folders().pathInFolderArray({text("~/d")}, home + text("/d/e")));
    EXPECT_TRUE(KPSearchFolders::path(text("/a/b"), text("/a")));
    EXPECT_FALSE(KPSearchFolders::path(text("/a"), text("/a")));
    EXPECT_TRUE(KPSearchFolders::path(text("/a"), text("/")));
}

// The list is kept sorted for searching: as a plain look at each folder would have it.
TEST_F(SearchFolders, HoldPathsAsComparedOneByOne)
{
    std::mt19937 random(1);
    const auto randomPath = [&] {
        QString path;
        for (auto parts = 1 + random() % 3; parts > 0; --parts) {
            path += u'/';
            for (auto characters = 1 + random() % 2; characters > 0; --characters)
                path += QStringView(u"ab -0~\u00e4").at(static_cast<qsizetype>(random() % 7));
        }
        return path;
    };
    for (int round = 0; round < 300; ++round) {
        QStringList list;
        for (auto count = 1 + random() % 12; count > 0; --count)
            list.append(randomPath());
        for (int i = 0; i < 50; ++i) {
            const QString path = randomPath();
            const bool isIn = std::any_of(list.begin(), list.end(), [&](const QString &folder) {
                return path == folder || KPSearchFolders::path(path, folder);
            });
            ASSERT_EQ(folders().pathInFolderArray(list, path), isIn)
                << qPrintable(list.join(u' ')) << " holds " << qPrintable(path);
        }
    }
}

TEST_F(SearchFolders, KnowAPlaceByItsPath)
{
    set({text("/a"), text("/b")});
    EXPECT_EQ(folders().actualPaths(
                  {text("~"), KPSearchFolders::preferredShort, text("x"), MDQuery::scopeComputer}),
              (QStringList{XPFolders::home(), text("/a"), text("/b"), text("/")}));
    EXPECT_EQ(folders().actualPath(KPSearchFolders::everywhere), text("/"));
    EXPECT_EQ(folders().actualPath(text("x")), QString());
    EXPECT_EQ(KPSearchFolders::homeFolder(), XPFolders::home());
}

TEST_F(SearchFolders, AreLeftOutWhereTheIndexFails)
{
    const QString stick = text("/media/stick");
    folders().setIndexAvailability(
        {{stick, KPSearchVolumes::fails}, {text("/media/other"), KPSearchVolumes::silent}});
    const auto restore = qScopeGuard([] { folders().updateIndexAvailability(); });
    EXPECT_EQ(folders().spotlightNotAvaialableVolumeList(), QStringList{stick});
    const auto state =
        KPSearchState::searchStateWithNativeDictionary({})->searchStateWithNewContstraintFolders(
            {stick + text("/a"), stick, stick + u'y', text("~")});
    EXPECT_EQ(state->searchFoldersWhereSpotlightWorks(), (QStringList{stick + u'y', text("~")}));
    EXPECT_EQ(folders().reduceScopeForMDQuery({text("/media/other/x")}), std::nullopt)
        << "a volume that is not mounted does not answer for a folder";
}

TEST_F(SearchFolders, OfRootsOfTheIndexTellHowVolumesAre)
{
    using State = IndexStatus::Root::State;
    const auto volume = TestVolume::tmpfs("1m");
    if (!volume)
        GTEST_SKIP() << "needs root";
    XPVolumes::lookAgain();
    const auto status = [&](const QList<IndexStatus::Root> &roots) {
        return KPSearchVolumes::indexAvailability(roots).value(volume->path());
    };
    EXPECT_EQ(status({{volume->path(), State::Live}}), KPSearchVolumes::works);
    EXPECT_EQ(status({{volume->path(text("a")), State::Live},
                      {volume->path(text("b")), State::Silent},
                      {volume->path(text("c")), State::Reading}}),
              KPSearchVolumes::silent);
    EXPECT_EQ(KPSearchVolumes::indexAvailability({{text("/media/x"), State::Missing}})
                  .value(text("/media/x")),
              KPSearchVolumes::missing);
    EXPECT_EQ(KPSearchFolders::volumePathFromPath(volume->path(text("a/b"))), volume->path());
    EXPECT_EQ(KPSearchFolders::volumePathFromPath(text("/Volumes/Stick/a")),
              text("/Volumes/Stick"));
    EXPECT_TRUE(KPSearchFolders::pathIsLikelyOnUnReachableVolume(text("/media/ann/stick/a")));
    EXPECT_FALSE(KPSearchFolders::pathIsLikelyOnUnReachableVolume(volume->path(text("a"))));
    EXPECT_TRUE(folders().mountedVolumes().contains(text("/")));
    EXPECT_FALSE(folders().mountedLocalVolumes().contains(text("/proc")));
}

TEST_F(SearchFolders, FollowARenamedFolder)
{
    const QString work = make(text("in/work"));
    const QString odd = make(XPPath::decode("in/odd\xfe"));
    set({work, odd});
    const auto rename = [](const QString &from, const QString &to) {
        return std::rename(XPPath::encode(from).constData(), XPPath::encode(to).constData()) == 0;
    };
    const QString renamed = tree.path(text("in/work of old"));
    ASSERT_TRUE(rename(work, renamed));
    folders().rebuildSearchFoldersList();
    EXPECT_EQ(folders().userSearchFolders(), (QStringList{renamed, odd}));
    ASSERT_TRUE(rename(renamed, tree.path(text("in/third"))));
    folders().rebuildSearchFoldersList();
    EXPECT_EQ(folders().userSearchFolders(), (QStringList{tree.path(text("in/third")), odd}));
    make(text("in/work"));
    folders().rebuildSearchFoldersList();
    EXPECT_EQ(folders().userSearchFolders(), (QStringList{work, odd})) << "the path comes first";
}

TEST_F(SearchFolders, AreAddedAndRemoved)
{
    xpGuiThread.assertHere();
    struct Prompts : public XPPrompts
    {
        void ask(const Question &, std::function<void(int)> answer) override { answer(1); }
        void alert(const QString &, const QString &) override { ++alerts; }
        int alerts = 0;
    };
    auto installed = std::make_unique<Prompts>();
    Prompts &prompts = *installed;
    XPPrompts::install(std::move(installed));
    const auto restore = qScopeGuard([] {
        XPPrompts::install(nullptr);
        UserDefaults::standard().remove(text("KPIndexRoots"));
    });
    IndexSettings::setRoots({text("/nowhere")});
    const QString a = make(text("a"));
    const QString b = make(text("b"));
    set({a});
    EXPECT_EQ(folders().addSearchFolder(b), std::nullopt);
    EXPECT_EQ(folders().userSearchFolders(), (QStringList{a, b}));
    EXPECT_EQ(IndexSettings::roots(), (QStringList{text("/nowhere"), b}));
    for (const char *refused : {"/Network", "/Network/x", "/does/not/exist"})
        folders().addSearchFolderAction(text(refused), [](bool added) { EXPECT_FALSE(added); });
    EXPECT_EQ(prompts.alerts, 3);
    QDir(tree.path()).rename(text("b"), text("c"));
    folders().rebuildSearchFoldersList();
    ASSERT_EQ(folders().userSearchFolders(), (QStringList{a, tree.path(text("c"))}));
    folders().removeSearchFolder(tree.path(text("c")));
    EXPECT_EQ(KPSearchFolderSetting::folders(), QStringList{a});
}

TEST_F(SearchFolders, TellOfSettingsAndVolumes)
{
    xpGuiThread.assertHere();
    int told = 0;
    const auto observation = XPNotificationCenter::instance().addObserver(
        KPSearchFolders::fileSystemMayHaveChanged, [&](const XPNotification &) { ++told; });
    folders().startObserving();
    const auto stop = qScopeGuard([] {
        xpGuiThread.assertHere();
        folders().stopObserving();
    });
    KPSearchFolderSetting::setFolders({text("/a")});
    EXPECT_EQ(folders().userSearchFolders(), QStringList{text("/a")});
    EXPECT_EQ(told, 1);
    UserDefaults::standard().setValue(text("KPSearchStateHiddenFilesInGoDeep"),
                                      PropertyValue::boolean(true));
    EXPECT_EQ(told, 2);
    UserDefaults::standard().remove(text("KPSearchStateHiddenFilesInGoDeep"));
    told = 0;
    const auto volume = TestVolume::tmpfs("1m");
    if (!volume)
        GTEST_SKIP() << "needs root";
    for (QDeadlineTimer deadline(10'000); told == 0 && !deadline.hasExpired();)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 100);
    EXPECT_GE(told, 1);
}
