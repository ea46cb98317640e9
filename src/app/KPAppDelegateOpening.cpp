// What other programs hand to the application: files, addresses, the services, the hot key.
#include "KPAppDelegate.h"
#include "KPController.h"
#include "KPDocCache.h"
#include "KPDocServices.h"
#include "KPFilingCommands.h"
#include "KPLocationItem.h"
#include "KPOpenedUrl.h"
#include "KPSearchFolders.h"
#include "KPSearcher.h"
#include "KPSpotlightItem.h"
#include "KPWebCapture.h"
#include "XPApplicationBus.h"
#include "XPFileInfo.h"
#include "XPFiledDocuments.h"
#include "XPFilingWork.h"
#include "XPFolders.h"
#include "XPGlobalShortcut.h"
#include "XPLog.h"
#include "XPPasteboardSupport.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QClipboard>
#include <QDateTime>
#include <QGuiApplication>
#include <QLocale>
#include <QMimeData>
#include <QTimer>
#include <QWindow>
#include <unistd.h>

using namespace std::chrono_literals;

static constexpr qsizetype mostToSelect = 999; // documents, for editing their tags
static constexpr std::chrono::milliseconds beforeSelecting = 600ms;
static constexpr std::chrono::milliseconds afterHotKey = 100ms;

void KPAppDelegate::connectBus()
{
    if (m_bus == nullptr)
        return;
    connect(m_bus, &XPApplicationBus::activateAsked, this, &KPAppDelegate::shouldHandleReopen);
    connect(m_bus, &XPApplicationBus::openAsked, this, &KPAppDelegate::openUrls);
    connect(m_bus, &XPApplicationBus::searchAsked, this, &KPAppDelegate::searchInMurnService);
    connect(m_bus, &XPApplicationBus::fileAsked, this, &KPAppDelegate::createFiledFile);
    connect(m_bus, &XPApplicationBus::documentsAsked, this, &KPAppDelegate::documentsAsked);
}

void KPAppDelegate::bringToFront(const XPActivation &activation)
{
    if (!m_controller)
        return;
    m_controller->show();
    activation.bringToFront(m_controller->windowHandle());
}

void KPAppDelegate::shouldHandleReopen(const XPActivation &activation)
{
    bringToFront(activation);
}

// --- Files

static bool exists(const QString &path)
{
    return XPFileInfo::read(path).hasValue();
}

bool KPAppDelegate::openFiles(const QStringList &paths)
{
    if (!m_controller) {
        m_pendingFiles += paths;
        return true;
    }
    if (paths.isEmpty() || !exists(paths.last()))
        return false;
    const QString now = QLocale().toString(QDateTime::currentDateTime(), QLocale::ShortFormat);
    importFileList(paths, qtTrId("KPDroppedOnIcon").arg(now));
    return true;
}

namespace {

// What was opened, as the disk says.
struct Opened
{
    bool areFolders = false; // plain ones, all of them
    QStringList staying;     // can be marked where they lie
    QStringList toBeCopied;  // lie among files of other programs, or where no mark can be kept
};

// Whether the file's disk keeps marks and takes this one.
bool mayBeMarked(const QString &path)
{
    const auto mark = XPFiledDocuments::storedMark(path);
    return mark && (mark->value_or(false) || ::access(XPPath::encode(path).constData(), W_OK) == 0);
}

Opened lookAt(const QStringList &paths)
{
    Opened opened;
    opened.areFolders = true;
    for (const QString &path : paths) {
        const KPDoc *doc = KPDocCache::docAtPath(path);
        if (doc == nullptr || !exists(path))
            continue;
        opened.areFolders &= doc->isDirectory();
        const bool stays = XPFiledDocuments::pathOKForManaged(path) && mayBeMarked(path);
        (stays ? opened.staying : opened.toBeCopied).append(path);
    }
    return opened;
}

} // namespace

// Marked where they lie, as the user chose them; asks about what would have to be copied.
void KPAppDelegate::importFileList(const QStringList &paths, const QString &displayName)
{
    xpGuiThread.assertHere();
    if (paths.isEmpty() || !m_controller)
        return;
    XPFilingWork::run([paths] { return lookAt(paths); },
                      [this, paths, displayName](const Opened &opened) {
                          xpGuiThread.assertHere();
                          if (opened.areFolders) {
                              showFolders(opened.staying + opened.toBeCopied);
                          } else if (opened.toBeCopied.isEmpty()) {
                              markAndShow(opened.staying, displayName);
                          } else {
                              XPPrompts::current().ask(
                                  {qtTrId("KPCopyToOpenTitle"),
                                   qtTrId("KPCopyToOpenText"),
                                   {qtTrId("KPCopyToOpenButton"), qtTrId("KPCancel")},
                                   1},
                                  [this, opened, displayName](int button) {
                                      QStringList agreed = opened.staying;
                                      if (button == 0)
                                          agreed += opened.toBeCopied;
                                      markAndShow(agreed, displayName);
                                  });
                          }
                      });
}

