#pragma once

#include "KPSortOrder.h"

#include <QActionGroup>
#include <QMenu>
#include <functional>
#include <optional>

// The menus that choose a rating for the selection and the order of the documents.
// Ownership: whoever shows a menu owns it; the makers are called once. Threads: main.
class KPDocumentMenus
{
public:
    std::function<void(int)> rate;
    std::function<void(const KPSortKey &)> sort;

    QMenu *makeRateMenu();
    QMenu *makeSortMenu();

    void showRating(std::optional<double> rating); // of the selection; nothing: they differ
    void showOrder(const KPSortKey &order);

private:
    QList<QAction *> m_ratings; // by stars
    QActionGroup *m_keys = nullptr;
    QActionGroup *m_directions = nullptr;
};
