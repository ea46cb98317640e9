#include "KPPreviewController.h"

#include "KPArrangedDocs.h"
#include "KPLibraryController.h"
#include "KPLibraryModel.h"
#include "KPPageTurner.h"
#include "KPPreviewPicture.h"
#include "KPPreviewSheet.h"
#include "KPPreviewText.h"
#include "KPPreviewWindow.h"
#include "KPTagName.h"
#include "LibraryNavigator.h"
#include "ShownSearch.h"
#include "TestHome.h"
#include "XPFactorySettings.h"
#include "XPPath.h"
#include "XPStarsEditor.h"
#include "XPTagsEditor.h"

#include <QAbstractButton>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

using Shows = KPPreviewWindow::Shows;

namespace {

constexpr const char *square = "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='30'>"
                               "<rect width='40' height='30' fill='red'/></svg>";

class Preview : public testing::Test
{
protected:
    void SetUp() override
    {
        XPFactorySettings::registerAll();
        KPTagName::intializeGlobals();
        library = std::make_unique<KPLibraryController>(navigator, model, pictures);
        library->widget()->resize(700, 500);
        library->widget()->show();
        preview = std::make_unique<KPPreviewController>(*library, pictures, library->widget(),
                                                        MURN_IMPORTER);
        edited = std::make_unique<QSignalSpy>(preview.get(), &KPPreviewController::editRequested);
    }
    void TearDown() override
    {
        edited.reset();
        preview.reset();
        library.reset();
    }
    KPDoc *add(const char *name, const QByteArray &bytes)
    {
        KPDoc *doc = shownDoc(folder.file(QString::fromUtf8(name), bytes));
        doc->updateFileInfo();
        search.add(doc);
        return doc;
    }
    void select(const KPDoc::Docs &docs) { library->setSelections(docs, true); }
    void press(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(window()->focusWidget() ? window()->focusWidget() : window(),
                        static_cast<Qt::Key>(key), modifiers);
    }
    KPPreviewWindow *window() const { return preview->window(); }
    bool comes(Shows shows)
    {
        return QTest::qWaitFor([&] { return window()->shows() == shows; }, 30000);
    }
    bool isSaid(const QString &text)
    {
        return QTest::qWaitFor(
            [&] {
                for (const QLabel *label : window()->findChildren<QLabel *>()) {
                    if (label->isVisible() && label->text() == text)
                        return true;
                }
                return false;
            },
            30000);
    }
    KPFileEdit asked() { return edited->takeFirst().first().value<KPFileEdit>(); }

    TestFolder folder;
    ShownSearch search;
    LibraryNavigator navigator{search.searcher};
    KPLibraryModel model{&search.searcher};
    KPQuickLook pictures{{{.importer = MURN_IMPORTER,
                           .sharedCache = folder.path(QStringLiteral("thumbnails")),
                           .failuresFolder = QStringLiteral("murn-1"),
                           .slots = 1},
                          nullptr}};
    std::unique_ptr<KPLibraryController> library;
    std::unique_ptr<KPPreviewController> preview;
    std::unique_ptr<QSignalSpy> edited;
};

} // namespace

TEST_F(Preview, ShowsOfEachKindWhatItsReaderWants)
{
    const struct
    {
        const char *name;
        QByteArray bytes;
        Shows shows;
        const char *words;
    } cases[] = {
        {"square.svg", square, Shows::Picture, nullptr},
        {"plain.txt", "one line\nand <b>another</b>", Shows::Words, "and <b>another</b>"},
        {"code.py", "def f():\n\treturn 1\n", Shows::Words, "\treturn 1"},
        {"numbers.csv", "name,sum\nrent,\"1,000\"\n", Shows::Words, nullptr},
        {"letter.eml",
         "From: a@b.example\nTo: c@d.example\nSubject: Moin\n\nThe words of the letter\n",
         Shows::Words, "The words of the letter"},
        {"noise.bin", QByteArray("\x00\x01\xfe\xff", 4), Shows::Facts, nullptr},
    };
    KPDoc::Docs docs;
    for (const auto &each : cases)
        docs.append(add(each.name, each.bytes));
    search.deliver();
    select({docs.first()});
    preview->open();
    ASSERT_TRUE(preview->isVisible());
    for (qsizetype i = 0; i < docs.size(); ++i) {
        select({docs[i]});
        EXPECT_EQ(preview->document(), docs[i]);
        ASSERT_TRUE(comes(cases[i].shows)) << cases[i].name;
        if (cases[i].words) {
            const auto *text = window()->words().findChild<QPlainTextEdit *>();
            EXPECT_TRUE(text->isVisible() &&
                        text->toPlainText().contains(QString::fromUtf8(cases[i].words)))
                << cases[i].name << text->toPlainText().toStdString();
        }
    }
    select({docs[3]});
    ASSERT_TRUE(comes(Shows::Words));
    const auto *table = window()->words().findChild<QTableView *>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return table->isVisible(); }, 30000));
    EXPECT_EQ(table->model()->index(1, 1).data().toString(), QStringLiteral("1,000"));
}

