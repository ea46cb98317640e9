#pragma once

#include <QWidget>

class KPBookmarkCommands;
class KPBookmarkModel;
class QLabel;
class QTreeView;

// The panel of saved searches, which takes the place of the documents while it is shown: an
// outline to order them by dragging, rename, run and delete them, and a row of buttons.
// A double click and Return narrow the search that is shown; with Alt they take its place.
//
// The window shows it by KPShowBookmarksPanel, and hides it at KPBookmarkCommands::ran().
// Threads: main. Ownership: the commands must outlive it.
class KPBookmarkPanel : public QWidget
{
    Q_OBJECT

public:
    explicit KPBookmarkPanel(KPBookmarkCommands &commands, QWidget *parent = nullptr);
    ~KPBookmarkPanel() override;

    QTreeView &outline() { return *m_outline; }
    QStringList selected() const; // identifiers
    void clearSelection();
    void renameSelected(); // renameSelectedBookmarkAction

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void rebuild();
    void run(const QModelIndex &index);
    void showMenu(const QPoint &position);
    void rename(const QString &identifier);

    KPBookmarkCommands &m_commands;
    KPBookmarkModel *m_model;
    QTreeView *m_outline;
    QLabel *m_empty;
};
