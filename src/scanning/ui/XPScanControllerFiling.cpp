// The scan window: how it ends, with a document or without.
#include "XPScanController.h"

#include "KPDocEdits.h"
#include "KPDocServices.h"
#include "Karvex.h"
#include "XPMainThread.h"
#include "XPPageLoader.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPScanDocument.h"
#include "XPStarsEditor.h"
#include "XPTagsEditor.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QFileDialog>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>

// What was put on the document to be before an interruption; what is typed meanwhile comes on top.
void XPScanController::readTags()
{
    const auto tags = std::make_shared<QStringList>();
    const auto rating = std::make_shared<double>(0);
    m_loader->run(
        [tags, rating, folder = m_pages.folder()] {
            if (const auto placeholder = XPScanDocument::placeholderPDFPath(folder)) {
                *tags = Karvex::getUserTags(*placeholder).valueOr({});
                *rating = Karvex::getRating(*placeholder).valueOr(0);
            }
        },
        [this, tags, rating] {
            const QStringList typed = m_tags->tags();
            m_tags->setTags(Karvex::removeDuplicateTags(*tags + typed));
            if (m_stars->value() == 0)
                m_stars->setRating(*rating);
            if (!typed.isEmpty())
                tagsEdited();
        });
}

// Kept on the document to be, so that they outlive a crash with the pages.
void XPScanController::tagsEdited()
{
    const QStringList tags = m_tags->tags();
    const double rating = m_stars->value();
    m_loader->run(
        [tags, rating, folder = m_pages.folder()] {
            const auto placeholder = XPScanDocument::placeholderPDFPath(folder);
            if (!placeholder)
                return;
            (void)KPDocEdits::setUserTags(tags, *placeholder);
            (void)KPDocEdits::setRating(rating, *placeholder);
        },
        [] {});
}

void XPScanController::doneAction()
{
    if (m_isFiling || m_device.nowScanning())
        return;
    leaveAllModes();
    if (m_pages.numberOfPages() == 0)
        return closeForGood(true);
    finish({});
}

void XPScanController::nextDocumentAction()
{
    if (m_isFiling || m_device.nowScanning() || m_pages.numberOfPages() == 0)
        return;
    leaveAllModes();
    m_staysOpen = true;
    finish({});
}

void XPScanController::finish(const QString &toPath)
{
    m_isFiling = true;
    m_progress->setRange(0, 100);
    m_progress->setValue(0);
    setEnabled(false);
    updateButtons();
    XPScanDocument::FirstOfPile first{m_pages.pages(), m_pages.numberOfPages()};
    if (m_separate->isChecked() && toPath.isEmpty())
        first = XPScanDocument::firstOfPile(m_pages.pages());
    m_filing = first.used;
    const XPScanDocument::Request request{
        first.pages, m_pages.folder(), toPath, m_text->isChecked(), {}, m_skipBlank->isChecked()};
    const QStringList tags = m_tags->tags();
    const double rating = m_stars->value();
    const auto result = std::make_shared<XPResult<QString>>(QString());
    const QPointer<QProgressBar> bar = m_progress;
    m_loader->run(
        [request, tags, rating, result, bar] {
            *result = XPScanDocument::file(request, [bar](double part) {
                xpOnMainThread([bar, part] {
                    if (bar)
                        bar->setValue(static_cast<int>(part * 100));
                });
                return true;
            });
            if (!*result)
                return;
            // The placeholder had them already; a document elsewhere has not.
            const QString &path = **result;
            if (!tags.isEmpty())
                (void)KPDocEdits::setUserTags(tags, path);
            if (rating > 0)
                (void)KPDocEdits::setRating(rating, path);
        },
        [this, result] { finished(*result); });
}

void XPScanController::finished(const XPResult<QString> &path)
{
    m_isFiling = false;
    const bool staysOpen = std::exchange(m_staysOpen, false);
    setEnabled(true);
    updateButtons();
    if (!path) {
        // The pages are kept, whatever is chosen now.
        const QString chosen = QFileDialog::getSaveFileName(
            this, path.error().reason(), QStringLiteral("new scan.pdf"),
            qtTrId("KPScanPdfFiles") + QStringLiteral(" (*.pdf)"));
        if (!chosen.isEmpty()) {
            m_staysOpen = staysOpen;
            finish(chosen);
        } else if (auto quit = std::exchange(m_pendingQuit, {})) {
            quit(false);
        }
        return;
    }
    XPScanDocument::removePlaceholderPDF(m_pages.folder());
    KPDocServices::current().documentsImported({*path});
    if (m_hooks.filed)
        m_hooks.filed(*path);
    if (m_filing < m_pages.numberOfPages()) { // the next of the pile, with the same tags
        m_pages.forgetFirst(m_filing);
        m_staysOpen = staysOpen;
        return finish({});
    }
    m_pages.clearAllImages();
    m_tags->setTags({});
    m_stars->setRating(0);
    if (staysOpen)
        m_note->setText(qtTrId("KPScanFiled").arg(XPPath::printable(XPPath::fileName(*path))));
    else
        closeForGood(true);
}

void XPScanController::cancelAction()
{
    if (m_isFiling)
        return;
    leaveAllModes();
    if (m_pages.numberOfPages() == 0)
        return forceCancelAction();
    XPPrompts::current().ask(
        {qtTrId("KPSaveScanTitle"),
         qtTrId("KPSaveScanComments"),
         {qtTrId("KPSaveScanOK"), qtTrId("KPSaveScanAlternate"), qtTrId("KPCancel")},
         2},
        [this](int button) {
            if (button == 0) {
                doneAction();
            } else if (button == 1) {
                forceCancelAction();
            } else if (auto quit = std::exchange(m_pendingQuit, {})) {
                quit(false);
            }
        });
}

void XPScanController::forceCancelAction()
{
    m_goesOn = false;
    if (m_device.nowScanning())
        return m_device.cancelScan();
    leaveAllModes();
    m_pages.clearAllImages();
    XPScanDocument::removePlaceholderPDF(m_pages.folder());
    m_tags->setTags({});
    m_stars->setRating(0);
    closeForGood(true);
}

void XPScanController::closeForGood(bool proceeds)
{
    m_device.releaseScanners();
    hide();
    if (auto quit = std::exchange(m_pendingQuit, {}))
        quit(proceeds);
}

void XPScanController::askToQuit(std::function<void(bool)> answer)
{
    if (!hasPages())
        return answer(true);
    m_pendingQuit = std::move(answer);
    show();
    raise();
    activateWindow();
    cancelAction();
}

void XPScanController::closeEvent(QCloseEvent *event)
{
    event->ignore(); // hidden by the answer
    cancelAction();
}
