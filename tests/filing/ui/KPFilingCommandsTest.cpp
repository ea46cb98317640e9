#include "KPFilingCommands.h"

#include "CommandScene.h"
#include "FiledFolder.h"
#include "KPDocCache.h"
#include "KPDocServices.h"
#include "XPRecentDestinations.h"

#include <QMimeData>
#include <QSet>
#include <QTest>
#include <QUndoStack>
#include <algorithm>

namespace {

struct Services : public KPDocServices
{
    void documentsImported(const QStringList &paths) override { imported = paths; }
    static inline QStringList imported; // the last time
};

constexpr int confirmed = 0;
constexpr int cancelled = 1;

// File work is done at once here, as in the shell; questions are answered by a list.
class FilingCommands : public FiledFolder
{
protected:
    FilingCommands()
    {
        KPDocCache::intializeGlobals();
        setFlag(QStringLiteral("KPConfirmDelete"), false);
        setFlag(QStringLiteral("KPFinderConfirmMoveorCopy"), false);
        xpGuiThread.assertHere();
        said = ScriptedPrompts::install({});
        targets.parent = &window;
    }
    ~FilingCommands() override
    {
        xpGuiThread.assertHere();
        XPPrompts::install(nullptr);
    }

    QStringList select(int count)
    {
        QStringList paths;
        targets.docs.clear();
        for (int i = 0; i < count; ++i) {
            paths.append(m_folder.file(QStringLiteral("in/%1.pdf").arg(i), QByteArray::number(i)));
            targets.docs.append(KPDocCache::docAtPath(paths.last()));
        }
        return paths;
    }
    void run(const char *id)
    {
        const QList<KPCommand> table = commands.commands();
        const auto command = std::find_if(table.begin(), table.end(), [id](const auto &entry) {
            return QByteArray(entry.id) == id;
        });
        ASSERT_NE(command, table.end());
        command->run();
    }
    static int countOf(const QStringList &paths)
    {
        return static_cast<int>(std::count_if(paths.begin(), paths.end(), exists));
    }
    QString to(const char *name) const
    {
        return m_folder.path(QStringLiteral("to/")) + QLatin1String(name);
    }
    void expectUndoAndRedo(const QStringList &before, const QStringList &after, const char *text)
    {
        ASSERT_EQ(history.count(), 1);
        EXPECT_EQ(history.undoText(), QLatin1String(text));
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(countOf(after), after.size());
            EXPECT_EQ(countOf(before), 0);
            history.undo();
            EXPECT_EQ(countOf(after), 0);
            EXPECT_EQ(countOf(before), before.size());
            history.redo();
        }
    }

    QWidget window;
    TestTargets targets;
    QUndoStack history;
    KPFilingCommands commands{targets, history};
    std::shared_ptr<ScriptedPrompts::Said> said;
};

} // namespace

TEST_F(FilingCommands, MarksOnlyWhatHasAnotherMark)
{
    const auto can = [this](const char *id) {
        for (const KPCommand &command : commands.commands()) {
            if (QByteArray(command.id) == id)
                return command.state().isEnabled;
        }
        return false;
    };
    EXPECT_FALSE(can("KPManage"));
    EXPECT_FALSE(can("KPUnmanage"));
    select(2);
    EXPECT_TRUE(can("KPManage"));
    EXPECT_TRUE(can("KPUnmanage")) << "a document may be shown for its type alone";
    run("KPManage");
    EXPECT_FALSE(can("KPManage"));
    EXPECT_TRUE(can("KPUnmanage"));
    const KPDoc::Docs both = targets.docs;
    targets.docs.removeLast();
    run("KPUnmanage");
    EXPECT_TRUE(can("KPManage"));
    EXPECT_FALSE(can("KPUnmanage"));
    targets.docs = both;
    EXPECT_TRUE(can("KPManage")) << "one of them";
    EXPECT_TRUE(can("KPUnmanage"));
}

