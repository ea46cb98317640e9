#include "KPDocumentCommands.h"

#include "CommandScene.h"
#include "FiledFolder.h"
#include "KPArrangedDocs.h"
#include "KPCombineDialog.h"
#include "KPDocCache.h"
#include "KPResultGroups.h"
#include "KPResultsOrder.h"
#include "XPFactorySettings.h"
#include "XPQpdf.h"
#include "XPScanPDF.h"
#include "XPTextLayer.h"

#include <QPainter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QUndoStack>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr int goesOn = 0;
constexpr int cancels = 1;
constexpr bool encrypted = true;

// PDF documents whose pages are known by their widths, and what the window's commands make of them.
class DocumentCommands : public FiledFolder
{
protected:
    DocumentCommands()
    {
        xpGuiThread.assertHere();
        KPTagName::intializeGlobals();
        KPDocCache::intializeGlobals();
        XPFactorySettings::registerAll();
        said = ScriptedPrompts::install({});
        progress = TestProgress::install();
        targets.parent = &window;
        commands = std::make_unique<KPDocumentCommands>(targets, results, history);
        QObject::connect(commands.get(), &KPDocumentCommands::said, &window,
                         [this](const QString &message) { messages.append(message); });
    }
    ~DocumentCommands() override
    {
        xpGuiThread.assertHere();
        commands.reset();
        XPProgress::install(nullptr);
        XPPrompts::install(nullptr);
    }

    // In the place of the program that recognises text.
    class PathWith
    {
    public:
        PathWith(const DocumentCommands &scene, const QByteArray &script)
        {
            const QString program = scene.file("bin/tesseract", "#!/bin/sh\n" + script + '\n');
            EXPECT_EQ(::chmod(XPPath::encode(program).constData(), 0755), 0);
            qputenv("PATH", XPPath::encode(XPPath::folder(program)) + ':' + m_path);
        }
        ~PathWith() { qputenv("PATH", m_path); }
        PathWith(const PathWith &) = delete;
        PathWith &operator=(const PathWith &) = delete;

    private:
        const QByteArray m_path = qgetenv("PATH");
    };

    QString pdf(const char *name, const QList<int> &widths, bool isEncrypted = false) const
    {
        QPDF made;
        made.emptyPDF();
        for (const int width : widths) {
            made.addPage(made.makeIndirectObject(QPDFObjectHandle::parse(
                             "<< /Type /Page /MediaBox [0 0 " + std::to_string(width) +
                             " 100] /Resources << >> >>")),
                         false);
        }
        QString path = file(name, {});
        const QByteArray bytes = XPPath::encode(path); // the writer keeps no copy
        QPDFWriter writer(made, bytes.constData());
        if (isEncrypted)
            writer.setR6EncryptionParameters("user", "owner", true, true, true, true, true, true,
                                             qpdf_r3p_full, true);
        writer.write();
        return path;
    }
    static QList<int> widthsOf(const QString &path)
    {
        QList<int> widths;
        try {
            QPDF read;
            read.processFile(XPPath::encode(path).constData());
            for (QPDFPageObjectHelper &page : QPDFPageDocumentHelper(read).getAllPages())
                widths.append(static_cast<int>(page.getMediaBox().getArrayAsRectangle().urx));
        } catch (const std::exception &failure) {
            ADD_FAILURE() << path.toStdString() << ' ' << failure.what();
        }
        return widths;
    }
    void select(const QStringList &paths)
    {
        targets.docs.clear();
        for (const QString &path : paths)
            targets.docs.append(KPDocCache::docAtPath(path));
    }
    void run(const char *id) const
    {
        for (const KPCommand &command : commands->commands()) {
            if (QByteArray(command.id) == id)
                return command.run();
        }
        ADD_FAILURE() << id;
    }
    [[nodiscard]] bool isOver() const
    {
        return QTest::qWaitFor([this] { return progress->shown == 0; }, 60'000);
    }
    void runAndWait(const char *id) const
    {
        run(id);
        ASSERT_TRUE(isOver());
    }
    void acceptCombining(const QString &name = {})
    {
        auto *dialog = openDialog<KPCombineDialog>(window);
        ASSERT_TRUE(dialog);
        if (!name.isNull())
            dialog->findChild<QLineEdit *>()->setText(name);
        for (QPushButton *button : dialog->findChildren<QPushButton *>()) {
            if (button->text() == qtTrId("KPCombineButton"))
                QTest::mouseClick(button, Qt::LeftButton);
        }
        ASSERT_FALSE(dialog->isVisible());
    }
    QStringList filedToday() const
    {
        return QDir(today("")).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    QWidget window;
    TestTargets targets;
    KPArrangedDocs results;
    QUndoStack history;
    std::unique_ptr<KPDocumentCommands> commands;
    std::shared_ptr<ScriptedPrompts::Said> said;
    TestProgress *progress = nullptr;
    QStringList messages;
};

} // namespace

TEST_F(DocumentCommands, CombiningKeepsTheOrderReplacesNothingAndIsUndone)
{
    const QStringList paths = {pdf("in/one.pdf", {11, 12}), pdf("in/two.pdf", {21}),
                               file("in/text.txt"), pdf("in/three.pdf", {31})};
    select(paths);
    run("KPCombine");
    auto *dialog = openDialog<KPCombineDialog>(window);
    ASSERT_TRUE(dialog);
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog));
    QTest::keyClick(dialog, Qt::Key_Down, Qt::AltModifier);
    acceptCombining();
    // A second one of the same name, while the first is being made.
    run("KPCombine");
    acceptCombining();
    ASSERT_TRUE(isOver());
    EXPECT_EQ(filedToday(), (QStringList{QStringLiteral("one combined 1.pdf"),
                                         QStringLiteral("one combined.pdf")}));
    EXPECT_EQ(widthsOf(today("one combined.pdf")), (QList<int>{21, 11, 12, 31}));
    EXPECT_EQ(widthsOf(today("one combined 1.pdf")), (QList<int>{11, 12, 21, 31}));
    EXPECT_TRUE(XPFiledDocuments::isManaged(today("one combined.pdf")));
    EXPECT_EQ(widthsOf(paths[0]), (QList<int>{11, 12}));
    ASSERT_EQ(history.count(), 2);
    history.undo();
    EXPECT_EQ(filedToday(), QStringList{QStringLiteral("one combined.pdf")});
    history.redo();
    EXPECT_EQ(widthsOf(today("one combined 1.pdf")), (QList<int>{11, 12, 21, 31}));
    EXPECT_TRUE(said->alerts.isEmpty());
}

