#include "XPFlowLayout.h"

#include <QWidget>
#include <algorithm>

XPFlowLayout::XPFlowLayout(QWidget *parent, int spacing) : QLayout(parent)
{
    setSpacing(spacing);
    setContentsMargins(0, 0, 0, 0);
}

XPFlowLayout::~XPFlowLayout()
{
    qDeleteAll(m_items);
}

void XPFlowLayout::insertWidget(int index, QWidget *widget)
{
    addChildWidget(widget);
    m_items.insert(index, new QWidgetItem(widget));
    invalidate();
}

QLayoutItem *XPFlowLayout::takeAt(int index)
{
    return index >= 0 && index < m_items.size() ? m_items.takeAt(index) : nullptr;
}

int XPFlowLayout::heightForWidth(int width) const
{
    return arrange({0, 0, width, 0}, false);
}

QSize XPFlowLayout::minimumSize() const
{
    QSize size;
    for (const QLayoutItem *item : m_items)
        size = size.expandedTo(item->minimumSize());
    const QMargins margins = contentsMargins();
    return size + QSize(margins.left() + margins.right(), margins.top() + margins.bottom());
}

void XPFlowLayout::setGeometry(const QRect &rect)
{
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

int XPFlowLayout::arrange(const QRect &rect, bool move) const
{
    const QRect room = rect.marginsRemoved(contentsMargins());
    QPoint at = room.topLeft();
    int lineHeight = 0;
    for (QLayoutItem *item : m_items) {
        QSize size = item->sizeHint();
        size.setWidth(std::min(size.width(), room.width()));
        if (at.x() > room.left() && at.x() + size.width() > room.left() + room.width()) {
            at = {room.left(), at.y() + lineHeight + spacing()};
            lineHeight = 0;
        }
        if (item == m_items.last() && item->expandingDirections().testFlag(Qt::Horizontal))
            size.setWidth(room.left() + room.width() - at.x());
        if (move)
            item->setGeometry({at, size});
        at.rx() += size.width() + spacing();
        lineHeight = std::max(lineHeight, size.height());
    }
    const QMargins margins = contentsMargins();
    return at.y() + lineHeight - room.top() + margins.top() + margins.bottom();
}