TEST_F(FilingCommands, AsksBeforeTheTrashAsTheSettingAndTheNumberSay)
{
    struct Row
    {
        int count;
        bool confirms;
        int answer;
        const char *title; // nothing: not asked
    };
    for (const Row &row :
         {Row{1, false, confirmed, nullptr}, Row{1, true, cancelled, "Move “0.pdf” to the trash?"},
          Row{1, true, confirmed, "Move “0.pdf” to the trash?"}, Row{9, false, confirmed, nullptr},
          Row{9, true, confirmed, "Move 9 documents to the trash?"},
          Row{10, false, cancelled, "Move 10 documents to the trash?"},
          Row{10, false, confirmed, "Move 10 documents to the trash?"}}) {
        SCOPED_TRACE(testing::Message() << row.count << ' ' << row.confirms << ' ' << row.answer);
        setFlag(QStringLiteral("KPConfirmDelete"), row.confirms);
        const QStringList paths = select(row.count);
        said->questions.clear();
        said->answers = {row.answer};
        run("KPMoveToTrash");
        ASSERT_EQ(said->questions.size(), row.title ? 1 : 0);
        if (row.title) {
            EXPECT_EQ(said->questions[0].title, QString::fromUtf8(row.title));
            EXPECT_EQ(said->questions[0].cancelButton, cancelled);
        }
        const bool goes = !row.title || row.answer == confirmed;
        EXPECT_TRUE(QTest::qWaitFor([&] { return countOf(paths) == (goes ? 0 : row.count); }));
        EXPECT_EQ(targets.docs.first()->isGone(), goes);
    }
}

TEST_F(FilingCommands, TheTrashIsUndoneUnlessTheNameIsTaken)
{
    const QStringList paths = select(3);
    run("KPMoveToTrash");
    ASSERT_TRUE(QTest::qWaitFor([&] { return history.count() == 1; }));
    EXPECT_EQ(history.undoText(), u"Move of 3 documents to the trash");
    (void)m_folder.file(QStringLiteral("in/1.pdf"), "theirs");
    history.undo();
    EXPECT_EQ(bytesOf(paths[0]), "0");
    EXPECT_EQ(bytesOf(paths[1]), "theirs");
    EXPECT_EQ(bytesOf(paths[2]), "2");
    ASSERT_EQ(said->alerts.size(), 1);
    EXPECT_TRUE(said->alerts[0].startsWith(
        u"1 document was left as it is\n1.pdf: another file has this name now"))
        << said->alerts[0].toStdString();
    // The record of a file that went again is gone as well.
    KPDoc *doc = KPDocCache::docAtPath(paths[0]);
    history.redo();
    EXPECT_TRUE(doc->isGone());
    EXPECT_FALSE(exists(paths[0]) || exists(paths[2]));
    EXPECT_EQ(bytesOf(paths[1]), "theirs");
}

TEST_F(FilingCommands, MovesAndCopiesAreUndone)
{
    QDir().mkpath(m_folder.path(QStringLiteral("to")));
    const QStringList paths = select(2);
    xpGuiThread.assertHere();
    commands.moveCopySelectedTo(m_folder.path(QStringLiteral("to")), false);
    EXPECT_EQ(targets.docs[0]->filePath(), to("0.pdf"));
    expectUndoAndRedo(paths, {to("0.pdf"), to("1.pdf")}, "Move of 2 documents");
    EXPECT_EQ(XPRecentDestinations::paths().value(0), m_folder.path(QStringLiteral("to")));

    history.clear();
    commands.moveCopySelectedTo(m_folder.path(QStringLiteral("in")), true);
    ASSERT_EQ(history.count(), 1);
    EXPECT_EQ(countOf(paths), 2);
    history.undo();
    EXPECT_EQ(countOf(paths), 0);
    EXPECT_TRUE(exists(to("0.pdf")) && exists(to("1.pdf")));
}

TEST_F(FilingCommands, WhatAStoppedUndoLeftIsUndoneTheNextTime)
{
    xpGuiThread.assertHere();
    class StopsAtOnce : public XPProgress
    {
    public:
        void begin(const Task &task) override { task->isStopAsked = true; }
        void end(const Task & /*task*/) override {}
    };
    const QStringList paths = select(2);
    run("KPManage");
    XPProgress::install(std::make_unique<StopsAtOnce>());
    history.undo();
    XPProgress::install(nullptr);
    EXPECT_TRUE(XPFiledDocuments::allFilesManaged(paths));
    EXPECT_TRUE(said->alerts.isEmpty());
    history.redo();
    history.undo();
    EXPECT_FALSE(XPFiledDocuments::isManaged(paths[0]) || XPFiledDocuments::isManaged(paths[1]));
    history.redo();
    EXPECT_TRUE(XPFiledDocuments::allFilesManaged(paths));
}

