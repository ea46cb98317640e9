#include "KPSourceListDelegate.h"

#include "KPNavigationLook.h"
#include "KPSourceListModel.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QWidget>
#include <algorithm>

static constexpr int edge = 6; // of the selection to the edge of the list
static constexpr int markWidth = 14;
static constexpr int gap = 8;

// Of the room for rows: the scroll bar is not part of it.
static int widthOf(const QStyleOptionViewItem &option)
{
    const auto *view = qobject_cast<const QAbstractItemView *>(option.widget);
    return view ? view->viewport()->width() : option.rect.right();
}

namespace {

// Places are worked out from left to right and mirrored where people read the other way.
class Mirror
{
public:
    explicit Mirror(const QStyleOptionViewItem &option)
        : m_whole(0, option.rect.top(), widthOf(option), option.rect.height()),
          m_direction(option.direction)
    {
    }
    QRect operator()(const QRect &place) const
    {
        return QStyle::visualRect(m_direction, m_whole, place);
    }
    int operator()(Qt::Alignment alignment) const
    {
        return int(QStyle::visualAlignment(m_direction, alignment));
    }

private:
    const QRect m_whole;
    const Qt::LayoutDirection m_direction;
};

} // namespace

QSize KPSourceListDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return {120, std::max(KPNavigationLook::rowHeight, option.fontMetrics.height() + 6)};
}

static void paintMark(QPainter *painter, const QRect &place, bool isOpen, const QColor &colour,
                      Qt::LayoutDirection direction)
{
    const QPointF centre = QRectF(place).center();
    const double ahead = direction == Qt::RightToLeft ? -1.5 : 1.5;
    painter->setPen(QPen(colour, 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPolyline(isOpen
                              ? QPolygonF{centre + QPointF(-3, -1.5), centre + QPointF(0, 1.5),
                                          centre + QPointF(3, -1.5)}
                              : QPolygonF{centre + QPointF(-ahead, -3), centre + QPointF(ahead, 0),
                                          centre + QPointF(-ahead, 3)});
}

void KPSourceListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const
{
    const bool isSection = index.data(KPSourceListModel::IsSection).toBool();
    const QPalette &palette = option.palette;
    const bool isEnabled = option.state.testFlag(QStyle::State_Enabled);
    const QColor muted = KPNavigationLook::muted(palette);
    const Mirror placed(option);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRect row(edge, option.rect.top(), widthOf(option) - 2 * edge, option.rect.height());
    if (option.state.testFlag(QStyle::State_Selected) && !isSection) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(KPNavigationLook::chip(palette, true));
        painter->drawRoundedRect(QRectF(row).adjusted(0, 0.5, 0, -0.5), 6, 6);
    } else if (option.state.testFlag(QStyle::State_MouseOver) && isEnabled && !isSection) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(KPNavigationLook::quiet(palette));
        painter->drawRoundedRect(QRectF(row).adjusted(0, 0.5, 0, -0.5), 6, 6);
    }
    if (option.state.testFlag(QStyle::State_HasFocus) && option.widget->hasFocus()) {
        painter->setPen(QPen(palette.color(QPalette::Highlight), 1.5));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(QRectF(row).adjusted(1, 1.5, -1, -1.5), 6, 6);
    }

    QFont font = option.font;
    int left = placed(option.rect).left();
    if (isSection) {
        font.setPointSizeF(font.pointSizeF() * 0.88);
        font.setWeight(QFont::DemiBold);
        left = edge + gap;
    }
    const bool hasChildren = index.model()->hasChildren(index);
    const bool isOpen = option.state.testFlag(QStyle::State_Open);
    if (!isSection) {
        if (hasChildren)
            paintMark(painter, placed(QRect(left, row.top(), markWidth, row.height())), isOpen,
                      muted, option.direction);
        left += markWidth;
        const int size = KPNavigationLook::iconSize;
        const auto mode = isEnabled ? QIcon::Normal : QIcon::Disabled;
        index.data(Qt::DecorationRole)
            .value<QIcon>()
            .paint(painter, placed(QRect(left, row.top() + (row.height() - size) / 2, size, size)),
                   Qt::AlignCenter, mode);
        left += size + gap;
    }
    painter->setFont(font);
    const QFontMetrics metrics(font);
    const QString count = index.data(KPSourceListModel::CountText).toString();
    const int countWidth = count.isEmpty() ? 0 : metrics.horizontalAdvance(count) + gap;
    const QRect room(left, row.top(), row.right() - gap - countWidth - left, row.height());
    painter->setPen(isSection ? muted
                              : palette.color(isEnabled ? QPalette::Active : QPalette::Disabled,
                                              QPalette::WindowText));
    const QString text = index.data().toString();
    painter->drawText(placed(room), placed(Qt::AlignVCenter | Qt::AlignLeft) | Qt::TextSingleLine,
                      metrics.elidedText(text, Qt::ElideRight, room.width()));
    if (isSection && (!isOpen || option.state.testFlag(QStyle::State_MouseOver)))
        paintMark(painter,
                  placed(QRect(left + metrics.horizontalAdvance(text) + 4, row.top(), markWidth,
                               row.height())),
                  isOpen, muted, option.direction);
    painter->setPen(muted);
    painter->drawText(placed(row.adjusted(0, 0, -gap, 0)),
                      placed(Qt::AlignVCenter | Qt::AlignRight) | Qt::TextSingleLine, count);
    painter->restore();
}

void KPSourceListDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                                const QModelIndex &) const
{
    const Mirror placed(option);
    const int left = placed(option.rect).left() + markWidth + KPNavigationLook::iconSize + 4;
    editor->setGeometry(placed(
        QRect(left, option.rect.top(), widthOf(option) - left - edge, option.rect.height())));
}
