#include "KPFilingCommands.h"

#include "KPDoc.h"
#include "KPDocServices.h"
#include "KPDocumentTargets.h"
#include "KPFileDeedsCommand.h"
#include "KPRenaming.h"
#include "KPTrashing.h"
#include "UserDefaults.h"
#include "XPFileTransfers.h"
#include "XPFiledDocuments.h"
#include "XPFilingWork.h"
#include "XPFolders.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPRecentDestinations.h"

#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLocale>
#include <QUndoStack>

KPFilingCommands::KPFilingCommands(KPDocumentTargets &targets, QUndoStack &history, QObject *parent)
    : QObject(parent), m_targets(targets), m_history(history)
{
    XPSelectionOffer::followDrops();
    // The clipboard's owner is asked when somebody may want to know.
    const auto tell = [this] {
        if (!m_canPaste && QGuiApplication::applicationState() == Qt::ApplicationActive)
            Q_EMIT clipboardChanged();
    };
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this, tell] {
        m_canPaste.reset();
        tell();
    });
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, tell);
}

QStringList KPFilingCommands::paths() const
{
    QStringList paths;
    for (const KPDoc *doc : m_targets.documents())
        paths.append(doc->filePath());
    return paths;
}

// --- What was done

void KPFilingCommands::remember(const QList<XPFileDeeds::Chain> &deeds, const char *undoText)
{
    if (!deeds.isEmpty())
        m_history.push(new KPFileDeedsCommand(
            deeds, qtTrId(undoText, static_cast<int>(deeds.size())), [self = QPointer(this)] {
                if (self)
                    self->m_targets.filesMovedOrDeleted();
            }));
}

void KPFilingCommands::done(const XPFileReport &report, const char *undoText)
{
    remember(XPFileDeeds::of(report), undoText);
    if (!report.steps.isEmpty())
        m_targets.filesMovedOrDeleted();
}

void KPFilingCommands::filed(const XPFileReport &report, const char *undoText)
{
    done(report, undoText);
    KPDocServices::current().documentsImported(report.paths);
}

// --- The library

void KPFilingCommands::addSelectedToLibrary(bool optionKey)
{
    XPFiledDocuments::setFilesAsManagedRoutingIfNeeded(
        paths(), optionKey, [self = QPointer(this)](const std::optional<XPFileReport> &report) {
            xpGuiThread.assertHere();
            if (self && report)
                self->filed(*report, QT_TRID_NOOP("KPUndoFiling"));
        });
}

void KPFilingCommands::putInFiledDocuments()
{
    XPFiledDocuments::putFilesIntoFiledDocumentsUI(
        paths(), [self = QPointer(this)](const XPFileReport &report) {
            xpGuiThread.assertHere();
            if (self)
                self->filed(report, QT_TRID_NOOP("KPUndoFiling"));
        });
}

void KPFilingCommands::moveSelectedToFiledDocumentsFolder()
{
    XPFiledDocuments::putFilesIntoFiledDocumentsUI(
        paths(),
        [self = QPointer(this)](const XPFileReport &report) {
            xpGuiThread.assertHere();
            if (self)
                self->filed(report, QT_TRID_NOOP("KPUndoFiling"));
        },
        true);
}

void KPFilingCommands::manageSelected()
{
    XPFiledDocuments::setToManagedUI(paths(), [self = QPointer(this)](const XPFileReport &report) {
        xpGuiThread.assertHere();
        if (self)
            self->filed(report, QT_TRID_NOOP("KPUndoManage"));
    });
}

void KPFilingCommands::unmanageSelected()
{
    XPFiledDocuments::takeMarksAwayUI(paths(), [self = QPointer(this)](const XPFileReport &report) {
        xpGuiThread.assertHere();
        // What leaves a live search is seen to leave it seconds later; the user took these out.
        XPNotificationCenter::instance().post(QStringLiteral("KPNeedToRedoSearch"));
        if (self)
            self->done(report, QT_TRID_NOOP("KPUndoUnmanage"));
    });
}

// --- Other folders

void KPFilingCommands::moveCopySelectedTo(bool doCopy)
{
    if (m_targets.documentCount() == 0)
        return;
    XPNotificationCenter::instance().post(XPFiledDocuments::aboutToMoveNotification);
    const QStringList chosen = paths(); // the selection may change while the dialog is open
    auto *dialog = new QFileDialog(m_targets.window(),
                                   doCopy ? qtTrId("KPCopyToTitle") : qtTrId("KPMoveToTitle"),
                                   XPRecentDestinations::paths().value(0, XPFolders::home()));
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setLabelText(QFileDialog::Accept, qtTrId("XPChooseDirectoryButton"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, chosen, doCopy](const QString &folder) {
                xpGuiThread.assertHere();
                moveCopy(chosen, folder, doCopy);
            });
    dialog->open();
}