TEST_F(DocumentCommands, CombiningMakesNothingOfWhatCannotBeTakenOrIsStopped)
{
    const QString good = pdf("in/good.pdf", {11});
    select({good, pdf("in/secret.pdf", {12}, encrypted), file("in/junk\n.pdf", "%PDF-1.4 junk")});
    run("KPCombine");
    acceptCombining();
    ASSERT_TRUE(isOver());
    ASSERT_EQ(said->alerts.size(), 1);
    EXPECT_TRUE(said->alerts[0].startsWith(u"Nothing was combined: 2 documents cannot be taken"));
    EXPECT_TRUE(said->alerts[0].contains(u"secret.pdf: ")) << said->alerts[0].toStdString();
    EXPECT_TRUE(said->alerts[0].contains(u"junk\\n.pdf: ")) << said->alerts[0].toStdString();

    said->alerts.clear();
    select({good, good});
    progress->stopped = progress->begun + 1;
    run("KPCombine");
    acceptCombining();
    ASSERT_TRUE(isOver());
    EXPECT_TRUE(said->alerts.isEmpty()) << "who stopped it knows";
    select({good, file("in/text.txt")});
    run("KPCombine");
    EXPECT_FALSE(openDialog<KPCombineDialog>(window));
    EXPECT_EQ(said->alerts.size(), 1);
    EXPECT_EQ(filedToday(), QStringList());
    EXPECT_EQ(history.count(), 0);
}

