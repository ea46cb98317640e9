// KPLibraryController: the commands on what is selected, and their table.
#include "KPDocsList.h"
#include "KPDocsView.h"
#include "KPLibraryController.h"
#include "KPLoupeController.h"
#include "KPNavigator.h"
#include "KPOpening.h"
#include "KPProgramDialog.h"
#include "KPQuickLook.h"
#include "UserDefaults.h"
#include "XPApplications.h"
#include "XPFileUrls.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPWorkspace.h"

#include <QActionGroup>
#include <QClipboard>
#include <QGuiApplication>
#include <QLocale>
#include <QMimeData>
#include <QStackedWidget>
#include <array>

using Menu = KPCommandMenu;
using Field = KPSortKey::Field;

static QStringList pathsOf(const KPDoc::Docs &docs)
{
    QStringList paths;
    for (const KPDoc *doc : docs)
        paths.append(doc->filePath());
    return paths;
}

// Opening and showing.

void KPLibraryController::openDocumentsExternally(const KPDoc::Docs &docs)
{
    std::vector<KPOpening::Start> starts;
    for (const KPDoc *doc : docs) {
        starts.push_back({doc->fsDisplayName(), [doc] {
                              xpGuiThread.assertHere();
                              return doc->openDocExternal();
                          }});
    }
    KPOpening::run(std::move(starts), this);
}

// Asks before there are many windows.
static void askToOpen(qsizetype count, QObject *receiver, const std::function<void()> &open)
{
    xpGuiThread.assertHere();
    if (count <= KPLibraryController::mostOpenedUnasked) {
        open();
        return;
    }
    XPPrompts::current().ask({qtTrId("KPConfirmExternalOpenTitle").arg(QLocale().toString(count)),
                              qtTrId("KPConfirmExternalOpenComments"),
                              {qtTrId("KPConfirmExternalOpenOK"), qtTrId("KPCancel")},
                              1},
                             [receiver = QPointer(receiver), open](int answer) {
                                 if (answer == 0 && receiver)
                                     open();
                             });
}

void KPLibraryController::openSelectedExternallyAction()
{
    const KPDoc::Docs docs = m_docs.selectedDocs();
    askToOpen(docs.size(), this, [this, docs] {
        xpGuiThread.assertHere();
        openDocumentsExternally(docs);
    });
}

// A program that takes one file only is started for each.
static void openWith(const QStringList &paths, const QString &desktopEntry, QObject *receiver)
{
    QList<QStringList> groups;
    if (XPApplications::takesMany(desktopEntry)) {
        groups.append(paths);
    } else {
        for (const QString &path : paths)
            groups.append(QStringList(path));
    }
    askToOpen(groups.size(), receiver, [groups, desktopEntry, receiver] {
        xpGuiThread.assertHere();
        std::vector<KPOpening::Start> starts;
        for (const QStringList &group : groups)
            starts.push_back({XPPath::fileName(group.value(0)), [group, desktopEntry] {
                                  return XPWorkspace::openWith(group, desktopEntry);
                              }});
        KPOpening::run(std::move(starts), receiver);
    });
}

// KPOpenWithMode: 1 is the program in KPOpenWith, while that is installed; all else the desktop's
// choice for each type.
void KPLibraryController::openSelectedUsingUsersPreferredMethodAction()
{
    const UserDefaults &defaults = UserDefaults::standard();
    const QString program = defaults.value(QStringLiteral("KPOpenWith")).string();
    if (defaults.integerValue(QStringLiteral("KPOpenWithMode")) == 1 &&
        XPApplications::isInstalled(program))
        openWith(pathsOf(m_docs.selectedDocs()), program, this);
    else
        openSelectedExternallyAction();
}

void KPLibraryController::openSelectedWithOtherAction()
{
    auto *dialog = new KPProgramDialog(XPApplications::all(), window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this,
            [this, dialog, paths = pathsOf(m_docs.selectedDocs())] {
                openWith(paths, dialog->desktopEntry(), this);
            });
    dialog->open();
}

