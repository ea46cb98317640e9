#include "KarvexMirror.h"

#include "KPMirrorImport.h"
#include "KPTagMirror.h"
#include "KarvexTestFiles.h"
#include "KeptFolder.h"
#include "TestSystem.h"
#include "UserDefaults.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace {

QStringList list(const char *tags)
{
    return QString::fromUtf8(tags).split(u' ', Qt::SkipEmptyParts);
}

std::optional<QByteArray> desktops(const QString &path, const QString &key)
{
    return XPExtendedAttributes::read(path, key).valueOr({});
}

std::optional<QByteArray> desktopTags(const QString &path)
{
    return desktops(path, KarvexFacts::desktopTagsKey);
}

void foreign(const QString &path, const QString &key, const QByteArray &bytes)
{
    ASSERT_EQ(XPExtendedAttributes::write(path, key, bytes), std::nullopt);
}

class Mirror : public testing::Test
{
protected:
    Mirror() { turn(true); }
    ~Mirror() override { UserDefaults::standard().remove(KarvexMirror::settingsKey); }
    static void turn(bool on)
    {
        UserDefaults::standard().setValue(KarvexMirror::settingsKey, PropertyValue::boolean(on));
    }
};

} // namespace

TEST_F(Mirror, MergesTagByTag)
{
    struct Case
    {
        const char *what;
        const char *oursBefore, *desktopBefore, *ours, *desktop, *wanted;
    };
    for (const Case &each : {
             Case{"nothing known: both keep all", "", "", "a b", "c b", "a b c"},
             Case{"the desktop added", "a", "a", "a", "a b", "a b"},
             Case{"the desktop removed", "a b", "a b", "a b", "b", "b"},
             Case{"we added", "a", "a", "a b", "a", "a b"},
             Case{"we removed", "a b", "a b", "a", "a b", "a"},
             Case{"both, different tags", "a b", "a b", "a c", "b d", "c d"},
             Case{"both removed one", "a b", "a b", "a", "a", "a"},
             Case{"never agreed", "a b", "a", "a b", "a", "a b"},
             Case{"case alone", "Work", "Work", "Work", "work x", "Work x"},
             Case{"a comma is no removal", "a,b c", "c", "a,b c", "d", "a,b d"},
         }) {
        KarvexFacts::Pair base;
        base.ours.tags = list(each.oursBefore);
        base.desktop.tags = list(each.desktopBefore);
        KarvexFacts::Pair now;
        now.ours.tags = list(each.ours);
        now.ours.hasTags = true;
        now.desktop.tags = list(each.desktop);
        EXPECT_EQ(KarvexFacts::merged(base, now, true).tags, list(each.wanted)) << each.what;
        now.ours.areTagsReadable = false;
        EXPECT_EQ(KarvexFacts::merged(base, now, true).tags, now.ours.tags) << each.what;
    }
    // What is gone from a file without an empty list in its place was lost by a program.
    KarvexFacts::Pair base;
    base.ours.tags = base.desktop.tags = list("a b");
    KarvexFacts::Pair now;
    now.desktop.tags = list("a b");
    EXPECT_EQ(KarvexFacts::merged(base, now, true).tags, list("a b"));
}

TEST_F(Mirror, MergesRatingsByTheLaterOne)
{
    for (const auto &[oursBefore, desktopBefore, ours, desktop, isOursNewer, wanted] :
         QList<std::tuple<int, int, int, int, bool, int>>{{0, 0, 8, 0, false, 8},
                                                          {0, 0, 0, 7, true, 7},
                                                          {4, 4, 4, 0, true, 0},
                                                          {4, 4, 0, 4, true, 0},
                                                          {4, 4, 6, 8, true, 6},
                                                          {4, 4, 6, 8, false, 8},
                                                          {0, 0, 6, 8, false, 8}}) {
        KarvexFacts::Pair base;
        base.ours.halfStars = oursBefore;
        base.desktop.halfStars = desktopBefore;
        KarvexFacts::Pair now;
        now.ours.halfStars = ours;
        now.desktop.halfStars = desktop;
        EXPECT_EQ(KarvexFacts::merged(base, now, isOursNewer).halfStars, wanted)
            << oursBefore << desktopBefore << ours << desktop;
    }
}

