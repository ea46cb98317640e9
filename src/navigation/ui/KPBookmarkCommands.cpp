#include "KPBookmarkCommands.h"

#include "KPCrumbController.h"
#include "KPCrumbs.h"
#include "KPSearcher.h"

#include <QFileDialog>
#include <QMenu>
#include <QPointer>
#include <QUndoCommand>
#include <algorithm>

using Step = std::function<std::optional<XPError>()>;

namespace {

// A change that was made already when it is pushed.
class BookmarkChange : public QUndoCommand
{
public:
    using Report = std::function<void(const QString &, const XPError &)>;
    BookmarkChange(const QString &text, Step redo, Step undo, Report report)
        : QUndoCommand(text), m_redo(std::move(redo)), m_undo(std::move(undo)),
          m_report(std::move(report))
    {
    }
    void undo() override { run(m_undo); }
    void redo() override
    {
        if (!std::exchange(m_isNew, false))
            run(m_redo);
    }

private:
    void run(const Step &step)
    {
        const auto error = step();
        setObsolete(error.has_value());
        if (error)
            m_report(text(), *error);
    }

    Step m_redo;
    Step m_undo;
    Report m_report;
    bool m_isNew = true;
};

QString menuText(const QString &text)
{
    return QString(text).replace(u'&', QStringLiteral("&&"));
}

} // namespace

KPBookmarkCommands::KPBookmarkCommands(KPCrumbController &controller, KPBookmarks &bookmarks,
                                       QUndoStack &history, QWidget *window)
    : QObject(window), m_controller(controller), m_bookmarks(bookmarks), m_history(history),
      m_window(window)
{
}

KPBookmarkCommands::~KPBookmarkCommands() = default;

bool KPBookmarkCommands::change(const QString &text, const Step &redo, const Step &undo)
{
    if (const auto error = redo()) {
        Q_EMIT failed(text, *error);
        return false;
    }
    const QPointer<KPBookmarkCommands> self(this);
    m_history.push(
        new BookmarkChange(text, redo, undo, [self](const QString &what, const XPError &error) {
            if (self)
                Q_EMIT self->failed(what, error);
        }));
    return true;
}

// --- Running and saving

void KPBookmarkCommands::run(const QString &identifier, bool inPlace)
{
    const KPBookmark *bookmark = m_bookmarks.find(identifier);
    if (!bookmark || bookmark->isFolder)
        return;
    KPSearchState::Ptr state = bookmark->searchState();
    const KPSearchState::Ptr present = m_controller.searchState();
    // A search without a criterion of its own has nothing that could be narrowed.
    const bool isBlank = present->searchStateWithNewContstraintFolders({})->isBlank();
    if (!inPlace && !isBlank)
        state = KPSearchState::combineSearchStatesAND(present, state, nullptr);
    else
        m_controller.setSourceItem(m_controller.allDocumentsItem());
    m_controller.applyState(state);
    Q_EMIT ran();
}

bool KPBookmarkCommands::canSave() const
{
    return !m_controller.searchState()->isBlank();
}

QString KPBookmarkCommands::saveCurrent(const KPBookmarkPlace &place)
{
    const KPSearchState::Ptr state = m_controller.searchState();
    if (!canSave())
        return {};
    const auto made = KPBookmark::search(KPCrumbs::sentenceOf(state), *state);
    for (const KPBookmarks::Named &each : m_bookmarks.all()) {
        if (each.bookmark->title == made.title && each.bookmark->state == made.state)
            return each.bookmark->identifier; // the key was pressed twice
    }
    insert(qtTrId("KPBookmarkAdd"), {made}, place);
    return m_bookmarks.find(made.identifier) ? made.identifier : QString();
}

QString KPBookmarkCommands::addFolder(const KPBookmarkPlace &place)
{
    const auto made = KPBookmark::folder(qtTrId("KPBookmarkNewFolderName"));
    insert(qtTrId("KPBookmarkNewFolder"), {made}, place);
    return m_bookmarks.find(made.identifier) ? made.identifier : QString();
}

void KPBookmarkCommands::insert(const QString &text, const QList<KPBookmark> &bookmarks,
                                const KPBookmarkPlace &place)
{
    QStringList identifiers;
    for (const KPBookmark &bookmark : bookmarks)
        identifiers.append(bookmark.identifier);
    KPBookmarks &list = m_bookmarks;
    change(
        text, [&list, bookmarks, place] { return list.insert(bookmarks, place); },
        [&list, identifiers] { return list.remove(identifiers); });
}

void KPBookmarkCommands::add(const QList<KPBookmark> &bookmarks, const KPBookmarkPlace &place)
{
    insert(qtTrId("KPBookmarkAdd"), bookmarks, place);
}

// --- Changing

void KPBookmarkCommands::rename(const QString &identifier, const QString &title)
{
    const KPBookmark *bookmark = m_bookmarks.find(identifier);
    if (!bookmark || title.trimmed().isEmpty() || title == bookmark->title)
        return;
    KPBookmarks &list = m_bookmarks;
    change(
        qtTrId("KPBookmarkRename"),
        [&list, identifier, title] { return list.rename(identifier, title); },
        [&list, identifier, old = bookmark->title] { return list.rename(identifier, old); });
}

void KPBookmarkCommands::setState(const QString &text, const QString &identifier,
                                  const KPSearchState::SavedDictionary &state)
{
    const KPBookmark *bookmark = m_bookmarks.find(identifier);
    if (!bookmark || bookmark->isFolder)
        return;
    KPBookmarks &list = m_bookmarks;
    change(
        text, [&list, identifier, state] { return list.setState(identifier, state); },
        [&list, identifier, old = bookmark->state] { return list.setState(identifier, old); });
}

