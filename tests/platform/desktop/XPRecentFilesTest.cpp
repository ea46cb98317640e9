#include "XPRecentFiles.h"

#include "TestHome.h"
#include "XPAtomicFile.h"
#include "XPPath.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QThreadPool>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

// As a program of another toolkit leaves it.
constexpr const char *others =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<xbel version="1.0"
      xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks"
      xmlns:mime="http://www.freedesktop.org/standards/shared-mime-info">
  <bookmark href="file:///home/other%20file.pdf" added="2024-01-02T03:04:05.000000Z" modified="2024-01-02T03:04:05.000000Z" visited="2024-02-03T03:04:05.000000Z">
    <title>Of others</title>
    <info>
      <metadata owner="http://freedesktop.org">
        <mime:mime-type type="application/pdf"/>
        <bookmark:groups><bookmark:group>Office</bookmark:group></bookmark:groups>
        <bookmark:applications>
          <bookmark:application name="Reader" exec="&apos;reader %u&apos;" modified="2024-01-02T03:04:05.000000Z" count="7"/>
        </bookmark:applications>
        <bookmark:private/>
      </metadata>
    </info>
  </bookmark>
</xbel>
)";

class RecentFiles : public testing::Test
{
protected:
    RecentFiles() { QFile::remove(list()); }
    ~RecentFiles() override
    {
        QFile::remove(list());
        QFile::remove(kde());
    }
    static QString list()
    {
        return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
               QStringLiteral("/recently-used.xbel");
    }
    static QString kde()
    {
        return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
               QStringLiteral("/kdeglobals");
    }
    static void store(const QString &path, const QByteArray &bytes)
    {
        EXPECT_FALSE(XPAtomicFile::write(path, bytes));
    }
    static QString stored() { return QString::fromUtf8(XPAtomicFile::read(list()).valueOr({})); }
    static qsizetype countOf(const char *pattern)
    {
        auto found = QRegularExpression(QString::fromLatin1(pattern)).globalMatch(stored());
        qsizetype count = 0;
        for (; found.hasNext(); found.next())
            ++count;
        return count;
    }

    const TestFolder m_folder;
};

} // namespace

TEST_F(RecentFiles, StandInTheListWithWhatOthersWrote)
{
    store(list(), others);
    const QString plain = m_folder.file(QStringLiteral("a & b.pdf"));
    const QString odd = m_folder.file(XPPath::decode(QByteArrayView("odd\xff\n%.txt")));
    EXPECT_FALSE(
        XPRecentFiles::add({plain, odd, m_folder.path(), m_folder.path(QStringLiteral("gone"))}));
    EXPECT_FALSE(XPRecentFiles::add({plain}));
    EXPECT_EQ(countOf("<bookmark href"), 3) << "no folder, and nothing that is not there";
    for (const char *kept : {"other%20file\\.pdf", "visited=\"2024-02-03", "<title>Of others",
                             "Reader\" exec=\"&apos;reader %u&apos;\"[^>]*count=\"7\"", ">Office<",
                             "<bookmark:private"})
        EXPECT_EQ(countOf(kept), 1) << kept;
    EXPECT_EQ(countOf("/a%20(&amp;|%26)%20b\\.pdf"), 1);
    EXPECT_EQ(countOf("/odd%FF%0A%25\\.txt"), 1);
    EXPECT_EQ(countOf("Murn\" exec=\"&apos;murn %u&apos;\"[^>]*count=\"2\""), 1) << "opened twice";
    EXPECT_EQ(countOf("Murn\" exec=\"&apos;murn %u&apos;\"[^>]*count=\"1\""), 1);
    EXPECT_EQ(countOf("type=\"text/plain\""), 1);
}

TEST_F(RecentFiles, LeaveAloneWhatTheyCannotReadOrMayNotWrite)
{
    struct Row
    {
        const char *list;
        const char *kde;
        bool fails;
    };
    static constexpr std::array rows = {
        Row{"<xbel version=\"1.0\"><bookmark href=\"file:///a\">", "", true}, // cut
        Row{"no list at all", "", true},
        Row{others, "[RecentDocuments]\nUseRecent=false\n", false}, // the user said no
    };
    const QString file = m_folder.file(QStringLiteral("a.pdf"));
    for (const Row &row : rows) {
        SCOPED_TRACE(row.list);
        store(list(), row.list);
        store(kde(), row.kde);
        EXPECT_EQ(XPRecentFiles::add({file}).has_value(), row.fails);
        EXPECT_EQ(stored(), QString::fromUtf8(row.list));
    }
}

TEST_F(RecentFiles, AreAllThereWhenManyWriteAtOnce)
{
    constexpr int threads = 4;
    constexpr int each = 5;
    std::vector<std::thread> writers;
    for (int thread = 0; thread < threads; ++thread) {
        QStringList files;
        for (int i = 0; i < each; ++i)
            files.append(m_folder.file(QStringLiteral("%1-%2.txt").arg(thread).arg(i)));
        writers.emplace_back([files] {
            for (const QString &file : files)
                EXPECT_FALSE(XPRecentFiles::add({file}));
        });
    }
    for (std::thread &writer : writers)
        writer.join();
    EXPECT_EQ(countOf("<bookmark href"), threads * each);

    for (int i = 0; i < 100; ++i)
        XPRecentFiles::note({m_folder.file(QStringLiteral("later %1.txt").arg(i))});
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_EQ(countOf("<bookmark href"), threads * each + 100);
}
