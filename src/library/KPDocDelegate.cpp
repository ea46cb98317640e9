#include "KPDocDelegate.h"

#include "KPDocIcons.h"
#include "KPFileType.h"
#include "KPLibraryModel.h"
#include "KPQuickLook.h"
#include "KPTagChips.h"
#include "XPPath.h"
#include "XPStars.h"

#include <QGuiApplication>
#include <QPainter>

static constexpr int largestIcon = 256;

KPDocDelegate::KPDocDelegate(const KPLibraryModel *model, const KPQuickLook *looks, QObject *parent)
    : QStyledItemDelegate(parent), m_model(model), m_looks(looks),
      m_layout(0.2, 800, QGuiApplication::font())
{
}

QSize KPDocDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return m_layout.cell();
}

static QColor transparent(QColor colour, float alpha)
{
    colour.setAlphaF(alpha);
    return colour;
}

void KPDocDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter->translate(option.rect.topLeft());
    paintFrame(painter, option);
    paintPicture(painter, option, index);
    paintText(painter, option, index);
    painter->restore();
}

void KPDocDelegate::paintFrame(QPainter *painter, const QStyleOptionViewItem &option) const
{
    const bool selected = option.state & QStyle::State_Selected;
    const bool hovered = option.state & QStyle::State_MouseOver;
    const bool focused = option.state & QStyle::State_HasFocus;
    if (!selected && !hovered && !focused)
        return;
    const bool active = option.state & QStyle::State_Active;
    const QColor accent =
        option.palette.color(active ? QPalette::Active : QPalette::Inactive, QPalette::Highlight);
    const QColor text = option.palette.color(QPalette::Text);
    painter->setBrush(selected  ? transparent(accent, 0.26F)
                      : hovered ? transparent(text, 0.06F)
                                : QColor(Qt::transparent));
    painter->setPen(focused ? QPen(accent, 2) : QPen(Qt::NoPen));
    painter->drawRoundedRect(QRectF(m_layout.frame()).adjusted(1, 1, -1, -1), 8, 8);
}

// Where something of that size sits in the square of a picture.
static QRectF placed(const QRect &square, const QSizeF &size)
{
    QRectF rect(QPointF(), size);
    rect.moveCenter(QRectF(square).center());
    return {rect.topLeft().toPoint(), size};
}

void KPDocDelegate::paintPicture(QPainter *painter, const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const
{
    KPDoc &document = *m_model->document(index.row());
    const QRect square = m_layout.picture();
    const QColor border = transparent(option.palette.color(QPalette::Text), 0.22F);
    if (!m_looks->draw(*painter, square, document, border).isNull())
        return;
    const auto look = m_looks->look(document);
    const QString uti =
        look.uti.isEmpty()
            ? KPFileType::preferredUTIForExtension(XPPath::extension(document.fsName()))
            : look.uti;
    const int side = std::min(square.width() * 4 / 5, largestIcon);
    KPDocIcons::forUTI(uti).paint(painter, placed(square, QSizeF(side, side)).toRect());
}

QString KPDocDelegate::elidedName(const QString &name, const QFontMetrics &metrics, int width)
{
    if (metrics.horizontalAdvance(name) <= width)
        return name;
    const QString extension = XPPath::extension(name);
    if (extension.isEmpty() || extension.size() > 8)
        return metrics.elidedText(name, Qt::ElideMiddle, width);
    // The last letters before the extension tell versions and numbers apart: they stay too.
    const QString tail = name.right(extension.size() + 4);
    const int room = width - metrics.horizontalAdvance(tail);
    const QString head = metrics.elidedText(name.chopped(tail.size()), Qt::ElideRight, room);
    return room > metrics.averageCharWidth() * 4 ? head + tail
                                                 : metrics.elidedText(name, Qt::ElideMiddle, width);
}

void KPDocDelegate::paintText(QPainter *painter, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const
{
    int line = 0;
    const QRect nameLine = m_layout.line(line++);
    const QFontMetrics titleMetrics(m_layout.titleFont());
    painter->setFont(m_layout.titleFont());
    painter->setPen(option.palette.color(QPalette::Text));
    painter->drawText(nameLine, Qt::AlignCenter | Qt::TextSingleLine,
                      elidedName(index.data().toString(), titleMetrics, nameLine.width()));

    painter->setFont(m_layout.tagFont());
    const QFontMetrics tagMetrics(m_layout.tagFont());
    const QStringList tags = index.data(KPLibraryModel::TagsRole).toStringList();
    if (!index.data(KPLibraryModel::ErrorRole).toString().isEmpty()) {
        painter->setPen(transparent(option.palette.color(QPalette::Text), 0.75F));
        painter->drawText(
            m_layout.line(line++), Qt::AlignCenter | Qt::TextSingleLine,
            tagMetrics.elidedText(qtTrId("KPTagsUnreadable"), Qt::ElideRight, nameLine.width()));
    } else if (!tags.isEmpty()) {
        KPTagChips::paint(painter, KPTagChips::layout(tags, m_layout.line(line++), tagMetrics),
                          option.palette);
    }
    if (const double rating = index.data(KPLibraryModel::RatingRole).toDouble(); rating > 0) {
        const QRect room = m_layout.line(line);
        const double side = tagMetrics.height();
        const double width = XPStars::width(side, static_cast<int>(std::ceil(rating)));
        XPStars::paint(painter,
                       {room.center().x() - width / 2 + 0.5,
                        room.top() + (room.height() - side) / 2, width, side},
                       rating, option.palette.color(QPalette::Highlight), false);
    }
}