void KPAppDelegate::markAndShow(const QStringList &paths, const QString &displayName)
{
    xpGuiThread.assertHere();
    if (paths.isEmpty())
        return;
    XPFiledDocuments::setToManagedUI(paths, [this, displayName](const XPFileReport &report) {
        const QStringList &managed = report.paths;
        if (!m_controller || managed.isEmpty())
            return;
        showFileList(managed, displayName);
        selectLater(managed, true);
        KPDocServices::current().documentsImported(managed);
    });
}

void KPAppDelegate::showFileList(const QStringList &paths, const QString &displayName)
{
    const auto everywhere =
        std::make_shared<KPLocationItem>(QStringList{KPSearchFolders::everywhere}, displayName);
    m_controller->setSearchStateAndUpdateUI(
        KPSearchState::blankSearchState()->searchStateWithNewFileList(paths), true, {}, everywhere);
}

// Once the list is there; their tags can be typed at once.
void KPAppDelegate::selectLater(const QStringList &paths, bool editsTags)
{
    if (paths.size() <= mostToSelect)
        QTimer::singleShot(beforeSelecting, m_controller.get(),
                           [this, paths, editsTags] { select(paths, editsTags); });
}

// Unless the user looks at something else by now.
void KPAppDelegate::select(const QStringList &paths, bool editsTags)
{
    const KPSearchState::Ptr state = m_controller->searcher().searchState();
    if (state && state->fileListSearch() == paths)
        m_controller->selectDocuments(paths, editsTags);
}

void KPAppDelegate::showFolders(const QStringList &folders)
{
    if (!m_controller || folders.isEmpty())
        return;
    m_controller->setSearchStateAndUpdateUI(KPSearchState::blankSearchState(), true, {},
                                            std::make_shared<KPLocationItem>(folders));
}

// --- Addresses

void KPAppDelegate::showUrlState(const KPSearchState::Ptr &state)
{
    m_controller->setSearchStateAndUpdateUI(
        state, true, std::make_shared<KPSpotlightItem>(qtTrId("KPSpotlightSearch")),
        KPLocationItem::everywhere());
}

bool KPAppDelegate::handleOpenUrl(const QString &url)
{
    const auto wish = KPOpenedUrl::parse(url);
    if (!wish) {
        qCWarning(xpLog) << "an address was not understood:" << wish.error().message;
        return false;
    }
    if (const auto *file = std::get_if<KPOpenedUrl::File>(&*wish))
        return openFiles({file->path});
    if (!m_controller) {
        m_pendingUrls.append(url);
        return true;
    }
    if (const auto *page = std::get_if<KPOpenedUrl::Capture>(&*wish)) {
        xpGuiThread.assertHere();
        bringToFront({});
        KPWebCapture::ask(m_controller.get(), page->address);
        return true;
    }
    const auto blank = KPSearchState::blankSearchState();
    if (const auto *tagged = std::get_if<KPOpenedUrl::WithTags>(&*wish))
        showUrlState(blank->searchStateWithNewTags(tagged->tags));
    else if (const auto *words = std::get_if<KPOpenedUrl::WithText>(&*wish))
        showUrlState(blank->searchStateWithNewSearchString(
            words->text, KPSearcher::prefSearchContents(), KPSearcher::prefUseMetaData(), true));
    bringToFront({});
    return true;
}

// Whoever asked is a stranger.
static void askToFile(const QStringList &paths) XP_REQUIRES(xpGuiThread)
{
    XPPrompts::Question question;
    question.title =
        paths.size() == 1
            ? qtTrId("XPFileTitleSingle").arg(XPPath::printable(XPPath::fileName(paths.first())))
            : qtTrId("XPFileTitleMultiple").arg(QLocale().toString(paths.size()));
    const QString folder = XPFiledDocuments::filedDocumentsRootIfPresent();
    question.text =
        qtTrId("XPFileComment").arg(XPPath::printable(XPFolders::abbreviateWithTilde(folder)));
    question.buttons = {qtTrId("XPFileButton"), qtTrId("KPCancel")};
    question.cancelButton = 1;
    XPPrompts::current().ask(question, [paths](int button) {
        xpGuiThread.assertHere();
        if (button == 0)
            XPFiledDocuments::putFilesIntoFiledDocumentsUI(paths, [](const XPFileReport &) {});
    });
}

