#pragma once

#include "KPCloudColours.h"
#include "XPCloudLayout.h"
#include "XPCloudView.h"

#include <QFont>
#include <QHash>

// The measures of a widget's font, without hinting, so that they grow evenly with the size. Sizes
// are in the points of a font of 13, the ordinary one: a larger application font enlarges all.
// Threads: main.
class XPTextCloudFonts : public XPCloudFonts
{
public:
    void setFont(const QFont &font, double dotsPerInch);
    QFont font(double size) const;
    double width(const QString &text, double size) const override;
    double ascent(double size) const override { return m_ascent * size; }
    double descent(double size) const override { return m_descent * size; }

private:
    QFont m_font;
    double m_pointsAPixel = 0.75;
    double m_scale = 1;
    double m_ascent = 1; // of a font of size 1, as the widths
    double m_descent = 0;
    mutable QHash<QString, double> m_widths;
};

// A cloud of words. Threads: main.
class XPTextCloudView : public XPCloudView
{
    Q_OBJECT

public:
    explicit XPTextCloudView(XPCloudViewDelegate *delegate, QWidget *parent = nullptr);

    // The settings "XPDrawCloudItemsSingleColumn" and "XPDrawCloudItemsBlack" are read anew.
    void setItems(const QList<XPCloudItem> &items);
    // For whoever tries how many items fit: measures as the view does, at its present width.
    XPCloudLayout layoutForMeasuring() const;

    double minRelevance() const { return m_layout.minRelevance(); }
    double maxRelevance() const { return m_layout.maxRelevance(); }
    double requiredHeightToFitAllTags() const { return m_layout.requiredHeightToFitAllTags(); }
    double lineHeight() const { return m_layout.lineHeight(); }
    static constexpr double noItemsHeight = XPCloudLayout::noItemsHeight;
    bool oneWordPerLine() const { return m_layout.oneWordPerLine(); }

    const QList<XPCloudItem> &drawnItems() const override { return m_layout.drawnItems(); }
    std::optional<qsizetype> pointToItem(QPointF point) const override;
    QRectF pointToItemRect(qsizetype item) const override { return m_layout.rects()[item]; }
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void takeFont();
    void paintItem(QPainter &painter, qsizetype item) const;
    QColor colourOf(qsizetype item) const;

    XPTextCloudFonts m_fonts;
    XPCloudLayout m_layout{&m_fonts};
    KPCloudColours::Parameters m_colours;
    bool m_black = false;
};
