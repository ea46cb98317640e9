#include "KPArchiveCommands.h"

#include "CommandScene.h"
#include "FiledFolder.h"
#include "KPDocCache.h"
#include "KPDocServices.h"
#include "TestFaults.h"

#include <QTest>
#include <sys/time.h>
#include <unistd.h>

namespace {

// File work waits where `waits` says so, as on a slow volume.
struct Services : public KPDocServices
{
    struct Work
    {
        std::function<void()> work, done;
    };
    void documentsImported(const QStringList &paths) override { imported.append(paths); }
    void runFileWork(std::function<void()> work, std::function<void()> done) override
    {
        if (waits)
            waiting.append({std::move(work), std::move(done)});
        else
            KPDocServices::runFileWork(std::move(work), std::move(done));
    }
    void runWaiting()
    {
        for (const Work &each : std::exchange(waiting, {})) {
            each.work();
            each.done();
        }
    }

    QList<QStringList> imported;
    QList<Work> waiting;
    bool waits = false;
};

constexpr int imports = 0;
constexpr int cancels = 1;

class ArchiveCommands : public FiledFolder
{
protected:
    ArchiveCommands()
    {
        xpGuiThread.assertHere();
        KPTagName::intializeGlobals();
        KPDocCache::intializeGlobals();
        said = ScriptedPrompts::install({});
        auto ours = std::make_unique<Services>();
        services = ours.get();
        KPDocServices::install(std::move(ours));
        progress = TestProgress::install();
        QDir().mkpath(m_to);
        targets.parent = &window;
    }
    ~ArchiveCommands() override
    {
        xpGuiThread.assertHere();
        EXPECT_EQ(progress->shown, 0) << "a sheet would stay over the window";
        KPDocServices::install(nullptr);
        XPProgress::install(nullptr);
        XPPrompts::install(nullptr);
    }

