#include "KPTagBranchMenu.h"

#include "KPNavigator.h"
#include "KPSearcher.h"
#include "KPTagClicks.h"
#include "KPTagTree.h"
#include "XPPath.h"

#include <QMenu>

static constexpr qsizetype mostShown = 30;

static QString shown(const QString &tag)
{
    return XPPath::printable(tag).replace(u'&', QStringLiteral("&&"));
}

static void addOne(QMenu *menu, const QString &tag, KPNavigator &navigator)
{
    QObject::connect(menu->addAction(qtTrId("KPTagShowWith").arg(shown(tag))), &QAction::triggered,
                     menu, [tag, &navigator] {
                         KPTagName *name = KPTagName::tagNameForUserEnteredTag(tag);
                         if (name)
                             navigator.setSearchStateAndUpdateUI(
                                 KPTagClicks::showWith(navigator.searcher().searchState(), name),
                                 true);
                     });
}

void KPTagBranchMenu::add(QMenu *menu, const KPTagName *tag, KPNavigator &navigator)
{
    if (tag->tagType() != KPTagName::User)
        return;
    const QString name = tag->displayName();
    for (const QString &parent : KPTagTree::above(name))
        addOne(menu, parent, navigator);
    QStringList below;
    for (const auto &set : navigator.searcher().zenTagsSorted()) {
        if (below.size() < mostShown && set.tag->tagType() == KPTagName::User &&
            KPTagTree::isBelow(set.tag->displayName(), name))
            below.append(set.tag->displayName());
    }
    if (below.isEmpty())
        return;
    QMenu *branch = menu->addMenu(qtTrId("KPTagBelow").arg(shown(name)));
    for (const QString &each : below)
        addOne(branch, each, navigator);
}
