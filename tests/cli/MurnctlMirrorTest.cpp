#include "Murnctl.h"

#include "Karvex.h"
#include "TestHome.h"
#include "XPExtendedAttributes.h"

#include <QJsonObject>
#include <gtest/gtest.h>

namespace {

class MurnctlMirror : public testing::Test
{
protected:
    ~MurnctlMirror() override
    {
        run({"mirror", "off"});
        run({"index", "remove", "."});
    }
    MurnctlResult run(const QByteArrayList &words) const { return murnctl(words, folder.path()); }
    static QByteArray desktops(const QString &path, const char *key)
    {
        return XPExtendedAttributes::read(path, QString::fromLatin1(key))
            .valueOr({})
            .value_or(QByteArray("(none)"));
    }
    static void foreign(const QString &path, const char *key, const QByteArray &bytes)
    {
        EXPECT_FALSE(XPExtendedAttributes::write(path, QString::fromLatin1(key), bytes));
    }

    const TestFolder folder;
};

} // namespace

TEST_F(MurnctlMirror, BringsALibraryInLineAndKeepsItThere)
{
    const QString ours = folder.file(QStringLiteral("ours.txt"));
    const QString theirs = folder.file(QStringLiteral("theirs.txt"));
    const QString odd = folder.file(QStringLiteral("odd.txt"));
    ASSERT_FALSE(
        Karvex::setUserTags(QStringList{QStringLiteral("a"), QStringLiteral("b,c")}, ours));
    foreign(theirs, "xdg.tags", "t,u");
    foreign(theirs, "baloo.rating", "7");
    foreign(odd, "xdg.tags", "\xff");
    ASSERT_EQ(run({"index", "add", "."}).status, 0);

    EXPECT_TRUE(run({"mirror", "status"}).out.startsWith("mirror: off, and never asked for\n"));
    const auto status = run({"mirror", "status", "--json"}).json().object();
    EXPECT_EQ(status[QStringLiteral("files")].toInt(), 3);
    EXPECT_EQ(status[QStringLiteral("differing")].toInt(), 2);
    EXPECT_EQ(status[QStringLiteral("tagsWithCommas")].toInt(), 1);
    EXPECT_EQ(status[QStringLiteral("notUnderstood")].toInt(), 1);

    const auto dry = run({"mirror", "import", "--dry-run"});
    EXPECT_EQ(dry.lines(), (QByteArrayList{ours.toUtf8() + "\tto the desktop\ta,b,c\ta,b,c\t0",
                                           theirs.toUtf8() + "\tfrom the desktop\t\tt,u\t3.5"}))
        << dry.out.constData();
    EXPECT_TRUE(dry.err.contains("odd.txt: something on it cannot be understood"));
    EXPECT_TRUE(dry.err.contains("cannot hold a tag with a comma: b,c"));
    EXPECT_EQ(desktops(ours, "xdg.tags"), "(none)");

    EXPECT_EQ(run({"mirror", "import"}).out, dry.out);
    EXPECT_EQ(desktops(ours, "xdg.tags"), "a");
    EXPECT_EQ(*Karvex::getUserTags(theirs),
              (QStringList{QStringLiteral("t"), QStringLiteral("u")}));
    EXPECT_EQ(*Karvex::getRating(theirs), 3.5);
    EXPECT_EQ(desktops(odd, "xdg.tags"), "\xff");
    EXPECT_EQ(run({"mirror", "import"}).out, "");

    // On: each command writes both.
    EXPECT_EQ(run({"tag", "--add", "off", "ours.txt"}).status, 0);
    EXPECT_EQ(desktops(ours, "xdg.tags"), "a");
    EXPECT_EQ(run({"mirror", "on"}).status, 0);
    EXPECT_EQ(run({"tag", "--add", "on", "ours.txt"}).status, 0);
    EXPECT_EQ(desktops(ours, "xdg.tags"), "a,on");
    EXPECT_TRUE(run({"mirror", "status"}).out.startsWith("mirror: on\n"));
}

TEST_F(MurnctlMirror, RefusesWhatItDoesNotKnow)
{
    for (const QByteArrayList &words :
         {QByteArrayList{"mirror"}, QByteArrayList{"mirror", "maybe"},
          QByteArrayList{"mirror", "on", "off"}, QByteArrayList{"mirror", "on", "--dry-run"}})
        EXPECT_EQ(run(words).status, 2) << words.join(' ').constData();
}
