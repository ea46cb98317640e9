// The scan window: how pages come, and the tools that correct them.
#include "XPScanController.h"

#include "ImportPagePicture.h"
#include "KPDocIcons.h"
#include "UserDefaults.h"
#include "XPPageCleanUp.h"
#include "XPPageLoader.h"
#include "XPPaperSizes.h"
#include "XPPrompts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QSlider>

static constexpr int pixelsOfAPage = 3508;   // A4 at 300 dots an inch
static constexpr int mostPagesOfAFile = 500; // of a PDF that is dropped

// --- From the scanner

void XPScanController::scanNewPageAction()
{
    if (!m_device.hasScanner()) {
        m_device.findScanners();
        m_note->setText(qtTrId("KPScanLooking"));
        return;
    }
    leaveAllModes();
    UserDefaults::standard().setValue(XPImageCaptureCoreDevice::selectedScannerKey,
                                      m_scannerPopup->currentText());
    m_device.setSettings({m_resolution->currentData().toInt(), m_mode->currentData().toString()});
    int unit = XPImageCaptureCoreDevice::Flatbed;
    (void)m_device.selectedScanner(&unit);
    m_goesOn = unit == XPImageCaptureCoreDevice::DocumentFeeder;
    m_note->clear();
    m_progress->setRange(0, 0);
    m_device.startScan(m_pages.scanToImagePath());
    updateButtons();
}

void XPScanController::addPageImagePath(const QString &path)
{
    if (const auto error = m_pages.addPageImagePath(path)) {
        m_goesOn = false;
        XPPrompts::current().alert(qtTrId("KPScanPageNotMade"), error->reason());
        return;
    }
    const int index = m_pages.numberOfPages() - 1;
    for (const QCheckBox *box : {m_cleanUp, m_upright, m_skipBlank, m_separate}) {
        if (box->isChecked()) {
            cleanUpPage(index);
            break;
        }
    }
    tagsEdited(); // the document to be is there now
}

// Looked at aside; by the time it is known the page may lie elsewhere.
void XPScanController::cleanUpPage(int index)
{
    const QString path = m_pages.pages().at(index).path;
    const auto cleaned = std::make_shared<XPPageCleanUp>();
    const XPPageCleanUp::Wanted wanted{m_cleanUp->isChecked(), m_upright->isChecked()};
    m_loader->run(
        [path, wanted, cleaned] {
            *cleaned = XPPageCleanUp::of(XPScannedPages::rendered(path, {}), wanted);
        },
        [this, path, cleaned] {
            const auto at = static_cast<int>(m_pages.scannedImages().indexOf(path));
            if (at < 0)
                return;
            if (cleaned->isBlank)
                m_pages.markBlank(at, true);
            if (cleaned->edit.isNone() || !m_pages.edit(at).isNone())
                return; // there is nothing to do, or the user was first
            const int current = m_pages.currentPageNumber();
            m_pages.setEdit(at, cleaned->edit);
            m_pages.setCurrentPageNumber(current);
        });
}

void XPScanController::scanProgress(int percent)
{
    m_progress->setRange(0, percent < 0 ? 0 : 100);
    m_progress->setValue(percent);
}

void XPScanController::scannerFailed(const QString &title, const QString &text, bool isEmpty)
{
    m_goesOn = false;
    if (isEmpty)
        m_note->setText(qtTrId("KPScanFeederEmpty"));
    else
        XPPrompts::current().alert(title, text);
}

void XPScanController::scanningComplete()
{
    if (m_goesOn && !m_isFiling)
        m_device.startScan(m_pages.scanToImagePath());
    updateButtons();
}

// --- From files

void XPScanController::addFiles(const QStringList &paths)
{
    const auto images = std::make_shared<QList<QImage>>();
    const auto refused = std::make_shared<QStringList>();
    m_note->setText(qtTrId("KPScanReadingFiles"));
    m_loader->run(
        [paths, images, refused] {
            for (const QString &path : paths) {
                // What is foreign is read in the importer's cage.
                const qsizetype before = images->size();
                for (int page = 1; page <= mostPagesOfAFile; ++page) {
                    const auto image = importPagePicture(path, page, pixelsOfAPage);
                    if (!image)
                        break;
                    images->append(*image);
                }
                if (images->size() == before)
                    refused->append(path);
            }
        },
        [this, images, refused] {
            m_note->clear();
            for (const QImage &image : *images) {
                if (const auto error = m_pages.addPageImage(image)) {
                    XPPrompts::current().alert(qtTrId("KPScanPageNotMade"), error->reason());
                    break;
                }
            }
            if (!refused->isEmpty())
                XPPrompts::current().alert(qtTrId("KPNotAPicture"), refused->join(u'\n'));
        });
}