TEST_F(Mirror, FollowsEveryWriteOfOurs)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    turn(false);
    EXPECT_FALSE(Karvex::setUserTags(list("off"), file));
    EXPECT_EQ(desktopTags(file), std::nullopt);
    turn(true);
    EXPECT_FALSE(
        Karvex::addUserTags({QStringLiteral("two words"), QStringLiteral("caf\u00e9")}, file));
    EXPECT_EQ(desktopTags(file), "off,two words,caf\xc3\xa9");
    EXPECT_FALSE(Karvex::setRating(3.5, file));
    EXPECT_EQ(desktops(file, KarvexFacts::desktopRatingKey), "7");
    EXPECT_FALSE(Karvex::setString(QStringLiteral("read it"), KarvexFacts::commentKey, file));
    EXPECT_EQ(desktops(file, KarvexFacts::desktopCommentKey), "read it");

    // What another program put there at the same moment stays; what it took off stays off.
    foreign(file, KarvexFacts::desktopTagsKey, "theirs,off");
    EXPECT_FALSE(Karvex::addUserTags({QStringLiteral("new"), QStringLiteral("a,b")}, file));
    EXPECT_EQ(desktopTags(file), "theirs,off,new");
    EXPECT_FALSE(Karvex::clearUserTags({QStringLiteral("OFF")}, file));
    EXPECT_EQ(desktopTags(file), "theirs,new");

    EXPECT_FALSE(Karvex::setUserTags(QStringList(), file));
    EXPECT_FALSE(Karvex::setRating(0, file));
    EXPECT_FALSE(Karvex::setXAttrMetaData({}, KarvexFacts::commentKey, file));
    EXPECT_EQ(desktopTags(file), "theirs");
    EXPECT_EQ(desktops(file, KarvexFacts::desktopRatingKey), std::nullopt);
    EXPECT_EQ(desktops(file, KarvexFacts::desktopCommentKey), std::nullopt);
}

TEST_F(Mirror, LeavesWhatItCannotUnderstand)
{
    const TestFolder folder;
    for (const QByteArray &bytes : {QByteArray("\xff\xfe,b"), QByteArray("a\xc3")}) {
        const QString file = folder.file(QStringLiteral("a"));
        foreign(file, KarvexFacts::desktopTagsKey, bytes);
        foreign(file, KarvexFacts::desktopRatingKey, "eleven");
        EXPECT_FALSE(Karvex::setUserTags(list("mine"), file));
        EXPECT_FALSE(Karvex::setRating(2, file));
        EXPECT_EQ(tagsOf(file), list("mine"));
        EXPECT_EQ(desktopTags(file), bytes);
        const auto outcome = KarvexMirror::reconcile(file, KarvexFacts::Pair::of({}));
        ASSERT_TRUE(outcome);
        EXPECT_FALSE(outcome->isReadable);
        EXPECT_TRUE(outcome->isEmpty());
        EXPECT_EQ(desktops(file, KarvexFacts::desktopRatingKey), "eleven");
    }
    // Ours that cannot be read is neither taken for empty nor written over; an empty list is one.
    const QString broken = folder.file(QStringLiteral("broken"));
    foreign(broken, KarvexFacts::desktopTagsKey, "theirs");
    storeBytes(broken, Karvex::userTagsKey, "no list");
    for (const bool knew : {false, true}) {
        KarvexFacts::Pair base;
        base.ours.tags = base.desktop.tags = knew ? list("theirs") : QStringList();
        const auto outcome = KarvexMirror::reconcile(broken, base);
        ASSERT_TRUE(outcome);
        EXPECT_FALSE(outcome->isReadable);
        EXPECT_EQ(storedBytes(broken, Karvex::userTagsKey), "no list");
        EXPECT_EQ(desktopTags(broken), "theirs");
        // The same state, but with a list that somebody emptied.
        const QString emptied = folder.file(QStringLiteral("emptied"));
        turn(false);
        EXPECT_FALSE(Karvex::setUserTags(QStringList(), emptied));
        turn(true);
        foreign(emptied, KarvexFacts::desktopTagsKey, "theirs");
        EXPECT_TRUE(KarvexMirror::reconcile(emptied, base));
        EXPECT_EQ(desktopTags(emptied).value_or(""), knew ? "" : "theirs");
        EXPECT_EQ(tagsOf(emptied), knew ? QStringList() : list("theirs"));
    }
    // Whole or not at all: our own list has less room.
    const QString file = folder.file(QStringLiteral("large"));
    QByteArray large;
    for (int i = 100; i < 850; ++i)
        large += QByteArray::number(i) + ',';
    foreign(file, KarvexFacts::desktopTagsKey, large);
    foreign(file, KarvexFacts::desktopRatingKey, "4");
    EXPECT_FALSE(KarvexMirror::reconcile(file, KarvexFacts::Pair::of({})));
    EXPECT_EQ(tagsOf(file), QStringList());
    EXPECT_EQ(Karvex::getRating(file).valueOr(-1), 0);
    EXPECT_EQ(desktopTags(file), large);
}

TEST_F(Mirror, WithoutRoomForBothNeitherIsWritten)
{
    const auto volume = TestVolume::ext4SmallBlocks();
    if (!volume)
        GTEST_SKIP() << "no loop mounts here";
    const QString file = volume->path(QStringLiteral("a"));
    ::close(::creat(XPPath::encode(file).constData(), S_IRUSR | S_IWUSR));
    ASSERT_FALSE(Karvex::setUserTags(list("old"), file, {1}));
    // Ours alone would fit.
    QStringList many;
    for (int i = 0; i < 9; ++i)
        many.append(QString(50, u't') + QString::number(i));
    turn(false);
    ASSERT_FALSE(Karvex::setUserTags(many, file));
    ASSERT_FALSE(Karvex::setUserTags(list("old"), file, {1}));
    turn(true);
    const auto error = Karvex::setUserTags(many, file);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind, XPError::Kind::NoSpace);
    EXPECT_EQ(tagsOf(file), list("old"));
    EXPECT_EQ(desktopTags(file).value_or("old"), "old");
    EXPECT_EQ(Karvex::getXAttrMetaData(Karvex::userTagTimeKey, file).value(),
              PropertyValue(PropertyValue::Date{1}));
    ASSERT_FALSE(Karvex::setUserTags(list("new"), file));
    EXPECT_EQ(desktopTags(file), "new");
}