void KPBookmarkCommands::updateToCurrent(const QString &identifier)
{
    setState(qtTrId("KPBookmarkUpdate"), identifier,
             m_controller.searchState()->searchStateDictionary());
}

void KPBookmarkCommands::combineWithCurrent(const QString &identifier)
{
    const KPBookmark *bookmark = m_bookmarks.find(identifier);
    if (!bookmark || bookmark->isFolder)
        return;
    const auto both = KPSearchState::combineSearchStatesAND(bookmark->searchState(),
                                                            m_controller.searchState(), nullptr);
    setState(qtTrId("KPBookmarkCombine"), identifier, both->searchStateDictionary());
}

void KPBookmarkCommands::remove(const QStringList &identifiers)
{
    // Each with its place, from the first, so that they go back in this order.
    QList<std::pair<KPBookmark, KPBookmarkPlace>> taken;
    for (const QString &identifier : identifiers) {
        const KPBookmark *bookmark = m_bookmarks.find(identifier);
        const auto place = m_bookmarks.placeOf(identifier);
        // What lies in a folder that goes too goes with it, and comes back with it.
        const bool isInside =
            std::any_of(identifiers.begin(), identifiers.end(), [&](const QString &other) {
                const KPBookmark *above = m_bookmarks.find(other);
                return other != identifier && above && above->find(identifier);
            });
        if (bookmark && place && !isInside)
            taken.append({*bookmark, *place});
    }
    std::stable_sort(taken.begin(), taken.end(),
                     [](const auto &a, const auto &b) { return a.second.index < b.second.index; });
    KPBookmarks &list = m_bookmarks;
    change(
        qtTrId("KPBookmarkDelete"), [&list, identifiers] { return list.remove(identifiers); },
        [&list, taken]() -> std::optional<XPError> {
            for (const auto &[bookmark, place] : taken) {
                auto error = list.insert({bookmark}, place);
                if (error && error->kind == XPError::Kind::NotFound)
                    error = list.insert({bookmark}); // its folder went meanwhile
                if (error)
                    return error;
            }
            return {};
        });
}

void KPBookmarkCommands::move(const QStringList &identifiers, const KPBookmarkPlace &place)
{
    QList<std::pair<QString, KPBookmarkPlace>> before;
    for (const QString &identifier : identifiers) {
        if (const auto old = m_bookmarks.placeOf(identifier))
            before.append({identifier, *old});
    }
    KPBookmarks &list = m_bookmarks;
    change(
        qtTrId("KPBookmarkMove"),
        [&list, identifiers, place] { return list.move(identifiers, place); },
        [&list, before]() -> std::optional<XPError> {
            for (const auto &[identifier, old] : before) {
                // Counted before it is moved: behind itself in the same folder it is one further.
                const auto now = list.placeOf(identifier);
                const bool isBehind = now && now->folder == old.folder && now->index < old.index;
                if (auto error =
                        list.move({identifier}, {old.folder, old.index + (isBehind ? 1 : 0)}))
                    return error;
            }
            return {};
        });
}

// --- Files

void KPBookmarkCommands::importFile()
{
    auto *dialog = new QFileDialog(m_window, qtTrId("KPBookmarkImportFile"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilter(qtTrId("KPBookmarkFiles"));
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) {
        if (const auto error = m_bookmarks.importFile(path))
            Q_EMIT failed(qtTrId("KPBookmarkImportFile"), *error);
    });
    dialog->open();
}

void KPBookmarkCommands::exportFile(const QStringList &identifiers)
{
    auto *dialog = new QFileDialog(m_window, qtTrId("KPBookmarkExportFile"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilter(qtTrId("KPBookmarkFiles"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("plist"));
    connect(dialog, &QFileDialog::fileSelected, this, [this, identifiers](const QString &path) {
        if (const auto error = m_bookmarks.exportFile(path, identifiers))
            Q_EMIT failed(qtTrId("KPBookmarkExportFile"), *error);
    });
    dialog->open();
}

// --- The menu

void KPBookmarkCommands::fillMenu(QMenu *menu, const QStringList &identifiers)
{
    if (identifiers.isEmpty())
        return;
    const QString &first = identifiers.first();
    const KPBookmark *bookmark = m_bookmarks.find(first);
    if (!bookmark)
        return;
    const auto add = [this, menu](const QString &text, auto run) {
        connect(menu->addAction(menuText(text)), &QAction::triggered, this, run);
    };
    const bool isOne = identifiers.size() == 1;
    if (isOne && !bookmark->isFolder) {
        add(qtTrId("KPBookmarkShow"), [this, first] { run(first, true); });
        add(qtTrId("KPBookmarkNarrow"), [this, first] { run(first, false); });
        menu->addSeparator();
    }
    if (isOne)
        add(qtTrId("KPBookmarkRename"), [this, first] { Q_EMIT renameRequested(first); });
    if (isOne && !bookmark->isFolder) {
        add(qtTrId("KPBookmarkUpdate"), [this, first] { updateToCurrent(first); });
        add(qtTrId("KPBookmarkCombine"), [this, first] { combineWithCurrent(first); });
    }
    menu->addSeparator();
    add(qtTrId("KPBookmarkExport"), [this, identifiers] { exportFile(identifiers); });
    add(qtTrId("KPBookmarkDelete"), [this, identifiers] { remove(identifiers); });
}
