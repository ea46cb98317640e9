#include "IndexFolderReader.h"
#include "IndexBytesKey.h"
#include "TestHome.h"
#include "XPPath.h"

#include <QFile>
#include <QFileInfo>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

namespace {

struct Found
{
    std::map<QByteArray, IndexRecord> records;
    std::map<QByteArray, bool> descends;
    std::optional<XPError> error;
    QString placeAfter; // the thread's working directory
};

// A reader wants a thread of its own.
Found read(
    const QByteArray &folder, bool ownDirectory, const std::function<void()> &opened = [] {})
{
    Found found;
    std::thread([&] {
        IndexFolderReader reader(std::make_shared<IndexRules>(),
                                 {.local = true, .ownDirectory = ownDirectory});
        IndexFolderReader::Hooks hooks;
        hooks.opened = [&](const QByteArray &, int) { opened(); };
        hooks.compare = [](const IndexListing &, std::span<IndexFolderReader::Seen>) {
            return IndexFolderReader::Hooks::Known();
        };
        hooks.deliver = [&](const IndexListing &listing) {
            for (size_t i = 0; i < listing.changes.size(); ++i) {
                const IndexRecord &record = listing.changes[i].record;
                // Its bytes are those of the listing.
                const QByteArray name(record.name.constData(), record.name.size());
                found.records[name] = record;
                found.descends[name] = listing.descend[i];
            }
            if (listing.error)
                found.error = listing.error;
        };
        reader.readFolder(folder, hooks);
        found.placeAfter = QFile::symLinkTarget(QStringLiteral("/proc/thread-self/cwd"));
    }).join();
    return found;
}

void put(const QByteArray &path, const char *name, const QByteArray &value)
{
    ASSERT_EQ(
        ::setxattr(path.constData(), name, value.constData(), static_cast<size_t>(value.size()), 0),
        0);
}

} // namespace

class FolderReader : public testing::TestWithParam<bool>
{
protected:
    const TestFolder m_folder;
    const QByteArray m_path = XPPath::encode(m_folder.path());
};
INSTANTIATE_TEST_SUITE_P(Directory, FolderReader, testing::Bool());

TEST_P(FolderReader, TakesEveryKindOfEntry)
{
    const QByteArray odd = "b\xff\n";
    const int file = ::open((m_path + '/' + odd).constData(), O_CREAT | O_WRONLY, 0600);
    ASSERT_GE(file, 0);
    ::close(file);
    ASSERT_EQ(::mkdir((m_path + "/folder").constData(), 0700), 0);
    ASSERT_EQ(::symlink("folder", (m_path + "/link").constData()), 0);
    ASSERT_EQ(::symlink("nowhere", (m_path + "/broken").constData()), 0);
    // Opening a pipe that nobody writes would wait for ever.
    ASSERT_EQ(::mkfifo((m_path + "/pipe").constData(), 0600), 0);
    const Found found = read(m_path, GetParam());
    EXPECT_FALSE(found.error);
    ASSERT_EQ(found.records.size(), 5U);
    EXPECT_TRUE(found.records.at(odd).info.isRegular());
    EXPECT_TRUE(found.descends.at("folder"));
    EXPECT_TRUE(found.records.at("link").info.isLink()); // not what it leads to
    EXPECT_FALSE(found.descends.at("link"));
    EXPECT_TRUE(found.records.at("broken").info.isLink());
    EXPECT_FALSE(found.descends.at("pipe"));
}

// One attribute that cannot be read costs that one alone, and its bytes are known all the same.
TEST_P(FolderReader, KeepsTheBytesOfWhatItCannotDecode)
{
    const QByteArray path = XPPath::encode(m_folder.file(QStringLiteral("a")));
    const QByteArray stars =
        "<plist version=\"1.0\"><integer>4</integer></plist>"; // not as we write it
    put(path, "user.com.apple.metadata:kMDItemStarRating", stars);
    put(path, "user.com.apple.metadata:kMDItemKXUserTags", "bplist00 torn");
    put(path, "user.com.apple.metadata:kMDItem\xff", "x");
    put(path, "user.other", "not ours");
    const IndexRecord record = read(m_path, GetParam()).records.at("a");
    const QString rating = QStringLiteral("kMDItemStarRating");
    EXPECT_EQ(record.attributes.value(rating).doubleValue(), 4);
    EXPECT_EQ(record.attributes.value(IndexBytesKey::of(rating)).data(), stars);
    EXPECT_EQ(record.attributes.value(QStringLiteral("kMDItemKXUserTags")).data(), "bplist00 torn");
    EXPECT_FALSE(record.attributes.contains(QStringLiteral("user.other")));
    EXPECT_FALSE(record.attributes.contains(QStringLiteral("other")));
}

// Another folder may stand at its path by then: what is told is told of the one that was opened.
TEST_P(FolderReader, LooksIntoTheFolderThatItOpened)
{
    const auto make = [&](const char *folder, QByteArrayView content) {
        const QByteArray path = m_path + '/' + folder;
        ASSERT_EQ(::mkdir(path.constData(), 0700), 0);
        QFile file(XPPath::decode(path + "/noEnding"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content.data(), content.size());
    };
    make("meant", "%PDF-1.4\n%\xe2\xe3\xcf\xd3\n");
    make("other", "\x89PNG\r\n\x1a\n");
    const QByteArray meant = m_path + "/meant";
    const Found found = read(meant, GetParam(), [&] {
        ASSERT_EQ(::rename(meant.constData(), (m_path + "/moved").constData()), 0);
        ASSERT_EQ(::rename((m_path + "/other").constData(), meant.constData()), 0);
    });
    ASSERT_EQ(found.records.size(), 1);
    EXPECT_EQ(found.records.at("noEnding").type, QStringLiteral("com.adobe.pdf"));
}

// Or else its volume could not be unmounted as long as the thread lives.
TEST_P(FolderReader, StandsInNoFolderAfterwards)
{
    const QString real = QFileInfo(m_folder.path()).canonicalFilePath();
    EXPECT_NE(read(m_path, GetParam()).placeAfter, real);
}

TEST_P(FolderReader, SaysWhenAFolderIsGoneOrNone)
{
    EXPECT_EQ(read(m_path + "/none", GetParam()).error->kind, XPError::Kind::NotFound);
    (void)m_folder.file(QStringLiteral("file"));
    EXPECT_TRUE(read(m_path + "/file", GetParam()).error);
    ASSERT_EQ(::symlink(m_path.constData(), (m_path + "/loop").constData()), 0);
    EXPECT_TRUE(read(m_path + "/loop", GetParam()).error); // links are never followed
}