TEST_F(FilingCommands, FilingIsUndoneWithTheMark)
{
    const QStringList paths = select(2);
    run("KPPutInFiledDocuments");
    EXPECT_TRUE(XPFiledDocuments::isManaged(today("0.pdf")));
    expectUndoAndRedo(paths, {today("0.pdf"), today("1.pdf")}, "Filing of 2 documents");
    history.undo();
    EXPECT_FALSE(XPFiledDocuments::isManaged(paths[0]));
}

TEST_F(FilingCommands, DeleteTakesOutOfTheLibraryAndLeavesTheFile)
{
    const QStringList paths = select(2);
    run("KPManage");
    EXPECT_TRUE(XPFiledDocuments::allFilesManaged(paths));
    const auto removed = KPDoc::numDocsRemovedFromLibrary();
    run("KPUnmanage");
    EXPECT_EQ(countOf(paths), 2);
    EXPECT_FALSE(XPFiledDocuments::isManaged(paths[0]));
    EXPECT_EQ(KPDoc::numDocsRemovedFromLibrary(), removed + 2);
    EXPECT_EQ(history.undoText(), u"Removal of 2 documents from the library");
    history.undo();
    EXPECT_TRUE(XPFiledDocuments::allFilesManaged(paths));
    history.undo();
    // Not a mark that says no, which would take out of the library what is there for its type.
    const auto none = std::optional<bool>();
    EXPECT_EQ(XPFiledDocuments::storedMark(paths[1]).valueOr(true), none);
    run("KPUnmanage");
    EXPECT_EQ(XPFiledDocuments::storedMark(paths[1]).valueOr({}), false);
    history.undo();
    EXPECT_EQ(XPFiledDocuments::storedMark(paths[1]).valueOr(true), none);
    history.redo();
    EXPECT_EQ(XPFiledDocuments::storedMark(paths[1]).valueOr({}), false);
}

TEST_F(FilingCommands, DuplicatesLieBesideTheirOriginals)
{
    const QStringList paths = select(1);
    targets.docs.append(KPDocCache::docAtPath(file("other/b.pdf")));
    const QStringList recent = XPRecentDestinations::paths();
    run("KPDuplicate");
    const QStringList made = {m_folder.path(QStringLiteral("in/0 1.pdf")),
                              m_folder.path(QStringLiteral("other/b 1.pdf"))};
    expectUndoAndRedo({}, made, "Duplication of 2 documents");
    EXPECT_EQ(countOf(paths), 1);
    EXPECT_EQ(XPRecentDestinations::paths(), recent);
}

TEST_F(FilingCommands, ARenamedFileGetsItsNameBack)
{
    xpGuiThread.assertHere();
    select(1);
    KPDoc *doc = targets.docs[0];
    commands.rename(doc, QStringLiteral("new.pdf"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return history.count() == 1; }));
    EXPECT_EQ(doc->fsName(), u"new.pdf");
    history.undo();
    EXPECT_TRUE(QTest::qWaitFor([&] { return doc->fsName() == u"0.pdf"; }));
}

TEST_F(FilingCommands, NothingIsOfferedWithoutDocuments)
{
    QSet<QString> keys;
    for (const KPCommand &command : commands.commands()) {
        EXPECT_FALSE(command.state().isEnabled) << command.id;
        EXPECT_NE(qtTrId(command.id), QLatin1String(command.id));
        const QString key = command.shortcut.toString();
        EXPECT_TRUE(key.isEmpty() || !keys.contains(key)) << key.toStdString();
        keys.insert(key);
        if (command.run)
            command.run(); // by its key: nothing happens
    }
    EXPECT_FALSE(window.findChild<QFileDialog *>());
    EXPECT_EQ(history.count(), 0);
}

TEST_F(FilingCommands, APastedDocumentIsUndoneIntoTheTrash)
{
    xpGuiThread.assertHere();
    QMimeData data;
    data.setText(QStringLiteral("a text that is long enough"));
    EXPECT_TRUE(commands.import(&data, {}));
    expectUndoAndRedo({}, {today("a text that is long enough.txt")}, "Paste of 1 document");
    QMimeData broken;
    broken.setData(QStringLiteral("image/png"), "no picture");
    EXPECT_TRUE(commands.import(&broken, {}));
    EXPECT_EQ(said->alerts.size(), 1);
    EXPECT_EQ(history.count(), 1);
}

