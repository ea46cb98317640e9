// KPFilingCommands: documents from the clipboard and from drags.
#include "KPBatchEdit.h"
#include "KPDocServices.h"
#include "KPFilingCommands.h"
#include "UserDefaults.h"
#include "XPFileInfo.h"
#include "XPFileTransfers.h"
#include "XPFiledDocuments.h"
#include "XPFilingWork.h"
#include "XPPasteboardSupport.h"
#include "XPPrompts.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

using Fetched = KPPasteboardFetch::Fetched;

bool KPFilingCommands::canPaste()
{
    if (!m_canPaste)
        m_canPaste = XPPasteboardSupport::canImportFromPB(QGuiApplication::clipboard()->mimeData());
    return *m_canPaste;
}

void KPFilingCommands::paste()
{
    import(QGuiApplication::clipboard()->mimeData(), {});
}

// --- Fetching

// Null where it can be asked for from this thread alone, or is this program's own.
static std::unique_ptr<XPSelectionOffer> foreignOffer(const QMimeData *data, bool isDrop)
{
    if (isDrop)
        return XPSelectionOffer::ofDrop(data->formats());
    return QGuiApplication::clipboard()->ownsClipboard()
               ? nullptr
               : XPSelectionOffer::ofClipboard(data->formats());
}

bool KPFilingCommands::import(const QMimeData *data, const KPImport &how)
{
    if (!XPPasteboardSupport::canImportFromPB(data))
        return false;
    auto offer = foreignOffer(data, how.isDrop);
    if (!offer) {
        importFetched(KPPasteboardFetch::now(data), how);
        return true;
    }
    const QPointer fetch = new KPPasteboardFetch(
        std::move(offer), how.folder,
        [this, how](const Fetched &fetched) {
            xpGuiThread.assertHere();
            importFetched(fetched, how);
        },
        this);
    if (how.isDrop)
        fetch->waitForSource();
    return true;
}

void KPFilingCommands::importFetched(const Fetched &fetched, const KPImport &how)
{
    if (fetched.failure) {
        if (fetched.failure->kind != XPError::Kind::Cancelled)
            made(*fetched.failure, how);
    } else if (fetched.promise) {
        XPFilingWork::run(
            [promise = fetched.promise]() -> XPResult<QStringList> {
                const auto path = promise->take();
                if (!path)
                    return path.error();
                return QStringList{*path};
            },
            [self = QPointer(this), how](const XPResult<QStringList> &paths) {
                xpGuiThread.assertHere();
                if (self)
                    self->made(paths, how);
            });
    } else {
        import(fetched.pb, how);
    }
}

// --- Documents of it

void KPFilingCommands::import(const XPPasteboard &pb, const KPImport &how)
{
    const bool areFiles = !pb.fileNames().isEmpty();
    if (areFiles && (how.isDrop || !how.folder.isEmpty())) {
        importFiles(pb.fileNames(), how);
        return;
    }
    XPFilingWork::run(
        [pb, folder = how.folder] {
            return folder.isEmpty() ? XPPasteboardSupport::importFromPBToFiledDocuments(pb)
                                    : XPPasteboardSupport::importFromPB(pb, folder);
        },
        [self = QPointer(this), areFiles, how](const XPResult<QStringList> &paths) {
            xpGuiThread.assertHere();
            // Files that are somewhere already are the program's, which is told of them.
            if (self && !(paths && areFiles))
                self->made(paths, how);
        });
}

void KPFilingCommands::made(const XPResult<QStringList> &paths, const KPImport &how)
{
    if (!paths) {
        XPPrompts::current().alert(qtTrId("KPCannotPaste"), paths.error().reason());
        return;
    }
    QList<XPFileDeeds::Chain> deeds;
    for (const QString &path : *paths)
        deeds.append({{XPFileDeed::Kind::Made, {}, path}});
    remember(deeds, QT_TRID_NOOP("KPUndoPaste"));
    imported(*paths, how);
}

static std::optional<XPError> missingAmong(const QStringList &paths)
{
    for (const QString &path : paths) {
        if (const auto info = XPFileInfo::read(path); !info)
            return info.error();
    }
    return {};
}

void KPFilingCommands::importFiles(const QStringList &paths, const KPImport &how)
{
    const auto self = QPointer(this);
    if (how.folder.isEmpty()) {
        XPFiledDocuments::setFilesAsManagedRoutingIfNeeded(
            paths, how.copies, [self, how](const std::optional<XPFileReport> &report) {
                xpGuiThread.assertHere();
                if (!self || !report)
                    return;
                self->done(*report, QT_TRID_NOOP("KPUndoFiling"));
                self->imported(report->paths, how);
            });
        return;
    }
    XPFilingWork::run([paths] { return missingAmong(paths); },
                      [self, paths, how](const std::optional<XPError> &missing) {
                          xpGuiThread.assertHere();
                          if (self && missing) // deleted before it was dropped
                              self->made(*missing, how);
                          else if (self)
                              self->moveFiles(paths, how);
                      });
}

void KPFilingCommands::moveFiles(const QStringList &paths, const KPImport &how)
{
    const auto self = QPointer(this);
    const bool warn =
        UserDefaults::standard().boolValue(QStringLiteral("KPFinderConfirmMoveorCopy"));
    XPFileTransfers::moveCopyFilesProgressUI(
        paths, how.folder, how.copies, warn, [self, how](const XPFileReport &report) {
            xpGuiThread.assertHere();
            if (!self)
                return;
            self->done(report,
                       how.copies ? QT_TRID_NOOP("KPUndoCopy") : QT_TRID_NOOP("KPUndoMove"));
            if (report.paths.isEmpty())
                return;
            XPFiledDocuments::setToManagedUI(report.paths, [self, how](const XPFileReport &marked) {
                xpGuiThread.assertHere();
                if (self)
                    self->imported(marked.paths, how);
            });
        });
}

void KPFilingCommands::imported(const QStringList &paths, const KPImport &how)
{
    if (paths.isEmpty())
        return;
    KPDocServices::current().documentsImported(paths);
    KPBatchEdit *edits = KPBatchEdit::current();
    if (how.tags.isEmpty() || edits == nullptr) {
        tell(paths, how);
        return;
    }
    // They are shown with their tags.
    const KPFileEdit wanted{paths, KPFileEdit::Tags{{}, how.tags}, {}};
    const auto written = std::make_shared<QMetaObject::Connection>();
    *written = connect(edits, &KPBatchEdit::finished, this, [=](const KPFileEdit &edit) {
        if (edit != wanted)
            return;
        disconnect(*written);
        tell(paths, how);
    });
    edits->replaceOriginalTags(wanted, false);
}

void KPFilingCommands::tell(const QStringList &paths, const KPImport &how)
{
    if (how.done)
        how.done(paths);
    else
        KPDocServices::current().revealInLibrary(paths);
}
