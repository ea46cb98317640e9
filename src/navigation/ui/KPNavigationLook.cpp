#include "KPNavigationLook.h"

#include "KPBaseItem.h"
#include "KPDocIcons.h"

#include <QHash>
#include <QProxyStyle>
#include <QTreeView>

using namespace KPNavigationLook;

// What is drawn for the names that items give.
static const QHash<QString, const char *> &symbols()
{
    static const QHash<QString, const char *> known = {
        {QStringLiteral("libraryGroupIcon.tif"), "documents"},
        {QStringLiteral("KPSpotlightSearch.tif"), "search"},
        {QStringLiteral("KPTag_hide.tif"), "hidden"},
        {QStringLiteral("KPTag_flag.tif"), "flag"},
        {QStringLiteral("sl_dated.tif"), "calendar"},
        {QStringLiteral("sl_lastImport.tif"), "clock"},
        {QStringLiteral("sl_lastImport_d.tif"), "clock"},
        {QStringLiteral("KPMurnMode.tif"), "folders"},
        {QStringLiteral("KPFinderMode.tif"), "folder"},
        {QStringLiteral("filed"), "managed"},
        {QStringLiteral("saved"), "saved"},
        {QString(), "documents"},
    };
    return known;
}

QIcon KPNavigationLook::icon(const QString &name)
{
    if (name.startsWith(u':'))
        return QIcon(name);
    const auto known = symbols().constFind(name);
    return KPDocIcons::symbol(known == symbols().cend() ? name : QLatin1String(*known));
}

QIcon KPNavigationLook::icon(const KPBaseItem &item)
{
    enum Type { Tagged = 6, Untagged = 7, Managed = 17 };
    switch (item.sourceListItemType()) {
    case Tagged:
        return KPDocIcons::symbol(QStringLiteral("tag"));
    case Untagged:
        return KPDocIcons::symbol(QStringLiteral("untagged"));
    case Managed:
        return KPDocIcons::symbol(QStringLiteral("managed"));
    default:
        return icon(item.itemImage());
    }
}

namespace {

// Without the ground that styles paint behind a selected row, over its whole width, and without
// their marks of what can be opened: the delegate draws both where the row begins.
class PlainRows : public QProxyStyle
{
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override
    {
        if (element != PE_PanelItemViewRow && element != PE_IndicatorBranch)
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
};

} // namespace

void KPNavigationLook::prepare(QTreeView *tree)
{
    auto *style = new PlainRows;
    style->setParent(tree);
    tree->setStyle(style);
    tree->setHeaderHidden(true);
    tree->setFrameShape(QFrame::NoFrame);
    tree->setIndentation(14);
    tree->setMouseTracking(true);
    tree->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    tree->setExpandsOnDoubleClick(false);
}

QColor KPNavigationLook::mixed(const QColor &one, const QColor &other, double share)
{
    const auto mix = [share](int a, int b) { return static_cast<int>(a + (b - a) * share); };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()),
            mix(one.blue(), other.blue())};
}

static bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < 128;
}

QColor KPNavigationLook::chip(const QPalette &palette, bool isHovered)
{
    const double share = (isDark(palette) ? 0.18 : 0.13) + (isHovered ? 0.08 : 0);
    return mixed(palette.color(QPalette::Window), palette.color(QPalette::Highlight), share);
}

// The accent, far enough from its own tint to be read.
QColor KPNavigationLook::chipText(const QPalette &palette)
{
    return mixed(palette.color(QPalette::Highlight), palette.color(QPalette::WindowText), 0.45);
}

QColor KPNavigationLook::quiet(const QPalette &palette)
{
    return mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.07);
}

QColor KPNavigationLook::muted(const QPalette &palette)
{
    return mixed(palette.color(QPalette::WindowText), palette.color(QPalette::Window), 0.32);
}

QColor KPNavigationLook::line(const QPalette &palette)
{
    return mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.14);
}
