#pragma once

#include "XPNotificationCenter.h"

#include <QTimer>
#include <QWidget>
#include <vector>

class KPBookmarkCommands;
class KPCrumbController;
class QLabel;
class QMenu;
class QToolButton;
struct KPBookmark;

// The bar of saved searches: a button each, a menu for each folder, then the groups of tags and
// the folders that were used last. A click narrows the search that is shown; with Alt it takes its
// place. What has no room stands in a menu at the end. Saved searches, documents and locations are
// dropped into it.
//
// A row of 32 points; the window shows it by KPBookmarkBarShown.
// Threads: main. Ownership: both must outlive it.
class KPBookmarkBar : public QWidget
{
    Q_OBJECT

public:
    KPBookmarkBar(KPCrumbController &controller, KPBookmarkCommands &commands,
                  QWidget *parent = nullptr);
    ~KPBookmarkBar() override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void rebuild();
    void place();
    void addBookmark(const KPBookmark &bookmark);
    void addTagGroups();
    void addDestinations();
    QToolButton *addButton(const QString &text, const QString &symbol);
    void fill(QMenu *menu, const KPBookmark &folder);
    void fillOverflow();
    void showTags(const QStringList &tags);
    void showBookmarkMenu(const QString &identifier, const QPoint &position);

    KPCrumbController &m_controller;
    KPBookmarkCommands &m_commands;
    std::vector<QToolButton *> m_buttons;
    QToolButton *m_save;
    QToolButton *m_overflow;
    QLabel *m_hint; // where nothing is kept yet
    QTimer m_later; // recent things follow with a delay
    std::vector<XPObservation> m_observations;
};
