// KPPreviewController: what is seen of a document.
#include "KPArrangedDocs.h"
#include "KPContentTypes.h"
#include "KPDocIcons.h"
#include "KPFileType.h"
#include "KPLibraryModel.h"
#include "KPPageTurner.h"
#include "KPPreviewController.h"
#include "KPPreviewPicture.h"
#include "KPPreviewText.h"
#include "KPPreviewWindow.h"
#include "KPSelectionFacts.h"
#include "XPPath.h"
#include "XPStarsEditor.h"
#include "XPTagsEditor.h"

#include <algorithm>

using Shows = KPPreviewWindow::Shows;

static constexpr int mostPixels = 4096;  // that the importer draws
static constexpr int sideStep = 256;     // resizing asks for another picture only now and then
static constexpr int factsPicture = 256; // points

KPPreviewController::Kind KPPreviewController::kind() const
{
    const QStringList tree = KPContentTypes::typeTree(m_uti);
    const auto is = [&](const char *type) { return tree.contains(QLatin1String(type)); };
    if (is("public.image") || is("com.adobe.pdf") || is("com.adobe.postscript"))
        return Kind::Pages;
    if (is("public.audiovisual-content"))
        return Kind::Media;
    return is("public.message") ? Kind::Message : Kind::Words;
}

int KPPreviewController::pages() const
{
    return KPDocumentFacts::pages(*m_doc, m_contents.get());
}

void KPPreviewController::show()
{
    m_showing.stop();
    if (!isVisible() || !m_doc)
        return;
    if (m_doc->isGone()) {
        takeSelection(); // without it
        return;
    }
    // A file that another program writes while it is looked at is read again.
    const QString state = m_doc->cacheID() + m_doc->filePath();
    if (std::exchange(m_asked, state) != state)
        m_reader.want(m_doc->filePath(), true);
    const auto look = m_pictures.look(*m_doc);
    m_uti = m_contents && !m_contents->uti.isEmpty() ? m_contents->uti
            : !look.uti.isEmpty()
                ? look.uti
                : KPFileType::preferredUTIForExtension(XPPath::extension(m_doc->fsName()));
    m_window->setDocument(KPLibraryModel::displayName(*m_doc), position(), isSet());
    showEditors();
    want();
    const bool hasWords = m_contents && !m_contents->answer.text.isEmpty();
    const bool isRead = m_contents && m_contents->isRead;
    if (m_isSheet)
        m_window->setShows(Shows::Sheet);
    else if (hasWords && kind() != Kind::Pages && kind() != Kind::Media)
        showWords();
    // The words may still come, or there is only a picture.
    else if (kind() == Kind::Pages ||
             (kind() != Kind::Media && (!isRead || !m_pictures.heldLook(*m_doc).picture.isNull())))
        showPage();
    else
        showFacts();
    m_window->setNote(note());
    Q_EMIT shown();
}

// --- Pages and pictures

int KPPreviewController::side() const
{
    const int needed = m_window->picture().neededSide();
    return std::min(mostPixels, (needed + sideStep - 1) / sideStep * sideStep);
}

// What is seen, then the pages around it, then the documents around.
void KPPreviewController::want()
{
    const auto wanted = [](KPDoc *doc, int page, int side) {
        return KPQuickLook::Wanted{doc, side, page, true};
    };
    std::vector<KPQuickLook::Wanted> next;
    const bool isPages = kind() == Kind::Pages;
    const int fitted = m_window->picture().isFitted() ? side() : 0;
    if (isPages && fitted > 0 && !m_isSheet) {
        if (m_page < pages())
            next.push_back(wanted(m_doc, m_page + 1, fitted));
        if (m_page > 1)
            next.push_back(wanted(m_doc, m_page - 1, fitted));
        for (const int offset : {1, -1}) {
            KPDoc *other = neighbour(offset);
            if (other && !other->isGone() && (other->isPDF() || other->isImage()))
                next.push_back(wanted(other, 1, fitted));
        }
    }
    std::vector<KPQuickLook::Wanted> visible;
    if (!m_isSheet)
        visible.push_back(wanted(m_doc, m_page, side()));
    m_pictures.want(this, std::move(visible), std::move(next));
}

