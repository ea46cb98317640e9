#include "XPFileTransfers.h"
#include "FiledFolder.h"
#include "TestSystem.h"
#include "XPRecentDestinations.h"

#include <QCoreApplication>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using Action = XPFileStep::Action;

class FileTransfers : public FiledFolder
{
protected:
    FileTransfers()
    {
        QDir().mkpath(m_to);
        UserDefaults::standard().remove(XPRecentDestinations::key);
    }

    XPFileReport bring(const QStringList &paths, std::vector<int> answers, bool copies = false,
                       bool warn = true)
    {
        xpGuiThread.assertHere();
        m_said = ScriptedPrompts::install(std::move(answers));
        std::optional<XPFileReport> result;
        XPFileTransfers::moveCopyFilesProgressUI(
            paths, m_to, copies, warn, [&result](const XPFileReport &report) { result = report; });
        XPPrompts::install(nullptr);
        EXPECT_TRUE(result);
        return result.value_or(XPFileReport());
    }
    QString there(const char *name) const { return m_to + u'/' + QString::fromUtf8(name); }

    const QString m_to = m_folder.path(QStringLiteral("to"));
    std::shared_ptr<ScriptedPrompts::Said> m_said;
};

static constexpr int go = 0;
static constexpr int cancel = 1;
static constexpr int replace = 2;

TEST_F(FileTransfers, MovesWhatTheUserAgreesTo)
{
    const QString path = file("in/a.pdf", "bytes");
    EXPECT_TRUE(bring({path}, {cancel}).steps.isEmpty());
    EXPECT_TRUE(exists(path));
    EXPECT_EQ(m_said->questions.first().buttons.size(), 2);

    int told = 0;
    const auto observation = XPNotificationCenter::instance().addObserver(
        QStringLiteral("XPNotificationFilesMoved"), [&told](const XPNotification &) { ++told; });
    EXPECT_EQ(bring({path}, {go}).paths, QStringList{there("a.pdf")});
    EXPECT_FALSE(exists(path));
    EXPECT_EQ(told, 0); // soon, not now
    QCoreApplication::processEvents();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(XPRecentDestinations::paths().size(), 1);
}

struct Taken
{
    const char *name;
    int age; // of the file that is there, in seconds after the other
    const char *text;
};

