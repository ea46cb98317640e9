#include "FiledFolder.h"

// The shell's file work, and so every answer, is done when an operation returns.
class FilingRouting : public FiledFolder
{
protected:
    QStringList files(int count) const
    {
        QStringList paths;
        for (int i = 0; i < count; ++i)
            paths.append(m_folder.file(QStringLiteral("in/%1.txt").arg(i)));
        return paths;
    }
    std::optional<QStringList> route(const QStringList &paths, std::vector<int> answers,
                                     bool optionKey = false)
    {
        xpGuiThread.assertHere();
        m_said = ScriptedPrompts::install(std::move(answers));
        std::optional<std::optional<QStringList>> result;
        XPFiledDocuments::setFilesAsManagedRoutingIfNeeded(
            paths, optionKey, [&result](const std::optional<XPFileReport> &report) {
                EXPECT_FALSE(result);
                result = report ? std::optional(report->paths) : std::nullopt;
            });
        XPPrompts::install(nullptr);
        EXPECT_TRUE(result);
        return result.value_or(std::nullopt);
    }

    std::shared_ptr<ScriptedPrompts::Said> m_said;
};

static constexpr int onlyMark = 0;
static constexpr int cancel = 1;
static constexpr int markAndFile = 2;

TEST_F(FilingRouting, AsksAndDoesAsTheAnswerSays)
{
    const QString path = file("in/a.pdf");
    EXPECT_EQ(route({path}, {cancel}), std::nullopt);
    EXPECT_FALSE(XPFiledDocuments::isManaged(path));
    ASSERT_EQ(m_said->questions.size(), 1);
    EXPECT_EQ(m_said->questions.first().title, qtTrId("XPImportTitleSingle").arg(u"a.pdf"));
    EXPECT_EQ(m_said->questions.first().text, qtTrId("XPImportCommentMove"));
    EXPECT_EQ(m_said->questions.first().cancelButton, cancel);

    EXPECT_EQ(route({path}, {onlyMark}), QStringList{path});
    EXPECT_TRUE(XPFiledDocuments::isManaged(path));
    EXPECT_EQ(route({path}, {}), QStringList{path}); // marked already
    EXPECT_TRUE(m_said->questions.isEmpty());

    EXPECT_EQ(route({file("in/b.pdf")}, {markAndFile}), QStringList{today("b.pdf")});
    EXPECT_EQ(route({}, {}), QStringList());
    EXPECT_TRUE(m_said->alerts.isEmpty());
}

struct Batch
{
    int files;
    bool asks;
    bool hasAddendum;
    bool isRefused;
};

TEST_F(FilingRouting, TheSizeOfTheBatchDecides)
{
    for (const Batch &batch : {Batch{20, true, false, false}, Batch{21, true, true, false},
                               Batch{40, false, false, false}, Batch{41, true, true, false},
                               Batch{999, true, true, false}, Batch{1000, false, false, true}}) {
        // Up to 40 files nothing need be asked; the first two rows want it.
        setFlag(XPFiledDocuments::askKey, batch.files < 40);
        const auto result = route(files(batch.files), {});
        EXPECT_EQ(m_said->questions.size(), batch.asks ? 1 : 0) << batch.files;
        EXPECT_EQ(m_said->alerts.size(), batch.isRefused ? 1 : 0) << batch.files;
        EXPECT_EQ(result.has_value(), !batch.asks && !batch.isRefused) << batch.files;
        const QString addendum = qtTrId("XPImportCommentManyFileWarningAddendum")
                                     .replace(QStringLiteral("%1"), QString::number(batch.files));
        const bool hasAddendum = batch.asks && m_said->questions.value(0).text.endsWith(addendum);
        EXPECT_EQ(hasAddendum, batch.hasAddendum) << batch.files;
        QDir(m_folder.path(QStringLiteral("in"))).removeRecursively();
    }
}

TEST_F(FilingRouting, FilesInFoldersAreFoundAndTheSettingFilesThem)
{
    setFlag(XPFiledDocuments::askKey, false);
    setFlag(XPFiledDocuments::alwaysFileKey, true);
    file("in/a.pdf");
    file("in/deep/er/b.pdf");
    file("in/.hidden");
    file("in/.git/objects");
    auto paths = route({m_folder.path(QStringLiteral("in"))}, {}).value_or(QStringList());
    paths.sort();
    EXPECT_EQ(paths, (QStringList{today("a.pdf"), today("b.pdf")}));
}

TEST_F(FilingRouting, TheOptionKeyCopies)
{
    const QString path = file("in/a.pdf");
    EXPECT_EQ(route({path}, {}, true), QStringList{today("a.pdf")});
    EXPECT_TRUE(exists(path));
    EXPECT_FALSE(XPFiledDocuments::isManaged(path));
}

TEST_F(FilingRouting, WhatIsFiledAlreadyIsNoFailure)
{
    xpGuiThread.assertHere();
    m_said = ScriptedPrompts::install({});
    const QString there = today("b.pdf");
    QDir().mkpath(XPPath::folder(there));
    ASSERT_TRUE(QFile::copy(file("in/b.pdf"), there));
    XPFiledDocuments::putFilesIntoFiledDocumentsUI({there, file("in/a.pdf")},
                                                   [](const XPFileReport &) {});
    XPPrompts::install(nullptr);
    EXPECT_TRUE(m_said->alerts.isEmpty()) << m_said->alerts.value(0).toStdString();
    EXPECT_TRUE(exists(there) && exists(today("a.pdf")));
}

TEST_F(FilingRouting, WarnsOnceOfWhatWasNotDone)
{
    setFlag(XPFiledDocuments::askKey, false);
    setFlag(XPFiledDocuments::alwaysFileKey, true);
    const QString gone = m_folder.path(QStringLiteral("gone"));
    EXPECT_EQ(route({file("in/a.pdf"), gone}, {}), QStringList{today("a.pdf")});
    EXPECT_EQ(m_said->alerts, QStringList{qtTrId("XPNotAllImportedTitle") + u'\n' +
                                          qtTrId("XPNotAllImportedComment").arg(u"1", u"2")});

    const QString link = m_folder.path(QStringLiteral("in/link"));
    ASSERT_EQ(::symlink("a.pdf", XPPath::encode(link).constData()), 0);
    EXPECT_EQ(route({link}, {}), QStringList{today("link")});
    ASSERT_EQ(m_said->alerts.size(), 1);
    EXPECT_TRUE(m_said->alerts.first().startsWith(qtTrId("XPNotMarkedSingle").arg(u"link")));
}
