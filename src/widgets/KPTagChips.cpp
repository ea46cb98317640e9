#include "KPTagChips.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

static constexpr int inside = 6;  // beside a chip's text
static constexpr int between = 4; // neighbours

static int width(const QString &text, const QFontMetrics &metrics)
{
    return metrics.horizontalAdvance(text) + 2 * inside;
}

// The first `count` tags and, when tags are left over, their number.
static QStringList shown(const QStringList &tags, qsizetype count)
{
    QStringList texts = tags.first(count);
    if (count < tags.size())
        texts.append(QStringLiteral("+%L1").arg(tags.size() - count));
    return texts;
}

static int lineWidth(const QStringList &texts, const QFontMetrics &metrics)
{
    int sum = -between;
    for (const QString &text : texts)
        sum += width(text, metrics) + between;
    return sum;
}

QList<KPTagChips::Chip> KPTagChips::layout(const QStringList &tags, const QRect &line,
                                           const QFontMetrics &metrics)
{
    if (tags.isEmpty())
        return {};
    qsizetype count = 1;
    while (count < tags.size() && lineWidth(shown(tags, count + 1), metrics) <= line.width())
        ++count;
    QStringList texts = shown(tags, count);
    if (const int over = lineWidth(texts, metrics) - line.width(); over > 0)
        texts.first() = metrics.elidedText(texts.first(), Qt::ElideRight,
                                           metrics.horizontalAdvance(texts.first()) - over);

    const int height = std::min(line.height() - 2, metrics.height() + 2);
    int left = line.left() + (line.width() - lineWidth(texts, metrics)) / 2;
    QList<Chip> chips;
    for (const QString &text : texts) {
        const int wide = width(text, metrics);
        chips.append({text, {left, line.top() + (line.height() - height) / 2, wide, height}});
        left += wide + between;
    }
    return chips;
}

void KPTagChips::paint(QPainter *painter, const QList<Chip> &chips, const QPalette &palette)
{
    QColor fill = palette.color(QPalette::Highlight);
    fill.setAlphaF(0.18F);
    for (const Chip &chip : chips) {
        const double radius = chip.rect.height() / 2.0;
        painter->setPen(Qt::NoPen);
        painter->setBrush(fill);
        painter->drawRoundedRect(chip.rect, radius, radius);
        painter->setPen(palette.color(QPalette::Text));
        painter->drawText(chip.rect, Qt::AlignCenter | Qt::TextSingleLine, chip.text);
    }
}