TEST_F(FileTransfers, SaysWhichIsNewerAndReplacesOnlyWhenTold)
{
    for (const Taken &row : {Taken{"same", 0, "XPSameIsThere"}, Taken{"newer", 9, "XPNewerIsThere"},
                             Taken{"older", -9, "XPOlderIsThere"}}) {
        const QString name = QString::fromLatin1(row.name);
        const auto make = [](const QString &path, const QByteArray &bytes, int seconds) {
            const timespec when = {1'600'000'000 + seconds, 0};
            const timespec times[] = {when, when};
            EXPECT_EQ(::utimensat(AT_FDCWD, XPPath::encode(path).constData(), times, 0), 0);
            (void)bytes;
        };
        const QString path = file(("in/" + QByteArray(row.name)).constData(), "new");
        const QString old = file(("to/" + QByteArray(row.name)).constData(), "old");
        make(path, "new", 0);
        make(old, "old", row.age);
        const XPFileReport report = bring({path}, {go});
        EXPECT_TRUE(m_said->questions.first().text.endsWith(qtTrId(row.text)));
        EXPECT_EQ(report.paths, QStringList{there("") + name + QStringLiteral(" 1")});
        EXPECT_EQ(bytesOf(old), "old");

        const QString again = file(("in/" + QByteArray(row.name)).constData(), "newest");
        EXPECT_EQ(bring({again}, {replace}).paths, QStringList{old});
        EXPECT_EQ(bytesOf(old), "newest");
    }
}

TEST_F(FileTransfers, NoFileReplacesItself)
{
    const QString path = file("to/a.pdf", "bytes");
    EXPECT_EQ(bring({path}, {replace}).steps.value(0).action, Action::Skipped);
    EXPECT_EQ(bytesOf(path), "bytes");
    const XPFileReport copied = bring({path}, {replace}, true);
    EXPECT_EQ(copied.paths, QStringList{there("a 1.pdf")});
    EXPECT_EQ(bytesOf(path), "bytes");
    // A folder under another name is the same folder.
    const QString link = m_folder.path(QStringLiteral("link"));
    ASSERT_EQ(::symlink("to", XPPath::encode(link).constData()), 0);
    EXPECT_EQ(bring({link + QStringLiteral("/a.pdf")}, {replace}).steps.value(0).action,
              Action::Skipped);
    EXPECT_EQ(bytesOf(path), "bytes");
}

TEST_F(FileTransfers, FilesThatShareANameAreAskedAbout)
{
    const QString first = file("in/a.pdf");
    const QString second = file("in/more/a.pdf");
    EXPECT_TRUE(bring({first, second}, {cancel}).steps.isEmpty());
    EXPECT_EQ(m_said->questions.first().title, qtTrId("XPDuplicatesTitle"));
    EXPECT_TRUE(m_said->questions.first().text.startsWith(u"a.pdf "));

    EXPECT_EQ(bring({first, second, first}, {go, go}).paths, QStringList{there("a.pdf")});
    EXPECT_TRUE(exists(second));
    EXPECT_EQ(m_said->questions.size(), 2);
}

TEST_F(FileTransfers, RefusesWhatIsMissingOrTooMuch)
{
    const QString path = file("in/a.pdf");
    EXPECT_TRUE(bring({path, m_folder.path(QStringLiteral("gone"))}, {go}).steps.isEmpty());
    EXPECT_TRUE(m_said->questions.isEmpty());
    QStringList many;
    for (int i = 0; i <= XPFileTransfers::mostFiles; ++i)
        many.append(m_folder.file(QStringLiteral("many/%1").arg(i)));
    EXPECT_TRUE(bring(many, {go}).steps.isEmpty());
    EXPECT_EQ(m_said->alerts.size(), 1);
    EXPECT_TRUE(m_said->questions.isEmpty());
}

TEST_F(FileTransfers, WithoutAWarningWhatIsThereIsLeftOut)
{
    file("to/a.pdf", "old");
    const QString path = file("in/a.pdf", "new");
    EXPECT_EQ(bring({path, file("in/b.pdf")}, {}, false, false).paths, QStringList{there("b.pdf")});
    EXPECT_TRUE(m_said->questions.isEmpty());
    EXPECT_EQ(bytesOf(path), "new");
}

TEST(XPRecentDestinations, TheOldestGoesFirst)
{
    UserDefaults::standard().setValue(XPRecentDestinations::maximumKey, PropertyValue::integer(2));
    const auto used = [](const char *path, double date) {
        return PropertyValue::Dictionary{
            {QStringLiteral("path"), PropertyValue(QString::fromLatin1(path))},
            {QStringLiteral("date"), PropertyValue::Date{date}}};
    };
    UserDefaults::standard().setValue(
        XPRecentDestinations::key,
        PropertyValue::Dictionary{{QStringLiteral("/a"), used("/a", 2)},
                                  {QStringLiteral("/b"), used("/b", 1)}});
    const QString odd = QStringLiteral("/c/") + XPPath::decode("\xff");
    XPRecentDestinations::updatePrefsForRecentDestinations(odd);
    EXPECT_EQ(XPRecentDestinations::paths(), (QStringList{odd, QStringLiteral("/a")}));
    // 0 counts as 10, and what has no key does not count as the oldest.
    UserDefaults::standard().setValue(XPRecentDestinations::maximumKey, PropertyValue::integer(0));
    PropertyValue::Dictionary many = {{QString(), PropertyValue::Dictionary()}};
    for (int i = 0; i < 12; ++i)
        many.insert(
            QString::number(i),
            PropertyValue::Dictionary{{QStringLiteral("date"), PropertyValue::Date{double(i)}}});
    const auto left = XPRecentDestinations::removeExtraDestinations(many);
    EXPECT_EQ(left.size(), 10);
    EXPECT_TRUE(left.contains(QString()));
    EXPECT_FALSE(left.contains(QStringLiteral("2")));
    UserDefaults::standard().remove(XPRecentDestinations::maximumKey);
}