TEST_F(Preview, GoesThroughTheLibraryAndThroughASet)
{
    KPDoc::Docs docs;
    for (const char *name : {"a.svg", "b.svg", "c.svg", "d.svg"})
        docs.append(add(name, square));
    search.deliver();
    select({docs[0]});
    preview->open();
    ASSERT_TRUE(comes(Shows::Picture));
    press(Qt::Key_Right);
    EXPECT_EQ(preview->document(), docs[1]);
    EXPECT_EQ(library->documents(), KPDoc::Docs{docs[1]}) << "one selection for both";
    press(Qt::Key_Up);
    press(Qt::Key_Left);
    EXPECT_EQ(preview->document(), docs[0]) << "there is none before";

    select({docs[1], docs[3]});
    EXPECT_EQ(window()->shows(), Shows::Sheet);
    press(Qt::Key_Return);
    EXPECT_EQ(window()->shows(), Shows::Picture);
    EXPECT_EQ(preview->document(), docs[1]);
    press(Qt::Key_Right);
    EXPECT_EQ(preview->document(), docs[3]) << "not the one between";
    EXPECT_EQ(library->documents().size(), 2) << "looking at them selects nothing else";
    EXPECT_TRUE(isSaid(qtTrId("KPPageOf").arg(2).arg(2)));
    press(Qt::Key_Space);
    EXPECT_FALSE(preview->isVisible());
    EXPECT_EQ(preview->document(), nullptr);
    select({});
    preview->open();
    EXPECT_FALSE(preview->isVisible()) << "of nothing";
}

TEST_F(Preview, EndsAsItsKeysSay)
{
    KPDoc *doc = add("a.svg", square);
    search.deliver();
    select({doc});
    for (const auto &[key, modifiers] :
         {std::pair(Qt::Key_Space, Qt::NoModifier), std::pair(Qt::Key_W, Qt::NoModifier),
          std::pair(Qt::Key_W, Qt::ControlModifier), std::pair(Qt::Key_Escape, Qt::NoModifier)}) {
        preview->open();
        ASSERT_TRUE(preview->isVisible());
        press(key, modifiers);
        EXPECT_FALSE(preview->isVisible()) << key;
    }
    preview->open();
    press(Qt::Key_F);
    EXPECT_TRUE(window()->windowState() & Qt::WindowFullScreen);
    press(Qt::Key_Escape);
    EXPECT_FALSE(window()->windowState() & Qt::WindowFullScreen);
    EXPECT_TRUE(preview->isVisible()) << "leaves one thing at a time";
}

TEST_F(Preview, EditsWhatItShowsAndNothingElse)
{
    KPDoc *first = add("a.svg", square);
    KPDoc *second = add("b.svg", square);
    search.deliver();
    select({first});
    preview->open();
    ASSERT_TRUE(comes(Shows::Picture));
    press(Qt::Key_3, Qt::AltModifier);
    ASSERT_EQ(edited->count(), 1);
    const KPFileEdit rated = asked();
    EXPECT_EQ(rated.paths, QStringList{first->filePath()});
    EXPECT_EQ(rated.rating, 3);
    EXPECT_FALSE(rated.tags);

    // What stands in the field when another document comes was meant for the one before.
    press(Qt::Key_T, Qt::ControlModifier);
    QTest::keyClicks(window()->tags().entry(), QStringLiteral("harbour"));
    select({second});
    ASSERT_EQ(edited->count(), 1);
    KPFileEdit tagged = asked();
    EXPECT_EQ(tagged.paths, QStringList{first->filePath()});
    ASSERT_TRUE(tagged.tags);
    EXPECT_EQ(tagged.tags->after, QStringList{QStringLiteral("harbour")});
    EXPECT_EQ(window()->tags().entry()->text(), QString());
    EXPECT_EQ(window()->tags().tags(), QStringList());

    // So it is when the window closes.
    window()->tags().focusEntry();
    QTest::keyClicks(window()->tags().entry(), QStringLiteral("quay"));
    preview->close();
    ASSERT_EQ(edited->count(), 1);
    tagged = asked();
    EXPECT_EQ(tagged.paths, QStringList{second->filePath()});
}

TEST_F(Preview, ReadsAFileAgainThatChangesAndLeavesOneThatGoes)
{
    KPDoc *first = add("a.txt", "what it said first");
    KPDoc *second = add("b.txt", "the other");
    search.deliver();
    select({first});
    preview->open();
    const auto says = [&](const char *words) {
        return QTest::qWaitFor(
            [&] {
                const auto *text = window()->words().findChild<QPlainTextEdit *>();
                return window()->shows() == Shows::Words &&
                       text->toPlainText() == QString::fromUtf8(words);
            },
            30000);
    };
    ASSERT_TRUE(says("what it said first"));
    (void)folder.file(QStringLiteral("a.txt"), "what it says now, which is longer");
    first->updateFileInfo();
    XPNotificationCenter::instance().post(KPDoc::didChangeNotification);
    EXPECT_TRUE(says("what it says now, which is longer"));

    select({first, second});
    press(Qt::Key_Return);
    ASSERT_EQ(preview->document(), first);
    ASSERT_TRUE(QFile::remove(first->filePath()));
    search.remove(first);
    search.deliver();
    ASSERT_TRUE(QTest::qWaitFor([&] { return preview->document() == second; }, 30000));
    EXPECT_TRUE(says("the other"));
    search.remove(second);
    search.deliver();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !preview->isVisible(); }, 30000));
}
