#pragma once

#include "XPNotificationCenter.h"

#include <QWidget>
#include <array>
#include <vector>

class QSplitter;
class QStackedWidget;
class QVBoxLayout;

// The places of the main window below its toolbar. Each has a setting that says whether the user
// wants it; it is shown when he does and something stands in it.
//
//   crumb bar
//   bookmark bar        KPBookmarkBarShown
//   action bar          KPActionBarShown
//   source list | locations               | library | inspector
//   tag panel   | KPShowLocationsPanel    |         | KPShowInspectorPanel
//   KPShowKeywordsPanel
//
// The bookmarks panel (KPShowBookmarksPanel) takes the place of everything below the bars.
// Widths are settings: KPSourceListWidth, the same as KPKeywordsAreaWidth; KPLocationsAreaWidth;
// KPBuiltinInspectorWidth. Threads: main.
class KPWindowPanels : public QWidget
{
    Q_OBJECT

public:
    enum class Place {
        CrumbBar,
        BookmarkBar,
        ActionBar,
        SourceList,
        TagPanel,
        Locations,
        Library,
        Inspector,
        BookmarksPanel
    };
    static constexpr int placeCount = 9;

    explicit KPWindowPanels(QWidget *parent = nullptr);

    // Puts the widget, owned from now on, into the place; what was there goes.
    void addPanel(Place place, QWidget *panel);
    bool hasPanel(Place place) const;
    QWidget *panel(Place place) const;
    bool isShown(Place place) const;
    // Writes the setting.
    void setShown(Place place, bool isShown);
    void toggle(Place place) { setShown(place, !isShown(place)); }

    // What the window may not be made smaller than.
    QSize minimumWindowSize() const;
    void saveWidths() const;

Q_SIGNALS:
    void changed(); // something was shown, hidden or moved

private:
    QWidget *&slot(Place place) { return m_panels[static_cast<std::size_t>(place)]; }
    void makeColumns();
    void observe();
    void show();
    void restoreWidths();
    int widthOf(Place place) const;

    std::array<QWidget *, placeCount> m_panels{};
    QVBoxLayout *m_bars;
    QStackedWidget *m_body;
    QSplitter *m_columns;
    QSplitter *m_left;
    std::vector<XPObservation> m_observations;
};