void KPLibraryController::showPackageContentsAction()
{
    const KPDoc *doc = m_docs.singleSelection();
    const auto programs = XPApplications::forFolders();
    if (doc && !programs.isEmpty())
        openWith({doc->filePath()}, programs.first().desktopEntry, this);
}

void KPLibraryController::revealSelectedAction()
{
    XPWorkspace::reveal(pathsOf(m_docs.selectedDocs()));
}

QMenu *KPLibraryController::makeOpenWithMenu()
{
    auto *menu = new QMenu(m_stack);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        menu->clear();
        const QStringList paths = pathsOf(m_docs.selectedDocs());
        const QString first = paths.value(0);
        for (const XPApplications::Application &each : XPApplications::forFile(first)) {
            QAction *action =
                menu->addAction(QString(each.name).replace(u'&', QStringLiteral("&&")));
            connect(action, &QAction::triggered, this,
                    [this, paths, each] { openWith(paths, each.desktopEntry, this); });
        }
        if (menu->isEmpty())
            menu->addAction(qtTrId("KPNoApplication"))->setEnabled(false);
        menu->addSeparator();
        connect(menu->addAction(qtTrId("KPOpenWithOther")), &QAction::triggered, this,
                &KPLibraryController::openSelectedWithOtherAction);
    });
    return menu;
}

// Names, flags, stars.

void KPLibraryController::editTitleForSelected()
{
    if (KPDoc *doc = m_docs.singleSelection()) {
        const int row = m_docs.rowOf(doc);
        m_mode == LibraryMode_List ? m_list->editName(row) : m_grid->editName(row);
    }
}

template <typename Test>
bool KPLibraryController::areAllSelected(Test test) const
{
    for (const KPSelection::Run &run : m_docs.selection().runs()) {
        for (int row = run.first; row <= run.last; ++row) {
            if (!test(*m_docs.at(row)))
                return false;
        }
    }
    return hasSelection();
}

bool KPLibraryController::isSelectionFlagged() const
{
    return areAllSelected([](const KPDoc &doc) { return doc.isFlagged(); });
}

bool KPLibraryController::isSelectionHidden() const
{
    KPTagName *hidden = KPTagName::hiddenUserTag();
    return areAllSelected([hidden](const KPDoc &doc) { return doc.hasUserEnteredTag(hidden); });
}

void KPLibraryController::hideSelectedAction()
{
    KPDoc::setHidden(pathsOf(m_docs.selectedDocs()), !isSelectionHidden());
}

void KPLibraryController::flagSelectedAction()
{
    KPDoc::setFlagged(pathsOf(m_docs.selectedDocs()), !isSelectionFlagged());
}

void KPLibraryController::setRatingsForSelected(int stars)
{
    Q_EMIT editRequested({pathsOf(m_docs.selectedDocs()), {}, stars});
}

// Searches made of what is selected.

void KPLibraryController::showAllDocumentsInFolderAction()
{
    QStringList folders;
    for (const KPDoc *doc : m_docs.selectedDocs()) {
        if (!folders.contains(doc->parentPath()))
            folders.append(doc->parentPath());
    }
    if (!folders.isEmpty())
        m_navigator.setSearchStateAndUpdateUI(KPSearchState::searchStateWithNativeDictionary({})
                                                  ->searchStateWithNewContstraintFolders(folders),
                                              true);
}

void KPLibraryController::onlyShowSelectedDocumentsAction()
{
    const QStringList paths = pathsOf(m_docs.selectedDocs());
    if (!paths.isEmpty())
        m_navigator.setSearchStateAndUpdateUI(
            KPSearchState::searchStateWithNativeDictionary({})->searchStateWithNewFileList(paths),
            true);
}

void KPLibraryController::showSimilarToSelectedAction()
{
    m_navigator.showSimilarDocuments(m_docs.selectedDocs());
}

