#include "KPWindowPanels.h"

#include "KPLook.h"
#include "UserDefaults.h"

#include <QPainter>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>

using Place = KPWindowPanels::Place;

static constexpr int resultsWidth = 300; // at the least
static constexpr int smallestWidth = 600;
static constexpr int smallestHeight = 350;
static constexpr int narrowestPanel = 140;
static constexpr double inspectorWidth = 270; // before the user chose one
static const QString leftSplit = QStringLiteral("KPLeftColumnSplit");

namespace {

struct Slot
{
    const char *shownSetting; // empty: always
    const char *widthSetting;
};

// By Place.
constexpr std::array<Slot, KPWindowPanels::placeCount> slots{{
    {"", ""},
    {"KPBookmarkBarShown", ""},
    {"KPActionBarShown", ""},
    {"", "KPSourceListWidth"},
    {"KPShowKeywordsPanel", "KPKeywordsAreaWidth"},
    {"KPShowLocationsPanel", "KPLocationsAreaWidth"},
    {"", ""},
    {"KPShowInspectorPanel", "KPBuiltinInspectorWidth"},
    {"KPShowBookmarksPanel", ""},
}};

const Slot &slotOf(Place place)
{
    return slots[static_cast<std::size_t>(place)];
}

// A hairline between two panes; Qt lets it be taken hold of a little beside it too.
class HairlineHandle : public QSplitterHandle
{
public:
    using QSplitterHandle::QSplitterHandle;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(rect(), KPLook::line(palette()));
    }
};

class HairlineSplitter : public QSplitter
{
public:
    explicit HairlineSplitter(Qt::Orientation orientation) : QSplitter(orientation)
    {
        setHandleWidth(1);
        setChildrenCollapsible(false);
    }

protected:
    QSplitterHandle *createHandle() override { return new HairlineHandle(orientation(), this); }
};

} // namespace

KPWindowPanels::KPWindowPanels(QWidget *parent)
    : QWidget(parent), m_bars(new QVBoxLayout(this)), m_body(new QStackedWidget),
      m_columns(new HairlineSplitter(Qt::Horizontal)), m_left(new HairlineSplitter(Qt::Vertical))
{
    m_bars->setContentsMargins(0, 0, 0, 0);
    m_bars->setSpacing(0);
    m_bars->addWidget(m_body, 1);
    m_body->addWidget(m_columns);
    m_columns->addWidget(m_left);
    m_left->hide();
    connect(m_columns, &QSplitter::splitterMoved, this, [this] {
        saveWidths();
        Q_EMIT changed();
    });
    observe();
}

void KPWindowPanels::observe()
{
    for (const Slot &place : slots) {
        if (*place.shownSetting)
            m_observations.push_back(UserDefaults::standard().addObserver(
                QStringLiteral("values.") + QLatin1String(place.shownSetting),
                [this](const PropertyValue &) { show(); }));
    }
}

bool KPWindowPanels::hasPanel(Place place) const
{
    return panel(place) != nullptr;
}

QWidget *KPWindowPanels::panel(Place place) const
{
    return m_panels[static_cast<std::size_t>(place)];
}

bool KPWindowPanels::isShown(Place place) const
{
    const char *setting = slotOf(place).shownSetting;
    return hasPanel(place) &&
           (!*setting || UserDefaults::standard().boolValue(QLatin1String(setting)));
}

void KPWindowPanels::setShown(Place place, bool isShown)
{
    if (const char *setting = slotOf(place).shownSetting; *setting)
        UserDefaults::standard().setValue(QLatin1String(setting), PropertyValue::boolean(isShown));
}