QImage KPPreviewController::pictureOfType() const
{
    const double ratio = m_window->devicePixelRatioF();
    return KPDocIcons::forUTI(m_uti).pixmap(QSize(factsPicture, factsPicture), ratio).toImage();
}

void KPPreviewController::showPage()
{
    m_window->setShows(Shows::Picture);
    m_window->turner().setPages(m_page, pages());
    const auto look = m_pictures.heldLook(*m_doc, m_page);
    QImage picture = look.picture;
    const bool isKnown = !picture.isNull() || look.failure;
    // A page that is not there yet leaves the one before it in sight; another document does not.
    if (!isKnown && !m_isNew)
        return;
    if (picture.isNull())
        picture = pictureOfType();
    m_window->picture().setPicture(picture, m_isNew);
    if (m_doc->isImage()) {
        const auto pixels = [&](const char *key) {
            return KPDocumentFacts::value(*m_doc, m_contents.get(), QLatin1String(key))
                .doubleValue();
        };
        m_window->picture().setOriginalSize(
            {pixels("kMDItemPixelWidth"), pixels("kMDItemPixelHeight")});
    }
    m_isNew = !isKnown;
}

// --- Words and facts

void KPPreviewController::showWords()
{
    m_window->turner().setPages(1, 0);
    m_window->setFacts(kind() == Kind::Message
                           ? KPDocumentFacts::ofContents(*m_doc, m_contents.get())
                           : QList<KPDocumentFacts::Fact>(),
                       {});
    if (std::exchange(m_shownWords, m_contents) != m_contents)
        m_window->words().setText(QString::fromUtf8(m_contents->answer.text.utf8()),
                                  KPContentTypes::typeTree(m_uti));
    m_window->setShows(Shows::Words);
    m_isNew = false;
}

void KPPreviewController::showFacts()
{
    m_window->turner().setPages(1, 0);
    const double ratio = m_window->devicePixelRatioF();
    QImage picture = m_pictures.heldLook(*m_doc).picture;
    if (picture.isNull())
        picture = pictureOfType();
    const QSize most = (QSizeF(factsPicture, factsPicture) * ratio).toSize();
    if (picture.width() > most.width() || picture.height() > most.height())
        picture = picture.scaled(most, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    picture.setDevicePixelRatio(ratio);
    m_window->setFacts(KPDocumentFacts::ofContents(*m_doc, m_contents.get()) +
                           KPDocumentFacts::ofFile(*m_doc, m_uti),
                       QPixmap::fromImage(picture));
    m_window->setShows(Shows::Facts);
    m_isNew = false;
}

void KPPreviewController::showEditors()
{
    const KPSelectionFacts facts({m_doc});
    m_tags = facts.commonTags();
    m_window->tags().setTags(m_tags);
    m_window->stars().setRating(facts.rating().value_or(0));
    m_window->setCanEdit(facts.canEdit());
}

// Why not all of it is seen.
QString KPPreviewController::note() const
{
    std::optional<DocumentFailure> failure = m_pictures.heldLook(*m_doc, m_page).failure;
    if (m_contents && m_contents->error)
        return qtTrId("KPPreviewUnreadable");
    if (m_contents && m_contents->isRead && m_contents->answer.failure)
        failure = m_contents->answer.failure;
    if (!failure)
        return {};
    switch (*failure) {
    case DocumentFailure::Encrypted:
        return qtTrId("KPDocumentEncrypted");
    case DocumentFailure::Damaged:
    case DocumentFailure::Crashed:
        return qtTrId("KPPreviewDamaged");
    case DocumentFailure::TooLarge:
    case DocumentFailure::TimedOut:
        return qtTrId("KPPreviewTooLarge");
    case DocumentFailure::Unreadable:
        return qtTrId("KPPreviewUnreadable");
    case DocumentFailure::Unsupported:
        break;
    }
    return {};
}
