#include "Murnctl.h"
#include "TestHome.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace {

// The scanner library's own virtual scanner.
class MurnctlScan : public testing::Test
{
protected:
    MurnctlScan()
    {
        (void)m_folder.file(QStringLiteral("dll.conf"), "test\n");
        (void)m_folder.file(QStringLiteral("test.conf"), "number_of_devices 1\n");
        qputenv("SANE_CONFIG_DIR", QFile::encodeName(m_folder.path()));
    }
    ~MurnctlScan() override { qunsetenv("SANE_CONFIG_DIR"); }

    MurnctlResult scan(const QByteArrayList &words) const
    {
        return murnctl(QByteArrayList{"scan", "--resolution", "75", "--json"} + words,
                       m_folder.path());
    }

    const TestFolder m_folder;
};

} // namespace

TEST_F(MurnctlScan, PrintsOneJsonValueForAllDocuments)
{
    const MurnctlResult one = scan({"--source", "flatbed", "--to", "a.pdf"});
    ASSERT_EQ(one.status, 0) << one.err.constData();
    ASSERT_EQ(one.json().array().size(), 1);
    EXPECT_EQ(one.json().array().at(0).toObject().value(u"path").toString(),
              m_folder.path(QStringLiteral("a.pdf")));

    const MurnctlResult refused = scan({"--source", "flatbed", "--to", "a.pdf/b.pdf"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.json(), QJsonDocument(QJsonArray()));
    EXPECT_EQ(murnctl({"scan", "--discard"}, m_folder.path()).status, 0);
}

TEST_F(MurnctlScan, AProfileKeepsHowManyPagesAreWanted)
{
    const MurnctlResult kept =
        scan({"--source", "feeder", "--pages", "2", "--save-profile", "two", "--to", "a.pdf"});
    ASSERT_EQ(kept.status, 0) << kept.err.constData();
    const MurnctlResult used = scan({"--profile", "two", "--to", "b.pdf"});
    ASSERT_EQ(used.status, 0) << used.err.constData();
    QFile file(m_folder.path(QStringLiteral("b.pdf")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().count("/MediaBox"), 2); // the virtual feeder holds ten pages
}