// --- Pages

void XPScanController::nextPageAction()
{
    leaveAllModes();
    m_pages.setCurrentPageNumber(m_pages.currentPageNumber() + 1);
}

void XPScanController::previousPageAction()
{
    leaveAllModes();
    m_pages.setCurrentPageNumber(m_pages.currentPageNumber() - 1);
}

void XPScanController::deletePageAction()
{
    leaveAllModes();
    if (m_pages.currentPageNumber() > 0)
        m_pages.deletePage(m_pages.currentPageNumber() - 1);
}

XPPageEdit XPScanController::currentEdit() const
{
    return m_pages.currentPageNumber() ? m_pages.edit(m_pages.currentPageNumber() - 1)
                                       : XPPageEdit();
}

void XPScanController::setCurrentEdit(const XPPageEdit &edit)
{
    if (m_pages.currentPageNumber())
        m_pages.setEdit(m_pages.currentPageNumber() - 1, edit);
}

void XPScanController::rotateAction()
{
    leaveAllModes();
    XPPageEdit edit = currentEdit();
    const bool isBack = QGuiApplication::keyboardModifiers() & Qt::AltModifier;
    edit.quarterTurns = (edit.quarterTurns + (isBack ? 3 : 1)) % 4;
    // The frame turns with the page.
    const QRectF crop = edit.crop;
    edit.crop = isBack ? QRectF(crop.top(), 1 - crop.right(), crop.height(), crop.width())
                       : QRectF(1 - crop.bottom(), crop.left(), crop.height(), crop.width());
    setCurrentEdit(edit);
}

// --- Tools

void XPScanController::setTool(Tool tool)
{
    m_tool = m_pages.currentPageNumber() ? tool : Tool::None;
    m_edit = currentEdit();
    m_view->setMode(m_tool == Tool::Crop         ? XPScanImageView::Mode::Crop
                    : m_tool == Tool::Straighten ? XPScanImageView::Mode::Straighten
                                                 : XPScanImageView::Mode::Show);
    if (m_tool == Tool::Crop) {
        m_view->setCropRect(m_edit.crop);
        m_proportion->setCurrentIndex(0);
        chooseProportion();
    }
    if (m_tool == Tool::Straighten) {
        m_edit.crop = QRectF(0, 0, 1, 1); // the whole page is seen while it is turned
        m_note->setText(qtTrId("KPScanDrawLine"));
    } else {
        m_note->clear();
    }
    {
        const QSignalBlocker quiet(m_contrast);
        m_contrast->setValue(static_cast<int>(m_edit.contrastPercentage));
    }
    showPage();
    updateButtons();
    if (m_tool != Tool::None)
        m_view->setFocus();
}

// A paper lies as the page does.
void XPScanController::chooseProportion()
{
    const QSizeF paper = XPPaperSizes::sizeInMM(m_proportion->currentData().toInt());
    if (paper.isEmpty())
        return m_view->setProportion({});
    const double upright = paper.width() / paper.height();
    const bool isWide = m_shown.width() > m_shown.height();
    const bool isTurned = m_edit.quarterTurns % 2 != 0;
    m_view->setProportion(isWide != isTurned ? 1 / upright : upright);
}

void XPScanController::applyTool()
{
    XPPageEdit edit = m_edit;
    if (m_tool == Tool::Crop)
        edit.crop = m_view->cropRect();
    if (m_tool == Tool::Straighten)
        edit.crop = currentEdit().crop;
    setTool(Tool::None);
    setCurrentEdit(edit);
}

void XPScanController::leaveAllModes()
{
    if (m_tool != Tool::None)
        setTool(Tool::None);
}

void XPScanController::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Alt)
        m_rotate->setIcon(KPDocIcons::symbol(QStringLiteral("rotate-left")));
    if (m_tool != Tool::None && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        return applyTool();
    if (event->key() == Qt::Key_Escape)
        return m_tool != Tool::None ? setTool(Tool::None) : cancelAction();
    QMainWindow::keyPressEvent(event);
}

void XPScanController::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Alt)
        m_rotate->setIcon(KPDocIcons::symbol(QStringLiteral("rotate")));
    QMainWindow::keyReleaseEvent(event);
}