// Also of a first document whose own name leaves no room for more.
TEST_F(DocumentCommands, ACombinedDocumentGetsANameThatTheLibraryCanShow)
{
    const auto named = [](char character, int count) { return QByteArray(count, character); };
    select({pdf(named('n', 250) + ".pdf", {11}), pdf("in/b.pdf", {21})});
    struct Row
    {
        QString typed;
        QByteArray name;
    };
    for (const Row &row :
         {Row{{}, named('n', 250) + " "}, Row{QStringLiteral("../../out"), ":..:out"},
          Row{QStringLiteral(" Bill\n2024.PDF "), "Bill2024"},
          Row{QStringLiteral(".hidden"), "hidden"},
          Row{QStringLiteral("a") + QString::fromUtf8("\xF0\x9F\x98\x80").repeated(99),
              "a" + QByteArray("\xF0\x9F\x98\x80").repeated(62)}}) {
        SCOPED_TRACE(row.name.constData());
        run("KPCombine");
        acceptCombining(row.typed);
        ASSERT_TRUE(isOver());
        EXPECT_TRUE(said->alerts.isEmpty()) << said->alerts.join(u' ').toStdString();
        EXPECT_EQ(widthsOf(today(row.name + ".pdf")), (QList<int>{11, 21}));
    }
    run("KPCombine");
    auto *dialog = openDialog<KPCombineDialog>(window);
    ASSERT_TRUE(dialog);
    for (const char *none : {"", " . ", ".pdf", "..pdf"}) {
        dialog->findChild<QLineEdit *>()->setText(QLatin1String(none));
        for (const QPushButton *button : dialog->findChildren<QPushButton *>())
            EXPECT_TRUE(button->text() != qtTrId("KPCombineButton") || !button->isEnabled())
                << none;
    }
}

// The window is closed: what waits is not begun, and what is at work ends without a word.
TEST_F(DocumentCommands, WorkEndsWithTheWindow)
{
    const QString gate = m_folder.path(QStringLiteral("gate"));
    const PathWith program(*this,
                           "while [ ! -e '" + XPPath::encode(gate) + "' ]; do sleep 0.01; done");
    const QString plain = pdf("in/a.pdf", {11, 12});
    select({plain, pdf("in/b.pdf", {21})});
    run("KPRecogniseText");
    const XPProgress::Task task = progress->last;
    run("KPCombine");
    acceptCombining();
    run("KPPrint");
    std::thread opening([&] {
        while (!task->isStopAsked)
            std::this_thread::yield();
        QFile(gate).open(QIODevice::WriteOnly);
    });
    commands.reset();
    opening.join();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(filedToday(), QStringList());
    EXPECT_EQ(widthsOf(plain), (QList<int>{11, 12}));
    EXPECT_EQ(history.count(), 0);
    EXPECT_TRUE(said->alerts.isEmpty());
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_FALSE(openDialog<QDialog>(window));
}

TEST_F(DocumentCommands, TheListHoldsWhatIsShownAndIsWrittenOnlyWhole)
{
    xpGuiThread.assertHere();
    const QStringList paths = {file("in/a.txt"), file("in/=HYPERLINK(\"x\").txt"),
                               m_folder.file(XPPath::decode("in/b\xff,\r\n.txt"))};
    auto shown = std::make_shared<KPDocArray>();
    for (const QString &path : paths)
        shown->push_back(KPDocCache::docAtPath(path));
    results.setArrangedObjects({shown, nullptr}, false);
    const QString list = m_folder.path(QStringLiteral("list.csv"));
    run("KPExportList");
    chooseFile(window, m_folder.path(QStringLiteral("list"))); // the extension comes by itself
    ASSERT_TRUE(isOver());
    const QByteArray bytes = bytesOf(list);
    EXPECT_EQ(bytes.count("\r\n"), 4) << bytes.constData();
    EXPECT_TRUE(bytes.contains("\r\n\"'=HYPERLINK(\"\"x\"\").txt\","));
    EXPECT_TRUE(bytes.contains("\r\n\"b\\xff,\\r\\n.txt\",")) << bytes.constData();

    const QString other = m_folder.path(QStringLiteral("drive/list.csv"));
    QDir().mkpath(XPPath::folder(other));
    progress->stopped = progress->begun + 1;
    run("KPExportList");
    chooseFile(window, other);
    ASSERT_TRUE(isOver());
    EXPECT_FALSE(exists(other));
    EXPECT_TRUE(said->alerts.isEmpty());

    // The drive goes while the dialog is open; then there is none.
    run("KPExportList");
    auto *dialog = openDialog<QFileDialog>(window);
    ASSERT_TRUE(dialog);
    ASSERT_EQ(::rmdir(XPPath::encode(XPPath::folder(other)).constData()), 0);
    Q_EMIT dialog->fileSelected(other);
    dialog->close();
    ASSERT_TRUE(isOver());
    ASSERT_EQ(said->alerts.size(), 1);
    EXPECT_TRUE(said->alerts[0].contains(u"drive/list.csv")) << said->alerts[0].toStdString();
}

