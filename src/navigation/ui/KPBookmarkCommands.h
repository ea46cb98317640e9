#pragma once

#include "KPBookmarks.h"

#include <QUndoStack>

class KPCrumbController;
class QMenu;
class QWidget;

// What a person does with saved searches, from the bar, the panel, the source list and the menus:
// each change can be undone, as long as what it changed is still there.
//
// Threads: main. Ownership: controller, bookmarks and history must outlive it.
class KPBookmarkCommands : public QObject
{
    Q_OBJECT

public:
    // `history`: the window's undo stack. `window`: whose dialogs they are; may be null.
    KPBookmarkCommands(KPCrumbController &controller, KPBookmarks &bookmarks, QUndoStack &history,
                       QWidget *window);
    ~KPBookmarkCommands() override;

    KPBookmarks &bookmarks() { return m_bookmarks; }

    // The search that is shown narrowed by the saved one; instead of it with `inPlace`, and where
    // what is shown is blank.
    void run(const QString &identifier, bool inPlace);
    // isCurrentSearchSavable
    bool canSave() const;
    // The search that is shown under its words, and its identifier; empty: it was not saved.
    QString saveCurrent(const KPBookmarkPlace &place = {});
    QString addFolder(const KPBookmarkPlace &place = {});
    void add(const QList<KPBookmark> &bookmarks, const KPBookmarkPlace &place);
    void rename(const QString &identifier, const QString &title);
    void updateToCurrent(const QString &identifier);
    // The saved search becomes what fulfils both it and the search that is shown.
    void combineWithCurrent(const QString &identifier);
    void remove(const QStringList &identifiers);
    void move(const QStringList &identifiers, const KPBookmarkPlace &place);
    void importFile();
    void exportFile(const QStringList &identifiers = {}); // none: all
    // The menu of one or several; "Rename" asks the view that shows them.
    void fillMenu(QMenu *menu, const QStringList &identifiers);

Q_SIGNALS:
    void failed(const QString &what, const XPError &error);
    void renameRequested(const QString &identifier);
    void ran();

private:
    using Step = std::function<std::optional<XPError>()>;
    bool change(const QString &text, const Step &redo, const Step &undo);
    void insert(const QString &text, const QList<KPBookmark> &bookmarks,
                const KPBookmarkPlace &place);
    void setState(const QString &text, const QString &identifier,
                  const KPSearchState::SavedDictionary &state);

    KPCrumbController &m_controller;
    KPBookmarks &m_bookmarks;
    QUndoStack &m_history;
    QWidget *m_window;
};
