#include "KPDocsView.h"

#include "KPArrangedDocs.h"
#include "KPDocsKeys.h"
#include "KPDocsViewAccessible.h"
#include "KPEmptyPlace.h"
#include "KPGroupStates.h"
#include "KPNameField.h"
#include "KPQuickLook.h"
#include "UserDefaults.h"
#include "XPAccessibleItems.h"

#include <QEvent>
#include <QFocusEvent>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>
#include <cmath>

KPDocsView::KPDocsView(KPArrangedDocs &docs, KPQuickLook &pictures, KPDocsKeys &keys,
                       QWidget *parent)
    : QAbstractScrollArea(parent), m_docs(docs), m_pictures(pictures), m_keys(keys),
      m_painter(pictures, palette(), font()), m_empty(new KPEmptyPlace(viewport())),
      m_nameField(new KPNameField(viewport())), m_wantedWidth(KPDocsGeometry::smallestWidth)
{
    KPDocsViewAccessible::install();
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName(qtTrId("KPDocuments"));
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setAcceptDrops(true);
    setAcceptDrops(true);
    m_asking.setSingleShot(true);
    m_asking.setInterval(0);
    connect(&m_asking, &QTimer::timeout, this, &KPDocsView::askForPictures);
    connect(&pictures, &KPQuickLook::looksReady, this, &KPDocsView::showPictures);
    connect(&docs, &KPArrangedDocs::arranged, this, &KPDocsView::takeArrangement);
    connect(&docs, &KPArrangedDocs::selectionChanged, viewport(), qOverload<>(&QWidget::update));
    connect(&docs, &KPArrangedDocs::changed, this, [this] {
        viewport()->update();
        m_asking.start();
    });
    connect(&docs, &KPArrangedDocs::currentChanged, this,
            [this](int row) { XPAccessible::tellFocused(*this, row); });
    connect(&docs, &KPArrangedDocs::selectionChanged, this,
            [this] { KPDocsViewAccessible::tellSelection(*this); });
    connect(m_nameField, &KPNameField::renamed, this, &KPDocsView::renameRequested);
    connect(m_nameField, &KPNameField::ended, this, [this] {
        setFocus();
        viewport()->update();
    });
    updateSettings();
}

KPDocsView::~KPDocsView() = default;

// Sizes.

void KPDocsView::setThumbnailWidthUnitless(double zoom)
{
    setThumbnailWidth(KPDocsGeometry::widthForZoom(zoom));
}

void KPDocsView::setThumbnailWidth(double width)
{
    m_wantedWidth = width;
    recalculateFrameBasedOnThumbnailSize(held());
}

void KPDocsView::setGrouped(bool isGrouped)
{
    if (isGrouped == m_isGrouped)
        return;
    m_isGrouped = isGrouped;
    recalculateFrameBasedOnThumbnailSize(held());
}

void KPDocsView::updateSettings()
{
    m_painter.update(palette(), font());
    m_empty->setColours(m_painter.colours().text);
    m_geometry.setTextLines(m_painter.textLines(), m_painter.textScale());
    recalculateFrameBasedOnThumbnailSize(held());
}

void KPDocsView::giveGroups()
{
    const KPResultGroups *groups = m_isGrouped ? m_docs.groups() : nullptr;
    if (!groups || groups->runs.empty()) {
        m_geometry.setCount(m_docs.count());
        return;
    }
    std::vector<KPDocsGeometry::Group> laidOut;
    laidOut.reserve(groups->runs.size());
    for (const KPResultGroups::Run &run : groups->runs)
        laidOut.push_back(
            {.count = run.count, .isOpen = KPGroupStates::isOpen(groups->key, *run.group)});
    m_geometry.setGroups(std::move(laidOut));
}

// The document that is to stay where it is: the current one when it is in sight, else the first.
KPDocsView::Held KPDocsView::held() const
{
    const auto place = [this](int row) { return visibleRect(row); };
    const int count = std::min(m_docs.count(), static_cast<int>(m_geometry.count()));
    const int current = m_docs.selection().current();
    if (current >= 0 && current < count && QRectF(viewport()->rect()).intersects(place(current)))
        return {m_docs.at(current), place(current).top(), offset() == 0};
    if (offset() == 0 || count == 0)
        return {};
    const auto first = static_cast<int>(m_geometry.hit(QPointF(0, offset())).item);
    return first < count ? Held{m_docs.at(first), place(first).top(), false} : Held{};
}

