#include "XPSuggestionWindow.h"

#include "KPLook.h"
#include "XPPath.h"

#include <QHeaderView>
#include <QLocale>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

static constexpr int mostShown = 8;
static constexpr int narrowest = 220;

XPSuggestionWindow::XPSuggestionWindow(QWidget *field)
    : QFrame(field, Qt::ToolTip), m_field(field), m_list(new QTreeWidget)
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::StyledPanel);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(1, 1, 1, 1);
    column->addWidget(m_list);
    m_list->setColumnCount(2);
    m_list->setHeaderHidden(true);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setAllColumnsShowFocus(true);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setAccessibleName(qtTrId("KPTagSuggestions"));
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    connect(m_list, &QTreeWidget::itemPressed, this, [this](const QTreeWidgetItem *item) {
        Q_EMIT taken(item->data(0, Qt::UserRole).toString());
    });
}

int XPSuggestionWindow::rowHeight() const
{
    constexpr int air = 8;
    return fontMetrics().height() + air;
}

void XPSuggestionWindow::showSuggestions(const QList<XPTagSuggestion> &suggestions,
                                         const QRect &word)
{
    m_isChosen = false;
    m_list->clear();
    for (const auto &each : suggestions.first(std::min<qsizetype>(mostShown, suggestions.size()))) {
        auto *item = new QTreeWidgetItem(m_list);
        item->setText(0, XPPath::printable(each.tag));
        item->setData(0, Qt::UserRole, each.tag);
        if (each.count > 0)
            item->setText(1, QLocale().toString(each.count));
        item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        item->setForeground(1, KPLook::muted(palette()));
        item->setSizeHint(0, QSize(0, rowHeight()));
    }
    if (m_list->topLevelItemCount() == 0) {
        hide();
        return;
    }
    m_list->setCurrentItem(m_list->topLevelItem(0));
    place(word);
    show();
}

void XPSuggestionWindow::place(const QRect &word)
{
    const QSize wanted(std::max(narrowest, m_field->width() / 2),
                       rowHeight() * m_list->topLevelItemCount() + 2 * frameWidth() + 2);
    resize(wanted);
    QPoint at = m_field->mapToGlobal(word.bottomLeft()) + QPoint(0, 4);
    const QScreen *screen = m_field->screen();
    const QRect room = screen ? screen->availableGeometry() : QRect(at, wanted);
    if (at.y() + height() > room.bottom())
        at.setY(m_field->mapToGlobal(word.topLeft()).y() - 4 - height());
    at.setX(std::clamp(at.x(), room.left(), std::max(room.left(), room.right() - width())));
    move(at);
}

QString XPSuggestionWindow::current() const
{
    const QTreeWidgetItem *item = isVisible() ? m_list->currentItem() : nullptr;
    return item ? item->data(0, Qt::UserRole).toString() : QString();
}

void XPSuggestionWindow::choose(int step)
{
    const int row = m_list->indexOfTopLevelItem(m_list->currentItem()) + (m_isChosen ? step : 0);
    m_isChosen = true;
    m_list->setCurrentItem(
        m_list->topLevelItem(std::clamp(row, 0, m_list->topLevelItemCount() - 1)));
}
