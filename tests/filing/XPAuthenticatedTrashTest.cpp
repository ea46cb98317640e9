#include "XPAuthenticatedTrash.h"

#include "TestHome.h"
#include "XPAuthorisation.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QFile>
#include <gtest/gtest.h>
#include <sys/stat.h>

using Kind = XPError::Kind;

namespace {

// Answers every question with the button that the test chose.
class ScriptedPrompts : public XPPrompts
{
public:
    explicit ScriptedPrompts(int answer, int *asked) : m_answer(answer), m_asked(asked) {}
    void ask(const Question &, std::function<void(int)> answer) override
    {
        ++*m_asked;
        answer(m_answer);
    }
    void alert(const QString &, const QString &) override {}

private:
    const int m_answer;
    int *m_asked;
};

// A script in the place of pkexec, without a question.
class AuthenticatedTrash : public testing::Test
{
protected:
    ~AuthenticatedTrash() override
    {
        XPAuthorisation::installShared(std::make_unique<XPAuthorisation>());
        XPPrompts::install(nullptr);
    }

    void prepare(const QByteArray &script, int answer)
    {
        const QString launcher = folder.file(QStringLiteral("launcher"), "#!/bin/sh\n" + script);
        ASSERT_EQ(::chmod(XPPath::encode(launcher).constData(), 0755), 0);
        XPAuthorisation::installShared(std::make_unique<XPAuthorisation>(
            XPAuthorisation::Programs{XPPath::encode(launcher), ATTRIBUTE_WRITER}));
        XPPrompts::install(std::make_unique<ScriptedPrompts>(answer, &asked));
    }

    std::optional<XPError> result(const QString &path)
    {
        std::optional<XPError> result = XPError::make(Kind::Io, QStringLiteral("no answer"));
        xpGuiThread.assertHere();
        AuthenticatedMoveToTrash(path,
                                 [&](const std::optional<XPError> &error) { result = error; });
        return result;
    }

    const TestFolder folder;
    int asked = 0;
};

} // namespace

TEST_F(AuthenticatedTrash, TellsTheDesktopWhereTheFileWas)
{
    prepare("exec \"$@\"", 1);
    const QString file = folder.file(XPPath::decode("odd \xff%.pdf"));
    EXPECT_EQ(result(file), std::nullopt);
    EXPECT_EQ(asked, 0);
    EXPECT_FALSE(XPFileInfo::read(file));
    const QString trash = XPFolders::trash();
    const QByteArray there = XPPath::encode(trash) + "/files/odd \xff%.pdf";
    const QByteArray note = XPPath::encode(trash) + "/info/odd \xff%.pdf.trashinfo";
    EXPECT_TRUE(XPFileInfo::read(XPPath::decode(there)));
    std::FILE *const opened = std::fopen(note.constData(), "rb");
    ASSERT_TRUE(opened);
    char text[4096] = {};
    EXPECT_GT(std::fread(text, 1, sizeof text - 1, opened), 0U);
    std::fclose(opened);
    EXPECT_TRUE(QByteArray(text).contains("/odd%20%FF%25.pdf\n")) << text;
    std::remove(there.constData());
    std::remove(note.constData());
}

TEST_F(AuthenticatedTrash, RemovesForGoodOnlyWhenTheUserSaysSo)
{
    // Only removals are let through.
    const QByteArray script = "[ \"$2\" = remove ] && exec \"$@\"\nprintf MAW1; printf "
                              "'\\015\\000\\000\\000'";
    for (const int answer : {1, 0}) {
        asked = 0;
        prepare(script, answer);
        const QString file = folder.file(QStringLiteral("file"));
        const auto error = result(file);
        EXPECT_EQ(asked, 1);
        EXPECT_EQ(error.has_value(), answer == 1);
        EXPECT_EQ(XPFileInfo::read(file).hasValue(), answer == 1);
        EXPECT_FALSE(XPFileInfo::read(XPFolders::trash() + QStringLiteral("/info/file.trashinfo")));
    }
}

TEST_F(AuthenticatedTrash, DoesNothingToTheHomeFolderAndToWhatIsNotThere)
{
    prepare("exit 126", 0);
    EXPECT_EQ(result(XPFolders::home()), std::nullopt);
    EXPECT_EQ(result(folder.path(QStringLiteral("none"))), std::nullopt);
    EXPECT_EQ(asked, 0);
    const QString file = folder.file(QStringLiteral("file"));
    EXPECT_EQ(result(file)->kind, Kind::Cancelled);
    EXPECT_TRUE(XPFileInfo::read(file));
    EXPECT_EQ(asked, 0);
}