void KPFilingCommands::moveCopySelectedTo(const QString &folder, bool doCopy)
{
    XPNotificationCenter::instance().post(XPFiledDocuments::aboutToMoveNotification);
    moveCopy(paths(), folder, doCopy);
}

void KPFilingCommands::moveCopy(const QStringList &paths, const QString &folder, bool doCopy)
{
    const bool warn =
        UserDefaults::standard().boolValue(QStringLiteral("KPFinderConfirmMoveorCopy"));
    XPFileTransfers::moveCopyFilesProgressUI(
        paths, folder, doCopy, warn, [self = QPointer(this), doCopy](const XPFileReport &report) {
            xpGuiThread.assertHere();
            if (self)
                self->done(report,
                           doCopy ? QT_TRID_NOOP("KPUndoCopy") : QT_TRID_NOOP("KPUndoMove"));
        });
}

// Each in its own folder.
static XPFileReport duplicate(const QStringList &paths, const XPFileRunOptions &options)
{
    QMap<QString, QStringList> byFolder;
    for (const QString &path : paths)
        byFolder[XPPath::folder(path)].append(path);
    XPFileReport all;
    for (auto folder = byFolder.cbegin(); folder != byFolder.cend() && !all.wasStopped; ++folder) {
        XPFileTransfers::Request request{folder.value(), folder.key(), true};
        request.isRemembered = false;
        XPFileRunOptions part = options;
        part.progress = [&options, before = all.steps.size()](qsizetype done) {
            return options.progress(before + done);
        };
        const XPFileReport report = XPFileTransfers::moveCopyFiles(request, part);
        all.steps += report.steps;
        all.paths += report.paths;
        all.wasStopped = report.wasStopped;
    }
    return all;
}

void KPFilingCommands::duplicateSelected()
{
    const QStringList chosen = paths();
    XPFilingWork::runShown(
        qtTrId("XPCopyingItems").arg(QLocale().toString(chosen.size())), chosen.size(),
        [chosen](const XPFileRunOptions &options) { return duplicate(chosen, options); },
        [self = QPointer(this)](const XPFileReport &report) {
            xpGuiThread.assertHere();
            XPFileTransfers::tellFailures(report, true);
            if (self)
                self->done(report, QT_TRID_NOOP("KPUndoDuplicate"));
        });
}

void KPFilingCommands::rename(KPDoc *doc, const QString &typed)
{
    KPRenaming::rename(doc, typed, m_history);
}

// --- The trash

void KPFilingCommands::removeOrDeleteSelected(bool commandKey)
{
    if (commandKey)
        deleteSelected();
    else
        unmanageSelected();
}

void KPFilingCommands::deleteSelected()
{
    const KPDoc::Docs docs = m_targets.documents(); // fixed when the question is asked
    const bool confirms = UserDefaults::standard().boolValue(QStringLiteral("KPConfirmDelete"));
    if (docs.isEmpty())
        return;
    if (!confirms && docs.size() <= mostDeletedUnasked) {
        deleteNow(docs);
        return;
    }
    const bool isOne = docs.size() == 1;
    XPPrompts::Question question;
    question.title =
        isOne ? qtTrId("KPDeleteFileTitle").arg(XPPath::printable(docs.first()->fsDisplayName()))
              : qtTrId("KPDeleteMultipleFileTitle").arg(QLocale().toString(docs.size()));
    question.text = isOne ? qtTrId("KPDeleteFileComments") : qtTrId("KPDeleteMultipleFileComments");
    question.buttons = {qtTrId("KPDeleteFileOKButton"), qtTrId("KPCancel")};
    question.cancelButton = 1;
    XPPrompts::current().ask(question, [self = QPointer(this), docs](int button) {
        xpGuiThread.assertHere();
        if (self && button == 0)
            self->deleteNow(docs);
    });
}

void KPFilingCommands::deleteNow(const QList<KPDoc *> &docs)
{
    KPTrashing::start(docs, [self = QPointer(this)](const QList<XPFileDeeds::Chain> &deeds) {
        xpGuiThread.assertHere();
        if (!self)
            return;
        self->remember(deeds, QT_TRID_NOOP("KPUndoTrash"));
        self->m_targets.filesMovedOrDeleted();
    });
}
