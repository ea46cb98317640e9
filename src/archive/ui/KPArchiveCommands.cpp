#include "KPArchiveCommands.h"

#include "KPArchiveWork.h"
#include "KPDoc.h"
#include "KPDocServices.h"
#include "KPDocumentTargets.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QDate>
#include <QFileDialog>
#include <QPointer>

using Import = KPArchiveWork::Import;

KPArchiveCommands::KPArchiveCommands(KPDocumentTargets &targets,
                                     std::function<QStringList()> results, QObject *parent)
    : QObject(parent), m_targets(targets), m_results(std::move(results))
{
}

QList<KPCommand> KPArchiveCommands::commands()
{
    constexpr auto menu = KPCommandMenu::File;
    const auto call = [this](void (KPArchiveCommands::*member)()) {
        return [this, member] {
            xpGuiThread.assertHere();
            (this->*member)();
        };
    };
    const auto some = [this] { return KPCommandState{m_targets.documentCount() > 0}; };
    return {
        {.id = QT_TRID_NOOP("KPExportDocuments"),
         .menu = menu,
         .run = call(&KPArchiveCommands::exportSelectedAction),
         .state = some},
        {.id = QT_TRID_NOOP("KPExportSearchResults"),
         .menu = menu,
         .run = call(&KPArchiveCommands::exportSearchResultsAction)},
        {.id = QT_TRID_NOOP("KPImportDocuments"),
         .menu = menu,
         .run = call(&KPArchiveCommands::importAction),
         .endsGroup = true},
    };
}

static QString filter()
{
    return qtTrId("KPArchiveFilter") + QStringLiteral(" (*.murnarchive)");
}

// --- Writing

void KPArchiveCommands::exportSelectedAction()
{
    QStringList paths;
    for (const KPDoc *doc : m_targets.documents())
        paths.append(doc->filePath());
    exportPaths(paths);
}

void KPArchiveCommands::exportSearchResultsAction()
{
    exportPaths(m_results());
}

// A name that is taken is made free, so the dialog need not ask about it.
void KPArchiveCommands::exportPaths(const QStringList &paths)
{
    if (paths.isEmpty())
        return;
    const QString suffix = QStringLiteral("murnarchive");
    const QString name =
        paths.size() == 1 ? XPPath::fileName(paths.first())
                          : qtTrId("KPArchiveName").arg(QDate::currentDate().toString(Qt::ISODate));
    auto *dialog = new QFileDialog(m_targets.window(), qtTrId("KPExportTitle"),
                                   XPFolders::documents(), filter());
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setOption(QFileDialog::DontConfirmOverwrite);
    dialog->setDefaultSuffix(suffix);
    dialog->selectFile(name + u'.' + suffix);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, [paths](const QString &archive) {
        xpGuiThread.assertHere();
        KPArchiveWork::write(paths, archive);
    });
    dialog->open();
}

// --- Reading

void KPArchiveCommands::importAction()
{
    auto *dialog = new QFileDialog(m_targets.window(), qtTrId("KPImportTitle"),
                                   XPFolders::documents(), filter());
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &archive) {
        xpGuiThread.assertHere();
        chooseFolder(archive);
    });
    dialog->open();
}

void KPArchiveCommands::chooseFolder(const QString &archive)
{
    auto *dialog =
        new QFileDialog(m_targets.window(), qtTrId("KPImportFolderTitle"), XPFolders::documents());
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setLabelText(QFileDialog::Accept, qtTrId("XPChooseDirectoryButton"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, [this, archive](const QString &folder) {
        xpGuiThread.assertHere();
        preview(archive, folder);
    });
    dialog->open();
}

static QString textOf(const Import &import, bool dryRun)
{
    QStringList lines = KPArchiveWork::sentences(import.summary, dryRun);
    if (!import.lines.isEmpty())
        lines.append(QString());
    return (lines + import.lines).join(u'\n');
}

// A drive may go in the middle: what was brought by then is there.
static void tellError(const Import &import, bool dryRun) XP_REQUIRES(xpGuiThread)
{
    const QString done = dryRun ? QString() : textOf(import, false);
    const QString reason = XPPath::printable(import.summary.error->path) + QStringLiteral(": ") +
                           import.summary.error->reason();
    if (done.isEmpty())
        XPPrompts::current().alert(qtTrId("KPImportFailed"), reason);
    else
        XPPrompts::current().alert(qtTrId("KPImportStopped"),
                                   reason + QStringLiteral("\n\n") + done);
}

static void bring(const QString &archive, const QString &folder) XP_REQUIRES(xpGuiThread)
{
    KPArchiveWork::read(archive, folder, false, [](const Import &import) {
        xpGuiThread.assertHere();
        KPDocServices::current().documentsImported(import.added);
        if (import.summary.error)
            tellError(import, false);
        else
            KPArchiveWork::tell(
                import.summary.stopped ? qtTrId("KPImportStopped") : qtTrId("KPImportDone"),
                textOf(import, false), import.summary.count(XPDocumentImport::Action::Failed) > 0);
    });
}

// What would be changed is worked out first, and nothing is done before the user saw it.
void KPArchiveCommands::preview(const QString &archive, const QString &folder)
{
    KPArchiveWork::read(archive, folder, true, [archive, folder](const Import &import) {
        xpGuiThread.assertHere();
        if (import.summary.error) {
            tellError(import, true);
            return;
        }
        if (import.summary.stopped)
            return;
        XPPrompts::Question question;
        question.title = qtTrId("KPImportQuestion", static_cast<int>(import.summary.documents))
                             .arg(XPPath::printable(XPFolders::abbreviateWithTilde(folder)));
        question.text = textOf(import, true);
        question.buttons = {qtTrId("KPImportButton"), qtTrId("KPCancel")};
        question.cancelButton = 1;
        XPPrompts::current().ask(question, [archive, folder](int button) {
            xpGuiThread.assertHere();
            if (button == 0)
                bring(archive, folder);
        });
    });
}
