#pragma once

#include "KPSortOrder.h"

#include <QAction>
#include <QActionGroup>
#include <QHash>
#include <QList>
#include <QMenu>

class KPController;
class QUndoStack;

// The window's menus and their actions, from one table. The window owns them; they refer to this,
// which lives as long as the window. Threads: main.
class KPWindowActions
{
public:
    KPWindowActions(KPController *controller, QUndoStack *history);

    QMenu *sortMenu() const { return m_sortMenu; }
    // The actions for documents, at the pointer.
    void popUp(const QPoint &globalPosition);

    void setHasSelection(bool has);
    void setRating(std::optional<double> rating); // of the selection; nothing: they differ
    void showOrder(const KPSortKey &order);
    QAction *indexAction() const { return m_byText.value(QStringLiteral("KPIndexFolder")); }
    QAction *inspectorAction() const { return m_byText.value(QStringLiteral("KPInspectorShown")); }

private:
    void buildMenus();
    void buildSortMenu();
    void buildRateMenu();
    void connectHistory(QUndoStack *history);

    KPController *m_controller;
    QList<QMenu *> m_menus;
    QHash<QString, QAction *> m_byText; // by the id of its text
    QMenu *m_sortMenu = nullptr;
    QMenu *m_rateMenu = nullptr;
    QActionGroup *m_keys = nullptr;
    QActionGroup *m_directions = nullptr;
    QList<QAction *> m_onSelection;
    QList<QAction *> m_ratings; // by stars
};