void KPLibraryController::rebuildSelectedThumbnails()
{
    m_pictures.rebuild(m_docs.selectedDocs());
    m_docs.tellChanged(0, m_docs.count() - 1);
}

void KPLibraryController::rebuildAllThumbnails()
{
    m_pictures.rebuildAll();
    m_docs.tellChanged(0, m_docs.count() - 1);
}

// The tables.

QList<KPCommand> KPLibraryController::commands()
{
    return viewCommands() + m_loupe->commands() + documentCommands();
}

QList<KPCommand> KPLibraryController::viewCommands()
{
    const auto mode = [this](const char *id, int wanted, const QKeySequence &key,
                             const char *symbol, bool endsGroup = false) {
        return KPCommand{
            .id = id,
            .menu = Menu::View,
            .shortcut = key,
            .run = [this, wanted] { setLibraryMode(wanted); },
            .state = [this, wanted] { return KPCommandState{.isChecked = m_mode == wanted}; },
            .symbol = symbol,
            .endsGroup = endsGroup};
    };
    const auto zooms = [this](bool isLarger) {
        return [this, isLarger] {
            const bool canZoom = isLarger ? m_magnification < 1 : m_magnification > 0;
            return KPCommandState{.isEnabled = m_mode != LibraryMode_List && canZoom};
        };
    };
    return {
        mode(QT_TRID_NOOP("KPThumbnailMode"), LibraryMode_Thumbnails, Qt::CTRL | Qt::Key_1, "grid"),
        mode(QT_TRID_NOOP("KPGroupMode"), LibraryMode_Groups, Qt::CTRL | Qt::Key_2, "groups"),
        mode(QT_TRID_NOOP("KPTableMode"), LibraryMode_List, Qt::CTRL | Qt::Key_3, "list", true),
        {.id = QT_TRID_NOOP("KPZoomIn"),
         .menu = Menu::View,
         .shortcut = QKeySequence::ZoomIn,
         .run = [this] { zoomIn(); },
         .state = zooms(true),
         .symbol = "larger"},
        {.id = QT_TRID_NOOP("KPZoomOut"),
         .menu = Menu::View,
         .shortcut = QKeySequence::ZoomOut,
         .run = [this] { zoomOut(); },
         .state = zooms(false),
         .symbol = "smaller"},
        {.id = QT_TRID_NOOP("KPZoomLargest"),
         .menu = Menu::View,
         .run = [this] { maxZoom(); },
         .state = zooms(true)},
        {.id = QT_TRID_NOOP("KPZoomSmallest"),
         .menu = Menu::View,
         .run = [this] { minZoom(); },
         .state = zooms(false),
         .endsGroup = true},
        {.id = QT_TRID_NOOP("KPSortBy"),
         .menu = Menu::View,
         .symbol = "sort",
         .endsGroup = true,
         .submenu = [this] { return makeSortMenu(); }},
    };
}