// Two threads stand for two processes: they meet at the file's lock alone.
TEST_F(Mirror, TwoWritersLoseNothingAndEndEqual)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    const auto write = [&](QChar whose) {
        for (int i = 0; i < 40; ++i)
            EXPECT_FALSE(Karvex::addUserTags({whose + QString::number(i)}, file));
    };
    std::thread other([&] { write(u'x'); });
    std::thread merger([&] {
        for (int i = 0; i < 40; ++i)
            EXPECT_TRUE(KarvexMirror::reconcile(file, KarvexFacts::Pair::of({})));
    });
    write(u'y');
    other.join();
    merger.join();
    const QStringList tags = tagsOf(file);
    EXPECT_EQ(tags.size(), 80);
    EXPECT_EQ(QString::fromUtf8(desktopTags(file).value_or("")).split(u','), tags);
}

TEST_F(Mirror, TakesOverWhatOthersChangeAndIsThenQuiet)
{
    KeptFolder folder;
    const QString known = folder.file(QStringLiteral("known"));
    const QString bare = folder.file(QStringLiteral("bare"));
    ASSERT_FALSE(Karvex::setUserTags(list("a b"), known));
    KPTagMirror mirror(folder.kept());
    foreign(known, KarvexFacts::desktopTagsKey, "b,c");
    foreign(known, KarvexFacts::desktopRatingKey, "9");
    foreign(bare, KarvexFacts::desktopTagsKey, "theirs");
    EXPECT_TRUE(holdsSoon([&] { return tagsOf(known) == list("b c"); })) << "ours took both";
    EXPECT_TRUE(holdsSoon([&] { return Karvex::getRating(known).valueOr(0) == 4.5; }));
    EXPECT_TRUE(holdsSoon([&] { return tagsOf(bare) == list("theirs"); }));

    // The last tag goes with its attribute; once it is known that the two agreed. A merge that is
    // still at work on the file writes it anew.
    folder.catchUp();
    EXPECT_TRUE(holdsSoon([&] {
        (void)XPExtendedAttributes::remove(bare, KarvexFacts::desktopTagsKey);
        folder.catchUp();
        return tagsOf(bare).isEmpty();
    }));

    // Another writer of the convention, that knows nothing of the desktop.
    turn(false);
    ASSERT_FALSE(Karvex::setUserTags(list("b c d"), known));
    turn(true);
    EXPECT_TRUE(holdsSoon([&] { return desktopTags(known) == "b,c,d"; }));

    // Nothing is written any more, whatever order another indexer likes.
    foreign(known, KarvexFacts::desktopTagsKey, "d,C,b");
    folder.catchUp();
    const qint64 before = XPFileInfo::read(known)->changed;
    foreign(bare, KarvexFacts::desktopTagsKey, "later");
    EXPECT_TRUE(holdsSoon([&] { return tagsOf(bare) == list("later"); }));
    EXPECT_EQ(XPFileInfo::read(known)->changed, before);
}

TEST_F(Mirror, ImportBringsTheLibraryInLine)
{
    KeptFolder folder;
    const QString ours = folder.file(QStringLiteral("ours"));
    const QString theirs = folder.file(QStringLiteral("theirs"));
    turn(false);
    ASSERT_FALSE(
        Karvex::setUserTags(QStringList{QStringLiteral("a"), QStringLiteral("b,c")}, ours));
    foreign(theirs, KarvexFacts::desktopTagsKey, "t");
    const auto run = [&](bool isDryRun) {
        QStringList changed;
        EXPECT_TRUE(KPMirrorImport::run(folder.index(), isDryRun, [&](const auto &file) {
            EXPECT_FALSE(file.error);
            if (!file.outcome.isEmpty())
                changed.append(XPPath::fileName(file.path));
            EXPECT_EQ(file.outcome.unfit.size(), file.path == ours ? 1 : 0);
            return true;
        }));
        changed.sort();
        return changed;
    };
    const QStringList both{QStringLiteral("ours"), QStringLiteral("theirs")};
    EXPECT_EQ(run(true), both);
    EXPECT_EQ(desktopTags(ours), std::nullopt);
    EXPECT_EQ(run(false), both);
    EXPECT_EQ(desktopTags(ours), "a");
    EXPECT_EQ(tagsOf(theirs), list("t"));
    EXPECT_EQ(run(false), QStringList());
}
