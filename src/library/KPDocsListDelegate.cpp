#include "KPDocsListDelegate.h"

#include "KPDocIcons.h"
#include "KPElidedName.h"
#include "KPLibraryModel.h"
#include "KPTagChips.h"
#include "XPStars.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

static constexpr int iconSide = 16;
static constexpr int starSide = 14;

KPDocsListDelegate::KPDocsListDelegate(const KPLibraryModel &model, QObject *parent)
    : QStyledItemDelegate(parent), m_model(model), m_colours(QApplication::palette())
{
}

QSize KPDocsListDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return {80, std::max(rowHeight, option.fontMetrics.height() + padding)};
}

int KPDocsListDelegate::starsAt(int x)
{
    return std::clamp((x - padding) / starSide + 1, 1, XPStars::count);
}

static void paintFlag(QPainter &painter, const QRectF &cell, const QColor &colour, bool isSet)
{
    const QPointF at(cell.center() + QPointF(-5, -6));
    QPainterPath cloth(at);
    cloth.lineTo(at + QPointF(10, 1));
    cloth.lineTo(at + QPointF(7.5, 4));
    cloth.lineTo(at + QPointF(10, 7));
    cloth.lineTo(at + QPointF(0, 7));
    cloth.closeSubpath();
    painter.setPen(QPen(colour, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(isSet ? colour : QColor(Qt::transparent));
    painter.drawPath(cloth);
    painter.drawLine(at, at + QPointF(0, 12));
}

void KPDocsListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                               const QModelIndex &index) const
{
    const KPDoc &doc = *m_model.document(index.row());
    const bool isSelected = option.state & QStyle::State_Selected;
    const bool isHovered = option.state & QStyle::State_MouseOver;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isSelected || isHovered)
        painter->fillRect(option.rect, isSelected ? m_colours.selection : m_colours.hover);
    QRect cell = option.rect.adjusted(padding, 0, -padding, 0);
    const int column = index.column();
    if (column == KPLibraryModel::FlagColumn) {
        const bool isFlagged = doc.isFlagged();
        if (isFlagged || isHovered)
            paintFlag(*painter, option.rect, isFlagged ? m_colours.flag : m_colours.line,
                      isFlagged);
    } else if (column == KPLibraryModel::RatingColumn) {
        const QRectF stars(cell.left(), cell.center().y() - starSide / 2.0 + 0.5, cell.width(),
                           starSide);
        XPStars::paint(painter, stars, doc.rating(), m_colours.star, isHovered);
    } else if (column == KPLibraryModel::TagsColumn &&
               index.data(KPLibraryModel::ErrorRole).toString().isEmpty()) {
        const QStringList tags = index.data(KPLibraryModel::TagsRole).toStringList();
        auto chips = KPTagChips::layout(tags, cell, option.fontMetrics);
        // Chips are centred; a column reads from its left.
        const int left = chips.isEmpty() ? 0 : chips.first().rect.left() - cell.left();
        for (KPTagChips::Chip &chip : chips)
            chip.rect.translate(-left, 0);
        painter->setFont(option.font);
        KPTagChips::paint(painter, chips, m_colours.palette);
    } else {
        const bool isName = column == KPLibraryModel::NameColumn;
        if (isName) {
            const QRect icon(cell.left(), cell.center().y() - iconSide / 2 + 1, iconSide, iconSide);
            KPDocIcons::forUTI(doc.isGone() ? QString() : doc.fileType()).paint(painter, icon);
            cell.setLeft(icon.right() + padding);
        }
        const QString text = index.data().toString();
        const auto alignment = Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt());
        painter->setFont(option.font);
        painter->setLayoutDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
        painter->setPen(isName ? m_colours.text : m_colours.muted);
        painter->drawText(cell,
                          static_cast<int>(alignment | Qt::AlignVCenter | Qt::AlignAbsolute) |
                              Qt::TextSingleLine,
                          kpElidedName(text, option.fontMetrics, cell.width()));
    }
    painter->restore();
}