void KPDocsView::recalculateFrameBasedOnThumbnailSize(const Held &held)
{
    // The room of the scroll bar is left free always: columns must not jump with the results.
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    const int wide = viewport()->width() - (verticalScrollBar()->isVisible() ? 0 : bar);
    m_geometry.setRoom(QSizeF(wide, viewport()->height()));
    giveGroups();
    const bool toFit = UserDefaults::standard().boolValue(QStringLiteral("KPSizeThumbnailsToFit"));
    m_geometry.setThumbnailWidth(m_wantedWidth, toFit);
    m_painter.setThumbnailWidth(m_geometry.thumbnailSize().width());
    updateScrollBar();
    const int row = held.doc ? m_docs.rowOf(held.doc) : -1;
    if (row >= 0 && row < m_geometry.count() && !m_geometry.docRect(row).isNull()) {
        const QRectF rect = m_geometry.docRect(row);
        // Whole in sight, where it was as far as that goes.
        const double highest = m_geometry.isGrouped() ? KPDocsGeometry::headerHeight : 0;
        const double lowest = std::max(highest, viewport()->height() - rect.height() - 1);
        const double top = std::clamp(held.top, highest, lowest);
        const bool staysAtTop = held.isAtTop && rect.bottom() <= viewport()->height();
        verticalScrollBar()->setValue(staysAtTop ? 0
                                                 : static_cast<int>(std::floor(rect.top() - top)));
    }
    m_hovered = -1;
    viewport()->update();
    m_asking.start();
}

void KPDocsView::updateScrollBar()
{
    QScrollBar *bar = verticalScrollBar();
    const int height = viewport()->height();
    bar->setPageStep(height);
    bar->setSingleStep(std::max(24, static_cast<int>(m_geometry.cellHeight() / 4)));
    bar->setRange(0, std::max(0, static_cast<int>(std::ceil(m_geometry.height())) - height));
}

// Before the new rows are there, rows and geometry are still of one arrangement: what was first
// then is known from the last time that it was looked at.
void KPDocsView::takeArrangement()
{
    if (m_nameField->doc() && m_docs.rowOf(m_nameField->doc()) < 0)
        m_nameField->stop();
    recalculateFrameBasedOnThumbnailSize(m_top);
    m_empty->place(viewport()->rect(), m_docs.count() == 0);
    KPDocsViewAccessible::tellArranged(*this);
}

void KPDocsView::resizeEvent(QResizeEvent *event)
{
    // Places are still those of the old room.
    const Held before = held();
    QAbstractScrollArea::resizeEvent(event);
    recalculateFrameBasedOnThumbnailSize(before);
    m_empty->place(viewport()->rect(), m_docs.count() == 0);
}

void KPDocsView::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    const auto type = event->type();
    if (type == QEvent::FontChange || type == QEvent::PaletteChange || type == QEvent::StyleChange)
        updateSettings();
}

void KPDocsView::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    m_cameByKeyboard = event->reason() == Qt::TabFocusReason ||
                       event->reason() == Qt::BacktabFocusReason ||
                       event->reason() == Qt::ShortcutFocusReason;
    viewport()->update();
    XPAccessible::tellFocused(*this, m_docs.selection().current());
}

void KPDocsView::focusOutEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusOutEvent(event);
    m_cameByKeyboard = false;
    viewport()->update();
}

// Scrolling.

int KPDocsView::offset() const
{
    return verticalScrollBar()->value();
}

QPointF KPDocsView::toContents(const QPointF &point) const
{
    return point + QPointF(0, offset());
}

QRectF KPDocsView::visibleRect(int row) const
{
    return m_geometry.docRect(row).translated(0, -offset());
}

int KPDocsView::rowAt(const QPoint &point) const
{
    const auto item = m_geometry.itemUnder(toContents(point));
    return item ? static_cast<int>(*item) : -1;
}