QMenu *KPLibraryController::makeSortMenu()
{
    static constexpr std::array<std::pair<Field, const char *>, 9> fields{{
        {Field::Name, QT_TRID_NOOP("KPSortName")},
        {Field::Type, QT_TRID_NOOP("KPSortType")},
        {Field::Size, QT_TRID_NOOP("KPSortSize")},
        {Field::Modified, QT_TRID_NOOP("KPSortModified")},
        {Field::Created, QT_TRID_NOOP("KPSortCreated")},
        {Field::Added, QT_TRID_NOOP("KPSortAdded")},
        {Field::Rating, QT_TRID_NOOP("KPSortRating")},
        {Field::Tags, QT_TRID_NOOP("KPSortTags")},
        {Field::Folder, QT_TRID_NOOP("KPSortFolder")},
    }};
    auto *menu = new QMenu(m_stack);
    auto *byField = new QActionGroup(menu);
    for (const auto &[field, id] : fields) {
        QAction *action = menu->addAction(qtTrId(id));
        action->setCheckable(true);
        action->setData(static_cast<int>(field));
        byField->addAction(action);
        connect(action, &QAction::triggered, this, [this, field = field] {
            if (field != currentSortDescriptorKey())
                arrangeByColumnAction(field);
        });
    }
    menu->addSeparator();
    auto *byDirection = new QActionGroup(menu);
    QAction *ascending = menu->addAction(qtTrId("KPSortAscending"));
    QAction *descending = menu->addAction(qtTrId("KPSortDescending"));
    for (QAction *action : {ascending, descending}) {
        action->setCheckable(true);
        byDirection->addAction(action);
    }
    connect(ascending, &QAction::triggered, this, [this] { arrangeBySortAscendingAction(); });
    connect(descending, &QAction::triggered, this, [this] { arrangeBySortDescendingAction(); });
    const auto show = [this, byField, ascending, descending] {
        for (QAction *action : byField->actions())
            action->setChecked(action->data().toInt() ==
                               static_cast<int>(currentSortDescriptorKey()));
        (currentSortIsAscending() ? ascending : descending)->setChecked(true);
    };
    connect(menu, &QMenu::aboutToShow, this, show);
    show();
    return menu;
}

QMenu *KPLibraryController::makeRateMenu()
{
    auto *menu = new QMenu(m_stack);
    for (int stars = 0; stars <= 5; ++stars) {
        QAction *action =
            menu->addAction(stars == 0 ? qtTrId("KPNoStars") : qtTrId("KPStars", stars));
        action->setCheckable(true);
        action->setShortcut(QKeySequence(Qt::ALT | Qt::Key(Qt::Key_0 + stars)));
        m_stack->addAction(action);
        connect(action, &QAction::triggered, this, [this, stars] {
            if (hasSelection())
                setRatingsForSelected(stars);
        });
    }
    const auto show = [this, menu] {
        const KPDoc *single = m_docs.singleSelection();
        for (qsizetype stars = 0; stars < menu->actions().size(); ++stars)
            menu->actions().at(stars)->setChecked(single && single->starsToShow() == stars);
    };
    connect(this, &KPLibraryController::selectionChanged, menu, show);
    connect(this, &KPLibraryController::selectedDocumentsChanged, menu, show);
    return menu;
}

