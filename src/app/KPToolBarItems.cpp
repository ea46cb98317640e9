#include "KPToolBarItems.h"

#include "UserDefaults.h"

using KPToolBarItems::Item;
using KPToolBarItems::Kind;

// The tooltip of the refresh button is the inspector's on purpose: both are known by it.
static constexpr Item items[] = {
    {"zelNavigation",
     QT_TRID_NOOP("KPToolbarNavigationLabel"),
     QT_TRID_NOOP("KPToolbarBackForwardTooltip"),
     Kind::Navigation,
     {"KPBack", "KPForward", nullptr}},
    {"KPHome", QT_TRID_NOOP("KPToolbarHomeLabel"), "", Kind::Button, {"KPGoHome"}},
    {"KPResultsViewMode",
     QT_TRID_NOOP("KPResultsViewModeLabel"),
     "",
     Kind::Segments,
     {"KPThumbnailMode", "KPGroupMode", "KPTableMode"}},
    {"KPResultsSortOrder", QT_TRID_NOOP("KPResultsSortOrderLabel"), "", Kind::Menu, {"KPSortBy"}},
    {"KPToolbarTagPanel",
     QT_TRID_NOOP("KPToolbarTagPanelLabel"),
     QT_TRID_NOOP("KPToolbarTagPanelTooltip"),
     Kind::Button,
     {"KPTagPanelShown"}},
    {"KPToolbarLocationPanel",
     QT_TRID_NOOP("KPToolbarLocationPanelLabel"),
     QT_TRID_NOOP("KPToolbarLocationPanelTooltip"),
     Kind::Button,
     {"KPLocationsPanelShown"}},
    {"KPToolbarInspector",
     QT_TRID_NOOP("KPToolbarInspectorLabel"),
     QT_TRID_NOOP("KPToolbarInfoTooltip"),
     Kind::Button,
     {"KPInspectorShown"}},
    {"KPToolbarLoupe",
     QT_TRID_NOOP("KPToolbarLoupeLabel"),
     "",
     Kind::Button,
     {"KPShowLoupeMenuItem"}},
    {"KPToolbarUp",
     QT_TRID_NOOP("KPToolbarUpLabel"),
     QT_TRID_NOOP("KPToolbarUpTooltip"),
     Kind::Button,
     {"KPGoUp"}},
    {"KPRefreshSearch",
     QT_TRID_NOOP("KPToolbarRestartSearchLabel"),
     QT_TRID_NOOP("KPToolbarInfoTooltip"),
     Kind::Button,
     {"KPRefresh"}},
    {"KPToolbarNewScan",
     QT_TRID_NOOP("KPToolbarNewScanLabel"),
     QT_TRID_NOOP("KPToolbarNewScanTooltip"),
     Kind::Prominent,
     {"KPScanAction"}},
};

const Item *KPToolBarItems::item(const QString &identifier)
{
    for (const Item &item : items) {
        if (identifier == QLatin1String(item.identifier))
            return &item;
    }
    return nullptr;
}

QStringList KPToolBarItems::defaultIdentifiers()
{
    const auto named = [](std::size_t number) {
        return QString::fromLatin1(items[number].identifier);
    };
    return {named(0), named(1),  separator, named(2), named(3), separator,     named(4), named(5),
            named(6), separator, named(7),  named(8), named(9), flexibleSpace, named(10)};
}

QStringList KPToolBarItems::allowedIdentifiers()
{
    QStringList all;
    for (const Item &item : items)
        all.append(QString::fromLatin1(item.identifier));
    return all << flexibleSpace << space << separator;
}

QString KPToolBarItems::label(const QString &identifier)
{
    if (const Item *found = item(identifier))
        return qtTrId(found->label);
    return identifier == separator       ? qtTrId("KPToolbarSeparatorLabel")
           : identifier == flexibleSpace ? qtTrId("KPToolbarFlexibleSpaceLabel")
                                         : qtTrId("KPToolbarSpaceLabel");
}

QStringList KPToolBarItems::identifiers()
{
    const UserDefaults &defaults = UserDefaults::standard();
    if (!defaults.isSaved(toolBarIdentifier))
        return defaultIdentifiers();
    const QStringList allowed = allowedIdentifiers();
    QStringList result;
    for (const QString &wanted : defaults.value(toolBarIdentifier).strings()) {
        if (allowed.contains(wanted) && (!item(wanted) || !result.contains(wanted)))
            result.append(wanted);
    }
    return result;
}

void KPToolBarItems::setIdentifiers(const QStringList &identifiers)
{
    UserDefaults::standard().setValue(toolBarIdentifier, identifiers);
}

void KPToolBarItems::reset()
{
    UserDefaults::standard().remove(toolBarIdentifier);
}
