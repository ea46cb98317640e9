#include "KPDocumentMenus.h"

#include <QAction>
#include <cmath>

QMenu *KPDocumentMenus::makeRateMenu()
{
    auto *menu = new QMenu;
    auto *group = new QActionGroup(menu);
    group->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    for (int stars = 0; stars <= 5; ++stars) {
        const QString text = stars ? qtTrId("KPStars", stars) : qtTrId("KPNoStars");
        QAction *action = menu->addAction(text + QStringLiteral("\t") + QString::number(stars));
        action->setCheckable(true);
        group->addAction(action);
        QObject::connect(action, &QAction::triggered, menu, [this, stars] { rate(stars); });
        m_ratings.append(action);
    }
    return menu;
}

QMenu *KPDocumentMenus::makeSortMenu()
{
    struct Entry
    {
        const char *text;
        KPSortKey::Field key;
    };
    static constexpr Entry entries[] = {
        {QT_TRID_NOOP("KPSortName"), KPSortKey::Field::Name},
        {QT_TRID_NOOP("KPSortModified"), KPSortKey::Field::Modified},
        {QT_TRID_NOOP("KPSortRating"), KPSortKey::Field::Rating},
        {QT_TRID_NOOP("KPSortSize"), KPSortKey::Field::Size},
    };
    auto *menu = new QMenu;
    m_keys = new QActionGroup(menu);
    for (const Entry &entry : entries)
        m_keys->addAction(qtTrId(entry.text))->setData(static_cast<int>(entry.key));
    m_directions = new QActionGroup(menu);
    m_directions->addAction(qtTrId("KPSortAscending"))->setData(true);
    m_directions->addAction(qtTrId("KPSortDescending"))->setData(false);
    menu->addActions(m_keys->actions());
    menu->addSeparator();
    menu->addActions(m_directions->actions());
    for (QActionGroup *group : {m_keys, m_directions}) {
        for (QAction *action : group->actions())
            action->setCheckable(true);
    }
    QObject::connect(m_keys, &QActionGroup::triggered, menu, [this](QAction *chosen) {
        // What one looks for comes first: names from A, but the newest, best and largest.
        const auto key = static_cast<KPSortKey::Field>(chosen->data().toInt());
        sort({key, key == KPSortKey::Field::Name});
    });
    QObject::connect(m_directions, &QActionGroup::triggered, menu, [this](QAction *chosen) {
        const auto key = static_cast<KPSortKey::Field>(m_keys->checkedAction()->data().toInt());
        sort({key, chosen->data().toBool()});
    });
    return menu;
}

void KPDocumentMenus::showRating(std::optional<double> rating)
{
    for (int stars = 0; stars < m_ratings.size(); ++stars)
        m_ratings[stars]->setChecked(rating && std::lround(*rating) == stars);
}

void KPDocumentMenus::showOrder(const KPSortKey &order)
{
    for (QAction *action : m_keys->actions())
        action->setChecked(action->data().toInt() == static_cast<int>(order.field));
    for (QAction *action : m_directions->actions())
        action->setChecked(action->data().toBool() == order.ascending);
}
