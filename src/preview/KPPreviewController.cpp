// KPPreviewController: which documents are looked at.
#include "KPPreviewController.h"

#include "KPArrangedDocs.h"
#include "KPLibraryController.h"
#include "KPPageTurner.h"
#include "KPPreviewPicture.h"
#include "KPPreviewSheet.h"
#include "KPPreviewWindow.h"
#include "XPStarsEditor.h"
#include "XPTagsEditor.h"

#include <QApplication>
#include <QLocale>
#include <chrono>

using namespace std::chrono_literals;

KPPreviewController::KPPreviewController(KPLibraryController &library, KPQuickLook &pictures,
                                         QWidget *window, const QByteArray &importer)
    : m_library(library), m_pictures(pictures), m_parent(window), m_reader(importer)
{
    m_showing.setSingleShot(true);
    connect(&m_showing, &QTimer::timeout, this, &KPPreviewController::show);
    connect(&m_reader, &KPContentsReader::ready, this, &KPPreviewController::take);
    connect(&m_pictures, &KPQuickLook::looksReady, this, [this](const QList<KPDoc *> &docs) {
        if (isVisible() && m_doc && docs.contains(m_doc))
            m_showing.start();
    });
    connect(&m_library, &KPLibraryController::previewRequested, this, &KPPreviewController::toggle);
    connect(&m_library, &KPLibraryController::cancelled, this, &KPPreviewController::close);
    connect(&m_library, &KPLibraryController::selectionChanged, this, [this] {
        if (isVisible())
            takeSelection();
    });
    for (const QString &name : {KPDoc::changingNotification, KPDoc::didChangeNotification})
        m_observations.push_back(
            XPNotificationCenter::instance().addObserver(name, [this](const XPNotification &) {
                if (isVisible() && !m_showing.isActive())
                    m_showing.start(50ms);
            }));
}

KPPreviewController::~KPPreviewController()
{
    delete m_window;
}

bool KPPreviewController::isVisible() const
{
    return m_window && m_window->isVisible();
}

void KPPreviewController::setSuggestions(std::function<QStringList()> suggestions)
{
    m_suggestions = std::move(suggestions);
}

void KPPreviewController::makeWindow()
{
    m_window = new KPPreviewWindow(m_pictures, m_parent);
    connect(m_window, &QObject::destroyed, this, [this] { m_window = nullptr; });
    connect(m_window, &KPPreviewWindow::stepRequested, this, &KPPreviewController::step);
    connect(m_window, &KPPreviewWindow::sheetRequested, this, &KPPreviewController::setSheet);
    connect(m_window, &KPPreviewWindow::openRequested, this, [this] {
        xpGuiThread.assertHere();
        if (m_doc)
            m_library.openDocumentsExternally({m_doc});
    });
    connect(m_window, &KPPreviewWindow::ratingRequested, this, [this](int stars) {
        if (m_doc)
            Q_EMIT editRequested({{m_doc->filePath()}, {}, stars});
    });
    connect(&m_window->tags(), &XPTagsEditor::tagsEdited, this, &KPPreviewController::requestTags);
    m_window->tags().setSuggestions(m_suggestions);
    connect(&m_window->turner(), &KPPageTurner::turned, this, [this](int page) {
        m_page = page;
        show();
    });
    connect(&m_window->picture(), &KPPreviewPicture::zoomChanged, this,
            [this] { m_showing.start(); });
    connect(&m_window->sheet(), &KPPreviewSheet::currentChanged, this, [this] {
        if (isSet())
            showDocument(m_window->sheet().current());
    });
    connect(m_window, &KPPreviewWindow::closed, this, [this] {
        m_window->tags().takeTyped();
        m_doc = nullptr;
        m_contents.reset();
        m_pictures.want(this, {});
        m_reader.want({}, false);
        m_parent->activateWindow();
        Q_EMIT visibleChanged();
    });
}

void KPPreviewController::open()
{
    if (!m_library.hasSelection())
        return;
    if (!m_window)
        makeWindow();
    m_isSheet = m_library.hasMultipleSelection();
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    takeSelection();
    Q_EMIT visibleChanged();
}

void KPPreviewController::close()
{
    if (isVisible())
        m_window->close();
}

QList<KPCommand> KPPreviewController::commands()
{
    return {{.id = QT_TRID_NOOP("KPQuickPreview"),
             .menu = KPCommandMenu::Documents,
             .shortcut = QKeySequence(Qt::CTRL | Qt::Key_Y),
             .run = [this] { toggle(); },
             .state =
                 [this] {
                     return KPCommandState{.isEnabled = m_library.hasSelection() || isVisible(),
                                           .text = isVisible() ? QT_TRID_NOOP("KPCloseQuickPreview")
                                                               : QT_TRID_NOOP("KPQuickPreview")};
                 },
             .symbol = "eye",
             .isOnDocuments = true,
             .endsGroup = true}};
}

// --- Which documents

bool KPPreviewController::isSet() const
{
    return m_window && m_window->sheet().docs().count() > 1;
}

void KPPreviewController::takeSelection()
{
    const KPDoc::Docs docs = m_library.documents();
    if (docs.isEmpty()) {
        close();
        return;
    }
    const bool wasSet = isSet();
    m_window->sheet().setDocuments(docs);
    m_isSheet = isSet() && (m_isSheet || !wasSet);
    showDocument(m_window->sheet().current());
}

void KPPreviewController::step(int documents)
{
    KPArrangedDocs &docs = isSet() ? m_window->sheet().docs() : m_library.currentSearchController();
    docs.modifySelectedBy(documents, false, false);
}

void KPPreviewController::setSheet(bool isWanted)
{
    m_isSheet = isWanted && isSet();
    show();
}

// Beside it: of the set, or of what the library shows.
KPDoc *KPPreviewController::neighbour(int offset) const
{
    const KPArrangedDocs &docs =
        isSet() ? m_window->sheet().docs() : m_library.currentSearchController();
    const int row = docs.rowOf(m_doc) + offset;
    return row >= 0 && row < docs.count() ? docs.at(row) : nullptr;
}

QString KPPreviewController::position() const
{
    const KPArrangedDocs &docs = m_window->sheet().docs();
    if (!isSet())
        return {};
    return qtTrId("KPPageOf")
        .arg(QLocale().toString(docs.rowOf(m_doc) + 1), QLocale().toString(docs.count()));
}

void KPPreviewController::showDocument(KPDoc *doc)
{
    if (!doc || doc == m_doc) {
        show();
        return;
    }
    m_window->tags().takeTyped(); // what is being typed is for the one before
    m_doc = doc;
    m_page = 1;
    m_isNew = true;
    m_contents.reset();
    m_asked.clear();
    show();
}

void KPPreviewController::take(const KPContentsReader::ContentsPtr &contents)
{
    if (!m_doc || contents->path != m_doc->filePath())
        return;
    m_contents = contents;
    show();
}

void KPPreviewController::requestTags()
{
    const QStringList before = std::exchange(m_tags, m_window->tags().tags());
    if (m_doc && before != m_tags)
        Q_EMIT editRequested({{m_doc->filePath()}, KPFileEdit::Tags{before, m_tags}, {}});
}
