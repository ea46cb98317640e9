#include "KPDocCache.h"

#include "Karvex.h"
#include "TestHome.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPTranslations.h"

#include <QLocale>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

// Answers every question with one button.
class Prompts : public XPPrompts
{
public:
    explicit Prompts(int button) : m_button(button) {}
    void ask(const Question &question, std::function<void(int)> answer) override
    {
        asked = question;
        ++count;
        answer(m_button);
    }
    void alert(const QString &, const QString &) override {}

    static inline Question asked;
    static inline int count = 0;

private:
    const int m_button;
};

class DocNames : public testing::Test
{
protected:
    DocNames() { XPTranslations::install(QLocale(QLocale::English)); }
    ~DocNames() override
    {
        xpGuiThread.assertHere();
        XPPrompts::install(nullptr);
    }

    static void answerWith(int button)
    {
        xpGuiThread.assertHere();
        Prompts::count = 0;
        XPPrompts::install(std::make_unique<Prompts>(button));
    }
    // The error's kind; nothing: it worked.
    static std::optional<XPError::Kind> rename(KPDoc *doc, const QString &name)
    {
        xpGuiThread.assertHere();
        std::optional<XPError::Kind> kind = XPError::Kind::Io;
        int answers = 0;
        doc->setFsDisplayName(name, [&](const std::optional<XPError> &error) {
            ++answers;
            kind = error ? std::optional(error->kind) : std::nullopt;
        });
        EXPECT_EQ(answers, 1);
        return kind;
    }
    static bool exists(const QString &path) { return XPFileInfo::read(path).hasValue(); }

    const TestFolder m_folder;
};

enum Button { Escape = -1, Keep = 0, Use = 1 };

} // namespace

TEST(DocFileNames, AreMadeOfWhatIsTyped)
{
    EXPECT_EQ(KPDoc::displayFileNameToFSName(QStringLiteral("a/b:c")), u"a:b c");
    EXPECT_EQ(KPDoc::displayFileNameToFSName(QStringLiteral("a\r\nb\n")), u"ab");
    EXPECT_EQ(KPDoc::changeCharsForNameToFinderDisplayMode(QStringLiteral("a:b")), u"a/b");
}

TEST_F(DocNames, RenameTheFileAndTellOfIt)
{
    const QString path = m_folder.file(QStringLiteral("old.pdf"));
    ASSERT_FALSE(Karvex::setUserTags(PropertyValue(QStringList{QStringLiteral("kept")}), path));
    KPDoc *doc = KPDocCache::docAtPath(path);
    PropertyValue::Dictionary told;
    const auto observation = XPNotificationCenter::instance().addObserver(
        KPDoc::pathChangedNotification, [&](const XPNotification &each) { told = each.userInfo; });
    EXPECT_EQ(rename(doc, QStringLiteral("new/1.pdf")), std::nullopt);
    const QString renamed = m_folder.path(QStringLiteral("new:1.pdf"));
    EXPECT_EQ(doc->filePath(), renamed);
    EXPECT_EQ(doc->fsDisplayName(), u"new:1.pdf");
    EXPECT_EQ(told[QStringLiteral("oldPath")].string(), path);
    EXPECT_EQ(told[QStringLiteral("newPath")].string(), renamed);
    EXPECT_FALSE(exists(path));
    EXPECT_EQ(Karvex::getUserTags(renamed).valueOr({}), QStringList{QStringLiteral("kept")});
    EXPECT_EQ(KPDocCache::docAtPath(renamed), doc);
}

TEST_F(DocNames, RefuseWhatIsNoName)
{
    answerWith(Use);
    KPDoc *doc = KPDocCache::docAtPath(m_folder.file(QStringLiteral("a.pdf")));
    for (const QString &name :
         {QString(), QStringLiteral(" \n"), QStringLiteral(":"), QStringLiteral("."),
          QStringLiteral(".."), QString(252, u'x') + QStringLiteral(".pdf"),
          QString(126, u'\u00e9') + QStringLiteral(".pdf"), QString(u'a') + QChar(0),
          QString(QChar(0xD800))}) {
        EXPECT_EQ(rename(doc, name), XPError::Kind::InvalidArgument) << qPrintable(name);
        EXPECT_EQ(doc->fsName(), u"a.pdf");
    }
    EXPECT_EQ(rename(doc, QString(251, u'x') + QStringLiteral(".pdf")), std::nullopt);
}