TEST_F(DocumentCommands, MailAsksAboutManyAndNamesWhatIsMissing)
{
    const QString gone = file("in/gone.txt");
    select({file("in/a.txt"), gone});
    ASSERT_EQ(::unlink(XPPath::encode(gone).constData()), 0);
    said->answers = {cancels};
    runAndWait("KPMail");
    ASSERT_EQ(said->questions.size(), 1);
    EXPECT_EQ(said->questions[0].title, u"1 document cannot be mailed");
    EXPECT_TRUE(said->questions[0].text.startsWith(u"gone.txt: "));

    select({gone});
    runAndWait("KPMail");
    EXPECT_EQ(said->questions.size(), 1);
    ASSERT_EQ(said->alerts.size(), 1) << "there is nothing to go on with";

    QStringList many;
    for (int i = 0; i < 21; ++i)
        many.append(m_folder.file(QStringLiteral("in/%1.txt").arg(i)));
    select(many + QStringList{gone});
    said->answers = {goesOn, cancels};
    runAndWait("KPMail");
    ASSERT_EQ(said->questions.size(), 3);
    EXPECT_EQ(said->questions[2].title, u"Attach 21 documents to a message?");
    progress->stopped = progress->begun + 1;
    runAndWait("KPMail");
    EXPECT_EQ(said->questions.size(), 3);
    EXPECT_EQ(said->alerts.size(), 1);
}

// --- Recognising text

TEST_F(DocumentCommands, TextIsRecognisedUndoneAndDoneAgain)
{
    if (!XPTextLayer::isAvailable())
        GTEST_SKIP() << "the program that recognises text is not installed";
    QImage page(1240, 1754, QImage::Format_RGB32);
    page.fill(Qt::white);
    {
        QPainter painter(&page);
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(40);
        painter.setFont(font);
        painter.drawText(100, 300, QStringLiteral("The contract for the dry dock"));
    }
    const QString image = m_folder.path(QStringLiteral("page.png"));
    ASSERT_TRUE(page.save(image));
    const QString scan = file("in/scan.pdf");
    ASSERT_TRUE(ImageArrayToPDFDocument({image}, false, 0.5F, scan));
    const QString secret = pdf("in/secret.pdf", {12}, encrypted);
    select({scan, secret});
    const auto hasText = [&] { return bytesOf(scan).contains("/MurnText"); };
    runAndWait("KPRecogniseText");
    EXPECT_TRUE(hasText());
    EXPECT_EQ(messages, QStringList{QStringLiteral("Text was recognised on 1 page")});
    ASSERT_EQ(said->alerts.size(), 1);
    EXPECT_TRUE(said->alerts[0].contains(u"secret.pdf: ")) << said->alerts[0].toStdString();
    ASSERT_EQ(history.count(), 1);
    history.undo();
    ASSERT_TRUE(isOver());
    EXPECT_FALSE(hasText());
    history.redo();
    history.undo(); // before that is over
    ASSERT_TRUE(isOver());
    EXPECT_FALSE(hasText());
    history.redo();
    ASSERT_TRUE(isOver());
    EXPECT_TRUE(hasText());
    EXPECT_EQ(said->alerts.size(), 1);

    // Somebody else changed it.
    (void)pdf("in/scan.pdf", {77});
    history.undo();
    ASSERT_TRUE(isOver());
    ASSERT_EQ(said->alerts.size(), 2);
    EXPECT_TRUE(said->alerts[1].startsWith(u"1 document was left as it is\nscan.pdf: "));
    EXPECT_EQ(widthsOf(scan), QList<int>{77});
}