    QStringList select(const QStringList &names)
    {
        QStringList paths;
        targets.docs.clear();
        for (const QString &name : names) {
            paths.append(m_folder.file(QStringLiteral("in/") + name, name.toUtf8()));
            targets.docs.append(KPDocCache::docAtPath(paths.last()));
        }
        return paths;
    }
    QFileDialog *dialog() const { return openDialog<QFileDialog>(window); }
    void choose(const QString &path) { chooseFile(window, path); }
    void write(const QStringList &names)
    {
        xpGuiThread.assertHere();
        select(names);
        commands.exportSelectedAction();
        choose(m_archive);
        ASSERT_TRUE(exists(m_archive));
        said->questions.clear();
    }
    void read(std::vector<int> answers)
    {
        xpGuiThread.assertHere();
        said->answers = std::move(answers);
        said->questions.clear();
        said->alerts.clear();
        commands.importAction();
        choose(m_archive);
        choose(m_to);
    }
    QString there(const char *name) const { return m_to + u'/' + QLatin1String(name); }
    QStringList entries() const
    {
        return QDir(m_to).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    static QStringList named(const char *first, const char *second)
    {
        return {QLatin1String(first), QLatin1String(second)};
    }

    const QString m_archive = m_folder.path(QStringLiteral("out.murnarchive"));
    const QString m_to = m_folder.path(QStringLiteral("to"));
    QWidget window;
    TestTargets targets;
    QStringList results;
    KPArchiveCommands commands{targets, [this] { return results; }};
    std::shared_ptr<ScriptedPrompts::Said> said;
    Services *services = nullptr;
    TestProgress *progress = nullptr;
};

} // namespace

TEST_F(ArchiveCommands, AnImportIsShownFirstAndOnlyThenDone)
{
    write(named("a.txt", "b.txt"));
    read({cancels});
    ASSERT_EQ(said->questions.size(), 1);
    EXPECT_TRUE(said->questions[0].title.startsWith(u"Import 2 documents to"));
    EXPECT_EQ(said->questions[0].text, u"2 documents are new.");
    EXPECT_EQ(said->questions[0].cancelButton, cancels);
    EXPECT_EQ(entries(), QStringList());
    EXPECT_TRUE(services->imported.isEmpty());

    read({imports});
    ASSERT_EQ(said->questions.size(), 2);
    EXPECT_EQ(said->questions[1].title, u"The archive was imported");
    EXPECT_EQ(said->questions[1].text, u"2 documents were added.");
    EXPECT_EQ(bytesOf(there("b.txt")), "b.txt");
    EXPECT_EQ(services->imported,
              QList<QStringList>{(QStringList{there("a.txt"), there("b.txt")})});
    EXPECT_TRUE(said->alerts.isEmpty());

    // Again: nothing is new.
    services->imported.clear();
    read({imports});
    EXPECT_EQ(said->questions.value(0).text, u"2 documents are there already.");
    EXPECT_TRUE(services->imported.isEmpty() || services->imported.first().isEmpty());
}

TEST_F(ArchiveCommands, WhatWouldChangeIsNamedAndWhatFailsIsAnAlert)
{
    write({QStringLiteral("same.txt"), QStringLiteral("older.txt"), QStringLiteral("link.txt")});
    const QString older = m_folder.file(QStringLiteral("to/older.txt"), "of this machine");
    m_folder.file(QStringLiteral("to/same.txt"), "same.txt");
    const timeval times[] = {{1000, 0}, {1000, 0}};
    ASSERT_EQ(::utimes(XPPath::encode(older).constData(), times), 0);
    const QByteArray outside = XPPath::encode(file("elsewhere.txt"));
    ASSERT_EQ(::symlink(outside.constData(), XPPath::encode(there("link.txt")).constData()), 0);
    read({imports});
    ASSERT_EQ(said->questions.size(), 1) << "what failed is an alert";
    const QString text = said->questions[0].text;
    EXPECT_TRUE(text.contains(u"1 document replaces an older one")) << text.toStdString();
    EXPECT_TRUE(text.contains(u"older.txt: the older one goes to the trash")) << text.toStdString();
    EXPECT_TRUE(text.contains(u"1 document cannot be imported.")) << text.toStdString();
    EXPECT_TRUE(text.contains(u"1 document is there already.")) << text.toStdString();
    ASSERT_EQ(said->alerts.size(), 1);
    EXPECT_TRUE(said->alerts[0].contains(u"1 document replaced an older one"));
    EXPECT_TRUE(said->alerts[0].contains(u"link.txt: "));
    EXPECT_EQ(bytesOf(there("older.txt")), "older.txt");
    EXPECT_EQ(services->imported, QList<QStringList>{QStringList{there("older.txt")}});
}

TEST_F(ArchiveCommands, ManyChangesAreCountedAndTheFirstAreNamed)
{
    QStringList names;
    for (int i = 0; i < 40; ++i)
        names.append(QStringLiteral("%1\n.txt").arg(i));
    write(names);
    for (const QString &name : std::as_const(names))
        QDir().mkpath(m_to + u'/' + name); // a folder where the document should be
    read({cancels});
    ASSERT_EQ(said->questions.size(), 1);
    const QString text = said->questions[0].text;
    EXPECT_TRUE(text.startsWith(u"40 documents cannot be imported.\n\n")) << text.toStdString();
    EXPECT_EQ(text.count(u'\n'), 1 + 12) << "a name is no line of its own: " << text.toStdString();
}

TEST_F(ArchiveCommands, WhatIsStoppedIsNotSaidToBeDone)
{
    xpGuiThread.assertHere();
    write(named("a.txt", "b.txt"));
    progress->begun = 0;
    progress->stopped = 1;
    read({imports});
    EXPECT_TRUE(said->questions.isEmpty()) << "nobody asks about what was not looked at";
    progress->begun = 0;
    progress->stopped = 2;
    read({imports});
    ASSERT_EQ(said->questions.size(), 2);
    EXPECT_EQ(said->questions[1].title, u"The import was stopped");
    EXPECT_TRUE(said->alerts.isEmpty());
    EXPECT_EQ(entries(), QStringList());

    progress->stopped = progress->begun + 1;
    said->questions.clear();
    commands.exportSelectedAction();
    choose(m_folder.path(QStringLiteral("other.murnarchive")));
    EXPECT_FALSE(exists(m_folder.path(QStringLiteral("other.murnarchive"))));
    EXPECT_TRUE(said->questions.isEmpty() && said->alerts.isEmpty());
}

TEST_F(ArchiveCommands, ADamagedArchiveIsSaidAndChangesNothing)
{
    write(named("a.txt", "b.txt"));
    QByteArray bytes = bytesOf(m_archive);
    bytes[bytes.size() - 20] = static_cast<char>(bytes[bytes.size() - 20] ^ 1);
    for (const QByteArray &damaged : {bytes, bytes.left(bytes.size() / 2), QByteArray("x")}) {
        m_folder.file(QStringLiteral("out.murnarchive"), damaged);
        read({imports, imports});
        EXPECT_TRUE(said->questions.isEmpty());
        ASSERT_EQ(said->alerts.size(), 1);
        EXPECT_TRUE(said->alerts[0].startsWith(u"The archive was not imported\n"));
        EXPECT_TRUE(said->alerts[0].contains(u"out.murnarchive: "))
            << said->alerts[0].toStdString();
        EXPECT_EQ(entries(), QStringList());
    }
    EXPECT_TRUE(services->imported.isEmpty());
}

TEST_F(ArchiveCommands, AnArchiveThatIsDamagedAfterTheQuestionIsSaid)
{
    write(named("a.txt", "b.txt"));
    services->waits = true;
    read({imports});
    services->runWaiting(); // the question, answered at once
    ASSERT_EQ(services->waiting.size(), 1);
    m_folder.file(QStringLiteral("out.murnarchive"), "another file");
    services->runWaiting();
    ASSERT_EQ(said->alerts.size(), 1);
    EXPECT_TRUE(said->alerts[0].startsWith(u"The archive was not imported\n"));
    EXPECT_EQ(entries(), QStringList());
}

// The drive goes while documents are brought.
TEST_F(ArchiveCommands, WhatWasBroughtBeforeAnErrorIsSaid)
{
    const QString archive = m_folder.path(QStringLiteral("drive/out.murnarchive"));
    QStringList paths;
    for (int i = 0; i < 4; ++i) {
        paths.append(m_folder.file(QStringLiteral("in/%1").arg(i), QByteArray(1 << 20, 'x')));
        targets.docs.append(KPDocCache::docAtPath(paths.last()));
    }
    QDir().mkpath(XPPath::folder(archive));
    xpGuiThread.assertHere();
    commands.exportSelectedAction();
    choose(archive);
    services->waits = true;
    bool isPartSeen = false;
    for (int at = 0;; ++at) {
        SCOPED_TRACE(at);
        QDir(m_to).removeRecursively();
        QDir().mkpath(m_to);
        said->answers = {imports};
        said->alerts.clear();
        services->imported.clear();
        commands.importAction();
        choose(archive);
        choose(m_to);
        services->runWaiting();
        if (!TestFaults::run(
                {.folders = {XPPath::encode(XPPath::folder(archive))}, .at = at, .error = EIO},
                [this] { services->runWaiting(); }))
            break;
        const auto there = static_cast<int>(entries().size());
        EXPECT_EQ(services->imported.value(0).size(), there) << "and the library is told";
        if (said->alerts.isEmpty())
            continue; // a call whose failure does no harm
        isPartSeen = isPartSeen || there > 0;
        EXPECT_TRUE(
            said->alerts[0].startsWith(qtTrId(there ? "KPImportStopped" : "KPImportFailed")))
            << said->alerts[0].toStdString();
        EXPECT_TRUE(said->alerts[0].contains(u"out.murnarchive: "));
        EXPECT_EQ(said->alerts[0].contains(qtTrId("KPImportAdded", there)), there > 0);
    }
    EXPECT_TRUE(isPartSeen);
}

TEST_F(ArchiveCommands, ADocumentThatIsMissingIsNamedAndTheOthersAreExported)
{
    xpGuiThread.assertHere();
    results =
        select({QStringLiteral("a.txt"), QStringLiteral("gone\n.txt"), QStringLiteral("c.txt")});
    ASSERT_EQ(::unlink(XPPath::encode(results[1]).constData()), 0);
    commands.exportSearchResultsAction();
    choose(m_archive);
    ASSERT_EQ(said->alerts.size(), 1);
    const QStringList lines = said->alerts[0].split(u'\n');
    ASSERT_EQ(lines.size(), 4) << said->alerts[0].toStdString();
    EXPECT_EQ(lines[0], u"2 documents were exported");
    EXPECT_TRUE(lines[1].contains(u"out.murnarchive ("));
    EXPECT_EQ(lines[2], u"1 document was left out:");
    EXPECT_TRUE(lines[3].contains(u"gone"));
    read({imports});
    EXPECT_EQ(entries(), named("a.txt", "c.txt"));
}

TEST_F(ArchiveCommands, AnExportReplacesNothing)
{
    xpGuiThread.assertHere();
    select(named("a.txt", "b.txt"));
    m_folder.file(QStringLiteral("out.murnarchive"), "mine");
    commands.exportSelectedAction();
    choose(m_folder.path(QStringLiteral("out"))); // the extension comes by itself
    EXPECT_EQ(bytesOf(m_archive), "mine");
    const QString made = m_folder.path(QStringLiteral("out 1.murnarchive"));
    EXPECT_TRUE(exists(made));
    ASSERT_EQ(said->questions.size(), 1);
    EXPECT_TRUE(said->questions[0].text.contains(u"out 1.murnarchive")) << "the name it got";
    EXPECT_EQ(said->questions[0].title, u"2 documents were exported");

    // The folder goes while the dialog is open.
    services->waits = true;
    QDir().mkpath(m_folder.path(QStringLiteral("drive")));
    commands.exportSelectedAction();
    choose(m_folder.path(QStringLiteral("drive/a.murnarchive")));
    QDir(m_folder.path()).rmdir(QStringLiteral("drive"));
    services->runWaiting();
    ASSERT_EQ(said->alerts.size(), 1);
    EXPECT_TRUE(said->alerts[0].startsWith(u"The documents were not exported\n"));
}

TEST_F(ArchiveCommands, NothingIsAskedWithoutDocumentsOrAfterCancel)
{
    xpGuiThread.assertHere();
    commands.exportSelectedAction();
    commands.exportSearchResultsAction();
    EXPECT_FALSE(dialog());
    for (const KPCommand &command : commands.commands()) {
        EXPECT_NE(qtTrId(command.id), QLatin1String(command.id));
        EXPECT_EQ(!command.state || command.state().isEnabled,
                  QByteArray(command.id) != "KPExportDocuments");
    }
    write(named("a.txt", "b.txt"));
    const int begun = progress->begun;
    commands.importAction();
    choose(m_archive);
    ASSERT_TRUE(dialog()); // for the folder
    QTest::keyClick(dialog(), Qt::Key_Escape);
    EXPECT_FALSE(dialog());
    EXPECT_EQ(progress->begun, begun);
    EXPECT_TRUE(said->questions.isEmpty());
}

// Two windows, or one that is closed: each piece of work ends by itself.
TEST_F(ArchiveCommands, WorkOutlivesTheWindowAndWaitsForItsTurn)
{
    xpGuiThread.assertHere();
    services->waits = true;
    select(named("a.txt", "b.txt"));
    {
        QWidget closed;
        TestTargets ours;
        ours.docs = targets.docs;
        ours.parent = &closed;
        KPArchiveCommands first(ours, [] { return QStringList(); });
        first.exportSelectedAction();
        chooseFile(closed, m_archive);
    }
    commands.exportSelectedAction();
    choose(m_archive);
    EXPECT_EQ(progress->shown, 2);
    services->runWaiting();
    EXPECT_TRUE(exists(m_archive));
    EXPECT_TRUE(exists(m_folder.path(QStringLiteral("out 1.murnarchive")))) << "of the second";
    EXPECT_EQ(said->questions.size(), 2);
}