TEST_F(FilingCommands, WhatIsDroppedGoesWhereItIsDropped)
{
    xpGuiThread.assertHere();
    QStringList done;
    KPImport how{.isDrop = true, .done = [&done](const QStringList &paths) { done = paths; }};
    QMimeData strange, text, files;
    strange.setData(QStringLiteral("application/x-strange"), "?");
    EXPECT_FALSE(commands.import(&strange, how));
    text.setText(QStringLiteral("a text that is long enough"));
    how.folder = m_folder.path(QStringLiteral("to"));
    EXPECT_TRUE(commands.import(&text, how));
    EXPECT_EQ(done, QStringList{to("a text that is long enough.txt")});

    const QString path = file("from/b.pdf");
    files.setData(QStringLiteral("text/uri-list"),
                  "file://" + XPPath::encode(path).toPercentEncoding("/"));
    EXPECT_TRUE(commands.import(&files, how));
    EXPECT_EQ(done, QStringList{to("b.pdf")});
    EXPECT_TRUE(XPFiledDocuments::isManaged(to("b.pdf")));
    EXPECT_FALSE(exists(path));
    history.undo();
    EXPECT_TRUE(exists(path));
}

TEST_F(FilingCommands, FilesDroppedAreRoutedAsTheUserPrefers)
{
    xpGuiThread.assertHere();
    const QString path = file("from/c.pdf");
    QMimeData files;
    files.setData(QStringLiteral("text/uri-list"),
                  "file://" + XPPath::encode(path).toPercentEncoding("/"));
    QStringList done;
    const KPImport how{.isDrop = true, .done = [&done](const QStringList &paths) { done = paths; }};
    commands.import(&files, how); // asks, and is cancelled
    EXPECT_EQ(said->questions.size(), 1);
    EXPECT_FALSE(XPFiledDocuments::isManaged(path));
    EXPECT_TRUE(done.isEmpty());
    setFlag(XPFiledDocuments::askKey, false);
    commands.import(&files, how);
    EXPECT_EQ(done, QStringList{path});
    EXPECT_TRUE(XPFiledDocuments::isManaged(path));
}

// Dragged, and deleted before it was dropped.
TEST_F(FilingCommands, AFileThatVanishedIsSaidAndNothingElse)
{
    xpGuiThread.assertHere();
    QMimeData files;
    files.setData(QStringLiteral("text/uri-list"), "file:///nowhere/a.pdf\r\n");
    QStringList done;
    KPImport how{.isDrop = true, .done = [&done](const QStringList &paths) { done = paths; }};
    setFlag(XPFiledDocuments::askKey, false);
    file("to/other.pdf");
    for (const QString &folder : {QString(), m_folder.path(QStringLiteral("to"))}) {
        said->alerts.clear();
        how.folder = folder;
        EXPECT_TRUE(commands.import(&files, how));
        EXPECT_EQ(said->alerts.size(), 1) << folder.toStdString();
    }
    EXPECT_TRUE(done.isEmpty());
    EXPECT_FALSE(history.canUndo());
}

TEST_F(FilingCommands, TellsWhatCameIntoTheLibrary)
{
    xpGuiThread.assertHere();
    KPDocServices::install(std::make_unique<Services>());
    const auto told = [] { return std::exchange(Services::imported, {}); };
    QMimeData text;
    text.setText(QStringLiteral("a text that is long enough"));
    EXPECT_TRUE(commands.import(&text, {}));
    ASSERT_EQ(told().size(), 1);

    const QStringList files = select(2);
    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile(files.first())});
    m_folder.file(QStringLiteral("to/there"));
    EXPECT_TRUE(commands.import(
        &dropped, {.folder = m_folder.path(QStringLiteral("to")), .isDrop = true, .copies = true}));
    EXPECT_EQ(told(), QStringList{to("0.pdf")});

    run("KPManage");
    EXPECT_EQ(told(), files);
    run("KPDuplicate");
    EXPECT_EQ(told(), QStringList()) << "of what is there already";
    run("KPPutInFiledDocuments");
    const QStringList filed = told();
    ASSERT_EQ(filed.size(), 2);
    EXPECT_TRUE(XPFiledDocuments::pathIsInFiledDocuments(filed.first()));
    KPDocServices::install(nullptr);
}
