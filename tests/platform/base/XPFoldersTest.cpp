#include "XPFolders.h"

#include "TestHome.h"
#include "XPPath.h"

#include <gtest/gtest.h>

namespace {

// Sets a variable for one test.
class Variable
{
public:
    Variable(const char *name, const QByteArray &value) : m_name(name), m_before(qgetenv(name))
    {
        qputenv(name, value);
    }
    ~Variable() { qputenv(m_name, m_before); }
    Variable(const Variable &) = delete;
    Variable &operator=(const Variable &) = delete;

private:
    const char *const m_name;
    const QByteArray m_before;
};

} // namespace

TEST(XPFolders, OnlyAbsoluteVariablesCount)
{
    const Variable home("HOME", "/home/odd\xff/");
    const Variable configuration("XDG_CONFIG_HOME", "relative");
    const Variable data("XDG_DATA_HOME", "");
    const Variable caches("XDG_CACHE_HOME", "/elsewhere//cache");
    const QString folder = XPPath::decode("/home/odd\xff");
    EXPECT_EQ(XPFolders::home(), folder);
    EXPECT_EQ(XPFolders::configuration(), folder + QStringLiteral("/.config"));
    EXPECT_EQ(XPFolders::trash(), folder + QStringLiteral("/.local/share/Trash"));
    EXPECT_EQ(XPFolders::caches(), QStringLiteral("/elsewhere/cache"));
    EXPECT_EQ(XPFolders::documents(), folder + QStringLiteral("/Documents"));
    for (const QString &path :
         {QStringLiteral("~"), QStringLiteral("~/a"), QStringLiteral("~a"), QStringLiteral("/a/~")})
        EXPECT_EQ(XPFolders::abbreviateWithTilde(XPFolders::expandTilde(path)), path);
    EXPECT_EQ(XPFolders::expandTilde(QStringLiteral("~/a")), folder + QStringLiteral("/a"));
    const Variable noHome("HOME", "");
    EXPECT_TRUE(XPFolders::home().startsWith(u'/'));
}

TEST(XPFolders, TheDesktopNamesTheUserFolders)
{
    const TestFolder folder;
    const Variable home("HOME", "/home/me");
    const Variable configuration("XDG_CONFIG_HOME", XPPath::encode(folder.path()));
    static_cast<void>(folder.file(QStringLiteral("user-dirs.dirs"),
                                  "# comment\n"
                                  "XDG_DESKTOP_DIR_OLD=\"/wrong\"\n"
                                  "XDG_DOCUMENTS_DIR=\"$HOME/first\"\n"
                                  "  XDG_DOCUMENTS_DIR=\"$HOME/Dok\\\"um\\\\ente\xff/\"  \n"
                                  "XDG_DOWNLOAD_DIR=\"/data/down\"\n"
                                  "XDG_DESKTOP_DIR=\"relative\"\n"
                                  "XDG_DESKTOP_DIR=$HOME/unquoted"));
    EXPECT_EQ(XPFolders::documents(), XPPath::decode("/home/me/Dok\"um\\ente\xff"));
    EXPECT_EQ(XPFolders::downloads(), QStringLiteral("/data/down"));
    EXPECT_EQ(XPFolders::desktop(), QStringLiteral("/home/me/Desktop"));
    static_cast<void>(folder.file(QStringLiteral("user-dirs.dirs"), "XDG_DESKTOP_DIR=\"$HOME\"\n"));
    EXPECT_EQ(XPFolders::desktop(), QStringLiteral("/home/me"));
    EXPECT_EQ(XPFolders::documents(), QStringLiteral("/home/me/Documents"));
}