void KPAppDelegate::documentsAsked(const QString &action, const QStringList &urls,
                                   const XPActivation &activation)
{
    xpGuiThread.assertHere();
    QStringList paths;
    for (const QString &url : urls) {
        const auto wish = KPOpenedUrl::parse(url);
        const auto *file = wish ? std::get_if<KPOpenedUrl::File>(&*wish) : nullptr;
        if (file != nullptr && exists(file->path))
            paths.append(file->path);
    }
    if (!m_controller || paths.isEmpty())
        return;
    bringToFront(activation);
    if (action == XPApplicationBus::fileIntoAction) {
        askToFile(paths);
        return;
    }
    const bool editsTags = action == XPApplicationBus::tagAction;
    if (!editsTags && lookAt(paths).areFolders) {
        showFolders(paths);
        return;
    }
    showFileList(paths, {});
    selectLater(paths, editsTags);
}

void KPAppDelegate::openUrls(const QStringList &urls, const XPActivation &activation)
{
    QStringList files;
    for (const QString &url : urls) {
        const auto wish = KPOpenedUrl::parse(url);
        const auto *file = wish ? std::get_if<KPOpenedUrl::File>(&*wish) : nullptr;
        if (file != nullptr)
            files.append(file->path);
        else
            handleOpenUrl(url);
    }
    if (!files.isEmpty())
        openFiles(files);
    bringToFront(activation);
}

// --- Services and the hot key

static QString selectedText()
{
    const QClipboard *clipboard = QGuiApplication::clipboard();
    QString text;
    if (clipboard->supportsSelection())
        text = clipboard->text(QClipboard::Selection);
    return text.isEmpty() ? clipboard->text() : text;
}

void KPAppDelegate::searchInMurnService(const QString &text, const XPActivation &activation)
{
    if (!m_controller)
        return;
    // First the search, which asks whether the program was in front.
    m_controller->performSpotlightSearchFromExternalAppWithString(text.isEmpty() ? selectedText()
                                                                                 : text);
    bringToFront(activation);
}

// Whoever asked is a stranger: nothing is filed before the user says so.
void KPAppDelegate::createFiledFile(const XPActivation &activation)
{
    xpGuiThread.assertHere();
    if (!m_controller)
        return;
    bringToFront(activation);
    const QMimeData *copied = QGuiApplication::clipboard()->mimeData();
    if (!XPPasteboardSupport::canImportFromPB(copied)) {
        XPPrompts::current().alert(qtTrId("KPFileClipboardTitle"), qtTrId("KPNothingToFile"));
        return;
    }
    // What was there when the question was put, not what is copied meanwhile.
    XPPrompts::current().ask({qtTrId("KPFileClipboardTitle"),
                              qtTrId("KPFileClipboardText"),
                              {qtTrId("KPFileClipboardButton"), qtTrId("KPCancel")},
                              1},
                             [this, pb = XPPasteboard::from(copied)](int button) {
                                 if (button == 0)
                                     fileCopied(pb);
                             });
}

void KPAppDelegate::fileCopied(const XPPasteboard &pb)
{
    xpGuiThread.assertHere();
    if (m_controller)
        m_controller->filing().import(
            pb, {.done = [this](const QStringList &paths) { showFileList(paths, {}); }});
}

void KPAppDelegate::followHotKey(const PropertyValue &key)
{
    const auto sequence = QKeySequence::fromString(key.string(), QKeySequence::PortableText);
    if (!m_shortcut) {
        if (sequence.isEmpty())
            return;
        m_shortcut = std::make_unique<XPGlobalShortcut>(qtTrId("KPHotKeyDescription"));
        connect(m_shortcut.get(), &XPGlobalShortcut::pressed, this, [this](const QString &token) {
            QTimer::singleShot(afterHotKey, this, [this, token] {
                if (!m_controller)
                    return;
                m_controller->globalHotKeyPressed();
                bringToFront({token, {}});
            });
        });
    }
    m_shortcut->setKey(sequence);
}