QList<KPCommand> KPLibraryController::documentCommands()
{
    const auto selected = [this] { return KPCommandState{.isEnabled = hasSelection()}; };
    const auto single = [this] { return KPCommandState{.isEnabled = numberOfSelections() == 1}; };
    const auto onDocuments = [selected](const char *id, const QKeySequence &key,
                                        std::function<void()> run, const char *symbol = "",
                                        bool endsGroup = false) {
        return KPCommand{.id = id,
                         .menu = Menu::Documents,
                         .shortcut = key,
                         .run = std::move(run),
                         .state = selected,
                         .symbol = symbol,
                         .isOnDocuments = true,
                         .endsGroup = endsGroup};
    };
    // By its tags; of several the last one counts.
    const auto tagged = [this] {
        const auto runs = m_docs.selection().runs();
        return KPCommandState{
            .isEnabled = hasSelection() &&
                         !m_docs.at(runs.back().last)->tagNamesOfTypeUserEntered().isEmpty()};
    };
    KPCommand open = onDocuments(
        QT_TRID_NOOP("KPOpen"), {},
        [this] {
            xpGuiThread.assertHere();
            openSelectedUsingUsersPreferredMethodAction();
        },
        "open");
    open.shownKey = "Return";
    KPCommand openWith = onDocuments(QT_TRID_NOOP("KPOpenWith"), {}, {});
    openWith.submenu = [this] { return makeOpenWithMenu(); };
    KPCommand flag = onDocuments(
        QT_TRID_NOOP("KPFlag"), Qt::CTRL | Qt::SHIFT | Qt::Key_G,
        [this] {
            xpGuiThread.assertHere();
            flagSelectedAction();
        },
        "flag");
    flag.state = [this] {
        return KPCommandState{.isEnabled = hasSelection(),
                              .text = isSelectionFlagged() ? QT_TRID_NOOP("KPUnflag") : nullptr};
    };
    KPCommand hide = onDocuments(
        QT_TRID_NOOP("KPHide"), Qt::CTRL | Qt::SHIFT | Qt::Key_H,
        [this] {
            xpGuiThread.assertHere();
            hideSelectedAction();
        },
        "hidden");
    hide.state = [this] {
        return KPCommandState{.isEnabled = hasSelection(),
                              .text = isSelectionHidden() ? QT_TRID_NOOP("KPUnhide") : nullptr};
    };
    KPCommand contents = onDocuments(QT_TRID_NOOP("KPShowPackageContents"), {},
                                     [this] { showPackageContentsAction(); });
    contents.state = [this] {
        const KPDoc *doc = m_docs.singleSelection();
        return KPCommandState{.isShown = doc && doc->isPackage()};
    };
    KPCommand rename = onDocuments(
        QT_TRID_NOOP("KPRenameFile"), Qt::Key_F2, [this] { editTitleForSelected(); }, "rename");
    rename.state = single;
    KPCommand rate = onDocuments(QT_TRID_NOOP("KPRate"), {}, {}, "star", true);
    rate.submenu = [this] { return makeRateMenu(); };
    KPCommand copy = onDocuments(
        QT_TRID_NOOP("KPCopyFiles"), QKeySequence::Copy,
        [this] {
            if (const KPDoc::Docs docs = m_docs.selectedDocs(); !docs.isEmpty())
                QGuiApplication::clipboard()->setMimeData(XPFileUrls::mimeData(pathsOf(docs)));
        },
        "copy");
    copy.menu = Menu::Edit;
    return {
        open,
        openWith,
        contents,
        onDocuments(
            QT_TRID_NOOP("KPReveal"), Qt::CTRL | Qt::Key_R, [this] { revealSelectedAction(); },
            "reveal", true),
        onDocuments(
            QT_TRID_NOOP("KPEditTags"), Qt::CTRL | Qt::Key_T,
            [this] { Q_EMIT tagEditorRequested(m_docs.selectedDocs()); }, "tag"),
        flag,
        hide,
        rate,
        rename,
        onDocuments(QT_TRID_NOOP("KPShowAllInFolder"), {},
                    [this] { showAllDocumentsInFolderAction(); }),
        onDocuments(QT_TRID_NOOP("KPOnlyShowSelected"), {},
                    [this] { onlyShowSelectedDocumentsAction(); }),
        {.id = QT_TRID_NOOP("KPShowSimilar"),
         .menu = Menu::Documents,
         .run = [this] { showSimilarToSelectedAction(); },
         .state = tagged,
         .isOnDocuments = true},
        onDocuments(
            QT_TRID_NOOP("KPRebuildThumbnails"), {},
            [this] {
                xpGuiThread.assertHere();
                rebuildSelectedThumbnails();
            },
            "", true),
        {.id = QT_TRID_NOOP("KPRebuildAllThumbnails"),
         .menu = Menu::View,
         .run =
             [this] {
                 xpGuiThread.assertHere();
                 rebuildAllThumbnails();
             },
         .endsGroup = true},
        copy,
        {.id = QT_TRID_NOOP("KPSelectAll"),
         .menu = Menu::Edit,
         .shortcut = QKeySequence::SelectAll,
         .run = [this] { selectAll(); },
         .state = [this] { return KPCommandState{.isEnabled = m_docs.count() > 0}; }},
        {.id = QT_TRID_NOOP("KPScrollToSelection"),
         .menu = Menu::Edit,
         .shortcut = Qt::CTRL | Qt::Key_J,
         .run = [this] { scrollSelectionToVisible(); },
         .state = selected,
         .endsGroup = true},
    };
}