TEST_F(DocumentCommands, WhatWasNotRecognisedIsNotSaidToHaveText)
{
    const QString secret = pdf("in/secret.pdf", {12}, encrypted);
    const QString junk = file("in/junk.pdf", "%PDF-1.4 junk");
    const QString gone = file("in/gone.pdf");
    const QString plain = pdf("in/plain.pdf", {100});
    select({secret, junk, gone});
    ASSERT_EQ(::unlink(XPPath::encode(gone).constData()), 0);
    runAndWait("KPRecogniseText");
    ASSERT_EQ(said->alerts.size(), 1);
    EXPECT_EQ(said->alerts[0].count(u'\n'), 3) << said->alerts[0].toStdString();
    EXPECT_TRUE(messages.isEmpty()) << messages.join(u'|').toStdString();

    said->alerts.clear();
    select({plain});
    progress->stopped = progress->begun + 1;
    runAndWait("KPRecogniseText");
    EXPECT_TRUE(said->alerts.isEmpty());
    EXPECT_TRUE(messages.isEmpty()) << messages.join(u'|').toStdString();

    // The program fails on each page, as where it has no language.
    const PathWith program(*this, "exit 1");
    runAndWait("KPRecogniseText");
    EXPECT_EQ(said->alerts.size(), 1);
    EXPECT_TRUE(messages.isEmpty()) << messages.join(u'|').toStdString();

    // There is none.
    said->alerts.clear();
    qputenv("PATH", XPPath::encode(m_folder.path(QStringLiteral("in"))));
    runAndWait("KPRecogniseText");
    ASSERT_EQ(said->alerts.size(), 1);
    EXPECT_TRUE(said->alerts[0].startsWith(u"No text was recognised\n"));
    EXPECT_EQ(history.count(), 0);
    EXPECT_EQ(widthsOf(plain), QList<int>{100});
}

// --- Printing

TEST_F(DocumentCommands, PrintingShowsThePagesAndGoesOnOnlyWhenToldTo)
{
    const QString gone = file("in/gone.pdf");
    select({pdf("in/a.pdf", {100, 200}), gone});
    ASSERT_EQ(::unlink(XPPath::encode(gone).constData()), 0);
    const auto preview = [this] { return openDialog<QPrintPreviewDialog>(window); };
    said->answers = {cancels, goesOn};
    runAndWait("KPPrint");
    ASSERT_EQ(said->questions.size(), 1);
    EXPECT_EQ(said->questions[0].title, u"1 document cannot be printed");
    EXPECT_FALSE(preview());
    progress->stopped = progress->begun + 1;
    runAndWait("KPPrint");
    EXPECT_FALSE(preview());
    runAndWait("KPPrint");
    EXPECT_EQ(said->questions.size(), 2);
    ASSERT_TRUE(preview());

    const auto print = [&](const QString &to) {
        QPrinter paper;
        paper.setOutputFormat(QPrinter::PdfFormat);
        paper.setOutputFileName(to);
        QMetaObject::invokeMethod( // while its pages go out
            preview(), [&] { preview()->close(); }, Qt::QueuedConnection);
        Q_EMIT preview()->paintRequested(&paper);
    };
    const QString to = m_folder.path(QStringLiteral("paper.pdf"));
    print(to);
    ASSERT_TRUE(preview()) << "it stays until they are out";
    EXPECT_EQ(widthsOf(to).size(), 2);
    print(m_folder.path(QStringLiteral("absent/paper.pdf")));
    EXPECT_EQ(said->alerts.size(), 1);
    QTest::keyClick(preview(), Qt::Key_Escape);
    EXPECT_FALSE(preview());
}

TEST_F(DocumentCommands, OnlyThePagesThatAreChosenArePrinted)
{
    const QString words = file("in/words.txt", "The contract\n");
    select({words, pdf("in/a.pdf", {100, 200, 300}), words});
    runAndWait("KPPrint");
    auto *preview = openDialog<QPrintPreviewDialog>(window);
    ASSERT_TRUE(preview);
    int printed = 0;
    const auto print = [&](const std::function<void(QPrinter &)> &prepare) {
        QString to = m_folder.path(QStringLiteral("%1.pdf").arg(++printed));
        QPrinter paper;
        paper.setOutputFormat(QPrinter::PdfFormat);
        paper.setOutputFileName(to);
        prepare(paper);
        Q_EMIT preview->paintRequested(&paper);
        return to;
    };
    EXPECT_EQ(widthsOf(print([](QPrinter &) {})).size(), 5);
    EXPECT_EQ(widthsOf(print([](QPrinter &paper) {
                  paper.setPrintRange(QPrinter::PageRange);
                  paper.setFromTo(2, 4);
              })).size(),
              3);
    EXPECT_EQ(widthsOf(print([](QPrinter &paper) {
                  paper.setPrintRange(QPrinter::PageRange);
                  paper.setPageRanges(QPageRanges::fromString(QStringLiteral("1,3-4")));
              })).size(),
              3);
    progress->stopped = progress->begun + 1;
    const QString stopped = print([](QPrinter &) {});
    EXPECT_FALSE(exists(stopped)) << "no part passes for the whole";
    EXPECT_TRUE(said->alerts.isEmpty()) << "who stopped it knows";
    preview->close();
}