void KPWindowPanels::addPanel(Place place, QWidget *panel)
{
    delete std::exchange(slot(place), panel);
    const auto countBefore = [this, place](std::initializer_list<Place> others) {
        int count = 0;
        for (const Place other : others)
            count += other < place && hasPanel(other) ? 1 : 0;
        return count;
    };
    panel->setVisible(false);
    switch (place) {
    case Place::CrumbBar:
    case Place::BookmarkBar:
    case Place::ActionBar:
        m_bars->insertWidget(countBefore({Place::CrumbBar, Place::BookmarkBar, Place::ActionBar}),
                             panel);
        break;
    case Place::SourceList:
    case Place::TagPanel:
        m_left->insertWidget(countBefore({Place::SourceList, Place::TagPanel}), panel);
        m_left->setStretchFactor(m_left->indexOf(panel), place == Place::SourceList ? 3 : 2);
        break;
    case Place::Locations:
    case Place::Library:
    case Place::Inspector: {
        const int index = 1 + countBefore({Place::Locations, Place::Library, Place::Inspector});
        m_columns->insertWidget(index, panel);
        break;
    }
    case Place::BookmarksPanel:
        m_body->addWidget(panel);
        break;
    }
    if (place == Place::Library)
        panel->setMinimumWidth(resultsWidth);
    else if (*slotOf(place).widthSetting)
        panel->setMinimumWidth(narrowestPanel);
    for (int column = 0; column < m_columns->count(); ++column) {
        const bool isLibrary = m_columns->widget(column) == this->panel(Place::Library);
        m_columns->setStretchFactor(column, isLibrary ? 1 : 0);
    }
    show();
    restoreWidths();
}

void KPWindowPanels::show()
{
    for (const Place place :
         {Place::CrumbBar, Place::BookmarkBar, Place::ActionBar, Place::SourceList, Place::TagPanel,
          Place::Locations, Place::Library, Place::Inspector}) {
        if (QWidget *shown = panel(place))
            shown->setVisible(isShown(place));
    }
    m_left->setVisible(isShown(Place::SourceList) || isShown(Place::TagPanel));
    m_body->setCurrentWidget(isShown(Place::BookmarksPanel) ? panel(Place::BookmarksPanel)
                                                            : m_columns);
    Q_EMIT changed();
}

static int savedWidth(Place place)
{
    const double width =
        UserDefaults::standard().doubleValue(QLatin1String(slotOf(place).widthSetting));
    const double usual = place == Place::Inspector ? inspectorWidth : 210;
    return static_cast<int>(width >= narrowestPanel && width < 4096 ? width : usual);
}

void KPWindowPanels::restoreWidths()
{
    QList<int> sizes;
    for (int column = 0; column < m_columns->count(); ++column) {
        const QWidget *widget = m_columns->widget(column);
        int size = 100'000; // the rest
        if (widget == m_left)
            size = savedWidth(Place::SourceList);
        for (const Place place : {Place::Locations, Place::Inspector}) {
            if (widget == panel(place))
                size = savedWidth(place);
        }
        sizes.append(size);
    }
    m_columns->setSizes(sizes);
    const double part = UserDefaults::standard().doubleValue(leftSplit);
    if (part > 0 && part < 1)
        m_left->setSizes({static_cast<int>(part * 1000), static_cast<int>((1 - part) * 1000)});
}

void KPWindowPanels::saveWidths() const
{
    UserDefaults &defaults = UserDefaults::standard();
    const auto save = [&defaults](Place place, int width) {
        defaults.setValue(QLatin1String(slotOf(place).widthSetting), PropertyValue::real(width));
    };
    if (m_left->isVisible()) {
        save(Place::SourceList, m_left->width());
        save(Place::TagPanel, m_left->width());
    }
    for (const Place place : {Place::Locations, Place::Inspector}) {
        if (isShown(place) && panel(place)->isVisible())
            save(place, panel(place)->width());
    }
    const QList<int> rows = m_left->sizes();
    if (rows.size() == 2 && rows.at(0) > 0 && rows.at(1) > 0)
        defaults.setValue(leftSplit,
                          PropertyValue::real(rows.at(0) / double(rows.at(0) + rows.at(1))));
}

int KPWindowPanels::widthOf(Place place) const
{
    if (place == Place::TagPanel)
        return m_left->isHidden() ? 0 : std::max(m_left->width(), narrowestPanel);
    return isShown(place) ? std::max(panel(place)->width(), narrowestPanel) : 0;
}

QSize KPWindowPanels::minimumWindowSize() const
{
    const int panels =
        widthOf(Place::TagPanel) + widthOf(Place::Locations) + widthOf(Place::Inspector);
    return {std::max(panels + resultsWidth, smallestWidth), smallestHeight};
}