int KPDocsView::rowNear(const QPoint &point) const
{
    if (headerAt(point) >= 0)
        return -1;
    const auto item = m_geometry.itemUnder(toContents(point), m_geometry.cellWidth() / 2);
    return item ? static_cast<int>(*item) : -1;
}

QRectF KPDocsView::pictureRect(int row) const
{
    const QRectF doc = visibleRect(row);
    return m_painter.pictureRect({doc.topLeft(), QSizeF(doc.width(), doc.width())}, *m_docs.at(row),
                                 devicePixelRatioF());
}

void KPDocsView::scrollContentsBy(int dx, int dy)
{
    // Headers that stay in sight are drawn anew.
    if (m_geometry.isGrouped() || m_nameField->doc())
        viewport()->update();
    else
        viewport()->scroll(dx, dy);
    if (m_nameField->doc())
        m_nameField->move(m_nameField->pos() + QPoint(0, dy));
    m_asking.start();
}

void KPDocsView::scrollToRow(int row)
{
    if (row < 0 || row >= m_geometry.count())
        return;
    QRectF rect = m_geometry.frameRect(row);
    double above = 0;
    if (const int group = m_geometry.groupOfItem(row); group >= 0) {
        above = KPDocsGeometry::headerHeight;
        if (rect.isNull())
            rect = m_geometry.headerRect(group);
    }
    const double height = viewport()->height();
    double top = offset();
    if (rect.bottom() > top + height)
        top = rect.bottom() - height;
    if (rect.top() - above < top)
        top = rect.top() - above;
    verticalScrollBar()->setValue(static_cast<int>(std::floor(top)));
}

// Pictures.

void KPDocsView::askForPictures()
{
    const int side =
        static_cast<int>(std::ceil(m_geometry.thumbnailSize().width() * devicePixelRatioF()));
    const QRectF page(0, offset(), viewport()->width(), viewport()->height());
    const auto wanted = [&](const QRectF &rect) {
        std::vector<KPQuickLook::Wanted> result;
        for (const KPDocsGeometry::Range &run : m_geometry.itemsIn(rect)) {
            for (qsizetype item = run.first; item <= run.last && item < m_docs.count(); ++item)
                result.push_back({m_docs.at(static_cast<int>(item)), side});
        }
        return result;
    };
    m_pictures.want(this, wanted(page), wanted(page.translated(0, page.height())));
    m_top = held();
}

// A few at a time, and only those in sight have a place.
void KPDocsView::showPictures(const QList<KPDoc *> &docs)
{
    const QRectF page(0, offset(), viewport()->width(), viewport()->height());
    for (const KPDocsGeometry::Range &run : m_geometry.itemsIn(page)) {
        for (qsizetype item = run.first; item <= run.last && item < m_docs.count(); ++item) {
            if (docs.contains(m_docs.at(static_cast<int>(item))))
                updateRow(static_cast<int>(item));
        }
    }
}

void KPDocsView::updateRow(int row)
{
    if (row < 0 || row >= m_geometry.count())
        return;
    const QRectF frame = m_geometry.frameRect(row).translated(0, -offset());
    viewport()->update(frame.toAlignedRect().adjusted(-2, -2, 2, 2));
}

bool KPDocsView::editName(int row)
{
    if (row < 0 || row >= m_geometry.count() || m_docs.at(row)->isGone())
        return false;
    scrollToRow(row);
    const QRectF doc = visibleRect(row);
    const QRectF frame = m_geometry.frameRect(row).translated(0, -offset());
    QRectF place = m_painter.titleRect(doc, frame);
    if (place.isNull())
        place = QRectF(frame.left(), doc.bottom() - 20, frame.width(), 20);
    m_nameField->setFont(m_painter.titleFont());
    const int height = m_nameField->sizeHint().height();
    const int width = std::max(static_cast<int>(place.width()) + 8, 160);
    QRect room(0, 0, std::min(width, viewport()->width()), height);
    room.moveCenter(place.center().toPoint());
    room.moveLeft(std::clamp(room.left(), 0, std::max(0, viewport()->width() - room.width())));
    m_nameField->setGeometry(room);
    m_nameField->start(m_docs.at(row));
    viewport()->update();
    return true;
}
