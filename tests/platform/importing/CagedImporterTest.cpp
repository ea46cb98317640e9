#include "CagedImporter.h"

#include "TestHome.h"
#include "TestSystem.h"
#include "XPPath.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

static const QString plain = QStringLiteral("public.plain-text");

class CagedImporterTest : public testing::Test
{
protected:
    QByteArray file(const char *name, const QByteArray &bytes = "text") const
    {
        return XPPath::encode(m_folder.file(QLatin1String(name), bytes));
    }
    QString record() const { return m_folder.path(QStringLiteral("record")); }
    std::unique_ptr<CagedImporter> importer(const char *program) const
    {
        return std::make_unique<CagedImporter>(
            ImportWorker::Setup{.program = program, .idle = false, .limit = 150ms}, record());
    }
    QStringList notRead() const
    {
        QStringList names;
        for (const auto &one : ImportAttempts::notRead(record()))
            names << XPPath::fileName(XPPath::decode(one.path)) + u' ' +
                         documentFailureName(one.failure) +
                         (one.isLeftAlone() ? QString() : QStringLiteral(", for now"));
        return names;
    }
    const TestFolder m_folder;
};

TEST_F(CagedImporterTest, FindsTextAndAttributes)
{
    const auto importer = this->importer(MURN_IMPORTER);
    EXPECT_TRUE(importer->accepts(plain));
    EXPECT_TRUE(importer->accepts(QStringLiteral("public.python-script")));
    EXPECT_FALSE(importer->accepts(QStringLiteral("public.folder")));
    EXPECT_FALSE(importer->accepts(QStringLiteral("com.example.unknown")));
    const auto content = importer->import(file("a.md", "# Heading\n"),
                                          QStringLiteral("net.daringfireball.markdown"), {});
    ASSERT_TRUE(content);
    EXPECT_EQ(content->text, "# Heading\n");
    EXPECT_EQ(content->attributes[QStringLiteral("kMDItemTitle")].string(), u"Heading");
    EXPECT_EQ(content->size, 10);
    EXPECT_GT(content->modified, 0);
    EXPECT_FALSE(importer->import("/nowhere", plain, {}));
}

// A broken installation must not make the index forget what it holds.
TEST_F(CagedImporterTest, ForgetsNothingWithoutAnImporter)
{
    const auto importer = this->importer("/nowhere");
    EXPECT_TRUE(importer->accepts(plain));
    EXPECT_FALSE(importer->import(file("a.txt"), plain, {}));
}

TEST_F(CagedImporterTest, LeavesAloneWhatBreaksItTwice)
{
    const QByteArray path = file("a.die");
    const auto importer = this->importer(MURN_TEST_IMPORTER);
    // Tried twice at once; then it counts as read, without anything in it.
    const auto content = importer->import(path, plain, {});
    ASSERT_TRUE(content);
    EXPECT_TRUE(content->text.isEmpty());
    EXPECT_EQ(content->size, 4);
    EXPECT_EQ(notRead(), QStringList{QStringLiteral("a.die crashed")});
    // Also by the next process, until it changes.
    const auto next = this->importer("/bin/false");
    EXPECT_EQ(notRead().size(), 1);
    file("a.die", "changed");
    EXPECT_EQ(notRead(), QStringList());
    const auto changed = importer->import(path, plain, {});
    ASSERT_TRUE(changed);
    EXPECT_EQ(changed->size, 7);
    EXPECT_EQ(notRead().size(), 1);
}

TEST_F(CagedImporterTest, TriesWhatTookTooLongOnceMoreLater)
{
    const QByteArray path = file("a.sleep");
    EXPECT_FALSE(importer(MURN_TEST_IMPORTER)->import(path, plain, {}));
    EXPECT_EQ(notRead(), QStringList{QStringLiteral("a.sleep timed out, for now")});
    EXPECT_TRUE(importer(MURN_TEST_IMPORTER)->import(path, plain, {}));
    EXPECT_EQ(notRead(), QStringList{QStringLiteral("a.sleep timed out")});
    EXPECT_TRUE(importer(MURN_TEST_IMPORTER)->import(path, plain, {})) << "without trying";
}

// Everything ends in the middle of a file: nothing may be held against the innocent for long, yet
// what takes the machine down each time is left alone at last.
TEST_F(CagedImporterTest, KnowsWhatItWasAtWhenItWasKilled)
{
    const QByteArray path = file("a.txt");
    const auto killedAtIt = [&] {
        EXPECT_EQ(inOtherProcess([&] {
                      ImportAttempts attempts(record());
                      attempts.begin(*ImportDocument::open(path, plain));
                      ::_exit(7);
                      return 0;
                  }),
                  7);
    };
    killedAtIt();
    killedAtIt();
    EXPECT_EQ(importer(MURN_TEST_IMPORTER)->import(path, plain, {}).valueOr({}).text, "well read");
    killedAtIt();
    killedAtIt();
    killedAtIt();
    ImportAttempts attempts(record());
    EXPECT_EQ(notRead().size(), 1);
    const auto content = importer(MURN_TEST_IMPORTER)->import(path, plain, {});
    ASSERT_TRUE(content);
    EXPECT_TRUE(content->text.isEmpty());
}

TEST_F(CagedImporterTest, WorksWithADamagedRecord)
{
    for (const QByteArray &bytes : {QByteArray("rubbish"), QByteArray(100, '\xFF'), QByteArray()}) {
        m_folder.file(QStringLiteral("record"), bytes);
        m_folder.file(QStringLiteral("record.trying"), bytes);
        const auto importer = this->importer(MURN_TEST_IMPORTER);
        EXPECT_EQ(importer->import(file("a.txt"), plain, {}).valueOr({}).text, "well read");
        EXPECT_TRUE(importer->import(file("a.die"), plain, {}));
        EXPECT_EQ(notRead().size(), 1);
        m_folder.file(QStringLiteral("a.die"), "changed" + bytes);
    }
}