TEST_F(DocNames, NeverReplaceAFile)
{
    // The folder's own spelling stays out of it.
    const QString folder = QStringLiteral("\u00e4/");
    const QString path = m_folder.file(folder + QStringLiteral("a.pdf"), "mine");
    const QString other = m_folder.file(folder + QStringLiteral("caf\u00e9.pdf"), "other's");
    KPDoc *doc = KPDocCache::docAtPath(path);
    EXPECT_TRUE(rename(doc, QStringLiteral("caf\u00e9.pdf")));
    EXPECT_TRUE(rename(doc, QStringLiteral("cafe\u0301.pdf"))) << "the other in another spelling";
    EXPECT_EQ(doc->filePath(), path);
    EXPECT_EQ(XPFileInfo::read(other)->size, 7);
    KPDoc *taken = KPDocCache::docAtPath(other);
    EXPECT_EQ(rename(taken, QStringLiteral("cafe\u0301.pdf")), std::nullopt) << "its own name";
    EXPECT_TRUE(exists(m_folder.path(folder + QStringLiteral("cafe\u0301.pdf"))));
    std::remove(XPPath::encode(path).constData());
    EXPECT_EQ(rename(doc, QStringLiteral("b.pdf")), XPError::Kind::NotFound);
    EXPECT_EQ(doc->filePath(), path);
}

TEST_F(DocNames, AskBeforeTheExtensionChanges)
{
    struct Row
    {
        const char *from, *typed;
        int button;
        const char *becomes; // nullptr: it stays
        int questions;
    };
    constexpr Row rows[] = {
        {"a.pdf", "b.txt", Keep, "b.pdf", 1},
        {"a.pdf", "b.txt", Use, "b.txt", 1},
        {"a.pdf", "b.txt", Escape, nullptr, 1},
        {"a.pdf", "b", Keep, "b.pdf", 1},
        {"a.pdf", "b", Use, "b", 1},
        {"a.pdf", "b.PDF", Escape, "b.PDF", 0},
        {"a", "b.txt", Escape, "b.txt", 0},
        {"a.tar", "b.tar.gz", Keep, "b.tar.tar", 1},
    };
    int number = 0;
    for (const Row &row : rows) {
        answerWith(row.button);
        const QString folder = QString::number(++number) + u'/';
        KPDoc *doc = KPDocCache::docAtPath(m_folder.file(folder + QLatin1String(row.from)));
        const auto kind = rename(doc, QLatin1String(row.typed));
        EXPECT_EQ(kind, row.becomes ? std::nullopt : std::optional(XPError::Kind::Cancelled));
        const QString name = QLatin1String(row.becomes ? row.becomes : row.from);
        EXPECT_EQ(doc->fsName(), name);
        EXPECT_TRUE(exists(m_folder.path(folder + name)));
        EXPECT_EQ(Prompts::count, row.questions) << row.from << ' ' << row.typed;
    }
    answerWith(Keep);
    (void)rename(KPDocCache::docAtPath(m_folder.file(QStringLiteral("q.pdf"))),
                 QStringLiteral("q.%1"));
    EXPECT_EQ(Prompts::asked.title,
              u"Are you sure you want to change the extension from \".pdf\" to \".%1\"?");
    EXPECT_EQ(Prompts::asked.text,
              u"If you make this change, your document may not open properly anymore.");
    EXPECT_EQ(Prompts::asked.buttons,
              (QStringList{QStringLiteral("Keep .pdf"), QStringLiteral("Use .%1")}));
    answerWith(Escape);
    (void)m_folder.file(QStringLiteral("2026.11/a"));
    KPDoc *folder = KPDocCache::docAtPath(m_folder.path(QStringLiteral("2026.11")));
    EXPECT_EQ(rename(folder, QStringLiteral("2026.12")), std::nullopt) << "a folder";
    EXPECT_EQ(Prompts::count, 0);
}
