#include "KPDocsView.h"

#include "KPBadgeCache.h"
#include "KPDocDelegate.h"
#include "KPDocIcons.h"
#include "KPLibraryModel.h"
#include "KPQuickLook.h"
#include "XPFileUrls.h"

#include <QDrag>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QToolButton>
#include <algorithm>
#include <cmath>

KPDocsView::KPDocsView(KPLibraryModel *model, KPQuickLook *looks, QWidget *parent)
    : QListView(parent), m_model(model), m_looks(looks),
      m_delegate(new KPDocDelegate(model, looks, this)), m_layout(m_zoom, 800, font()),
      m_remedy(new QToolButton(viewport()))
{
    setModel(model);
    setItemDelegate(m_delegate);
    setFlow(QListView::LeftToRight);
    setWrapping(true);
    setUniformItemSizes(true);
    setResizeMode(QListView::Adjust);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionRectVisible(true);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // columns must not jump with the results
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setDefaultDropAction(Qt::CopyAction);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setMouseTracking(true);
    setAccessibleName(qtTrId("KPDocuments"));
    m_asking.setSingleShot(true);
    m_asking.setInterval(0);
    connect(&m_asking, &QTimer::timeout, this, &KPDocsView::askForLooks);
    connect(looks, &KPQuickLook::looksReady, this, &KPDocsView::showLooks);
    connect(model, &QAbstractItemModel::dataChanged, &m_asking, qOverload<>(&QTimer::start));
    connect(model, &QAbstractItemModel::rowsRemoved, this, &KPDocsView::selectionMoved);
    connect(model, &QAbstractItemModel::modelReset, this, &KPDocsView::selectionMoved);
    m_remedy->setToolButtonStyle(Qt::ToolButtonTextOnly);
    m_remedy->hide();
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(model, signal, this, &KPDocsView::placeRemedy);
    connect(model, &QAbstractItemModel::modelReset, this, &KPDocsView::placeRemedy);
    layOut();
}

void KPDocsView::setZoom(double zoom)
{
    m_zoom = std::clamp(zoom, 0.0, 1.0);
    const QModelIndex top = indexAt({m_layout.cell().width() / 2, m_layout.cell().height() / 2});
    layOut();
    if (top.isValid() && verticalScrollBar()->value() > 0)
        scrollTo(top, QAbstractItemView::PositionAtTop);
}

void KPDocsView::layOut()
{
    m_layout = KPDocCellLayout(m_zoom, viewport()->width(), font());
    m_delegate->setLayout(m_layout);
    if (gridSize() != m_layout.cell())
        setGridSize(m_layout.cell());
    verticalScrollBar()->setSingleStep(std::max(24, m_layout.cell().height() / 4));
    viewport()->update();
    m_asking.start();
}

void KPDocsView::resizeEvent(QResizeEvent *event)
{
    layOut();
    placeRemedy();
    QListView::resizeEvent(event);
}

void KPDocsView::changeEvent(QEvent *event)
{
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        layOut();
}

void KPDocsView::scrollContentsBy(int dx, int dy)
{
    QListView::scrollContentsBy(dx, dy);
    m_asking.start();
}

void KPDocsView::updateGeometries()
{
    QListView::updateGeometries();
    verticalScrollBar()->setSingleStep(std::max(24, m_layout.cell().height() / 4));
    m_asking.start();
}

// Pictures.

void KPDocsView::askForLooks()
{
    const int side = static_cast<int>(std::ceil(m_layout.thumbnail() * devicePixelRatioF()));
    const QModelIndex first = indexAt({m_layout.cell().width() / 2, 1});
    std::vector<KPQuickLook::Wanted> visible;
    std::vector<KPQuickLook::Wanted> next; // as many again
    for (int row = first.row(); first.isValid() && row < m_model->rowCount(); ++row) {
        const bool isVisible = visualRect(m_model->index(row)).top() <= viewport()->height();
        if (!isVisible && next.size() >= visible.size())
            break;
        (isVisible ? visible : next).push_back({m_model->document(row), side});
    }
    m_looks->want(this, std::move(visible), std::move(next));
}

void KPDocsView::showLooks(const QList<KPDoc *> &docs)
{
    for (const KPDoc *doc : docs)
        update(m_model->indexForPath(doc->filePath()));
}

// Where title, hint and button stand in the middle of the empty view.
struct KPDocsView::EmptyLayout
{
    QFont titleFont;
    QRect title;
    QRect hint;
};

KPDocsView::EmptyLayout KPDocsView::emptyLayout() const
{
    EmptyLayout layout{font(), {}, {}};
    layout.titleFont.setPointSizeF(font().pointSizeF() * 1.5);
    const QRect room = viewport()->rect().adjusted(24, 24, -24, -24);
    const int titleHeight = QFontMetrics(layout.titleFont).lineSpacing();
    layout.title = {room.left(), room.center().y() - titleHeight * 3 / 2, room.width(),
                    titleHeight};
    const QRect below(room.left(), layout.title.bottom() + 8, room.width(), room.height() / 2);
    layout.hint = fontMetrics().boundingRect(
        below, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_emptyHint);
    return layout;
}

void KPDocsView::setEmptyText(const QString &title, const QString &hint, QAction *remedy)
{
    m_emptyTitle = title;
    m_emptyHint = hint;
    if (m_remedy->defaultAction() && m_remedy->defaultAction() != remedy)
        m_remedy->removeAction(m_remedy->defaultAction());
    if (remedy)
        m_remedy->setDefaultAction(remedy);
    placeRemedy();
    viewport()->update();
}

void KPDocsView::placeRemedy()
{
    const bool isWanted = m_remedy->defaultAction() && m_model->rowCount() == 0;
    m_remedy->setVisible(isWanted);
    if (!isWanted)
        return;
    m_remedy->resize(m_remedy->sizeHint() + QSize(24, 8));
    const EmptyLayout layout = emptyLayout();
    m_remedy->move(layout.title.center().x() - m_remedy->width() / 2, layout.hint.bottom() + 16);
}

void KPDocsView::paintEmpty(QPainter *painter) const
{
    const EmptyLayout layout = emptyLayout();
    painter->setPen(palette().color(QPalette::Text));
    painter->setFont(layout.titleFont);
    painter->drawText(layout.title, Qt::AlignCenter, m_emptyTitle);
    QColor quiet = palette().color(QPalette::Text);
    quiet.setAlphaF(0.7F);
    painter->setPen(quiet);
    painter->setFont(font());
    painter->drawText(layout.hint, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_emptyHint);
}

void KPDocsView::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    if (m_model->rowCount() == 0) {
        QPainter painter(viewport());
        paintEmpty(&painter);
    }
}

// The user.

QStringList KPDocsView::selectedPaths() const
{
    QModelIndexList indexes = selectionModel()->selectedIndexes();
    std::sort(indexes.begin(), indexes.end());
    QStringList paths;
    paths.reserve(indexes.size());
    for (const QModelIndex &index : std::as_const(indexes))
        paths.append(m_model->document(index.row())->filePath());
    return paths;
}

qsizetype KPDocsView::selectedCount() const
{
    qsizetype count = 0;
    for (const QItemSelectionRange &range : selectionModel()->selection())
        count += range.height();
    return count;
}

void KPDocsView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QListView::selectionChanged(selected, deselected);
    Q_EMIT selectionMoved();
}

void KPDocsView::keyPressEvent(QKeyEvent *event)
{
    const bool plain = !(event->modifiers() & ~Qt::KeypadModifier);
    if (plain && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        Q_EMIT openRequested();
    else if (plain && event->key() >= Qt::Key_0 && event->key() <= Qt::Key_5)
        Q_EMIT ratingTyped(event->key() - Qt::Key_0);
    else
        QListView::keyPressEvent(event);
}

void KPDocsView::mouseDoubleClickEvent(QMouseEvent *event)
{
    QListView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton && indexAt(event->pos()).isValid())
        Q_EMIT openRequested();
}

void KPDocsView::wheelEvent(QWheelEvent *event)
{
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QListView::wheelEvent(event);
        return;
    }
    Q_EMIT zoomRequested(event->angleDelta().y() > 0 ? 1 : -1);
    event->accept();
}

// The picture at hand, with the number of documents where there are several.
QPixmap KPDocsView::dragPicture(const KPDoc &doc, qsizetype count) const
{
    static constexpr int side = 96;
    static constexpr int badgeHeight = 22;
    const double ratio = devicePixelRatioF();
    QPixmap pixmap(QSize(side, side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRectF square(0, 0, side, side);
    if (m_looks->draw(painter, square, doc, palette().color(QPalette::Mid)).isNull())
        KPDocIcons::forUTI(doc.fileType()).paint(&painter, square.toRect());
    if (count > 1) {
        const QImage badge = KPBadgeCache::instance().numberBadge(
            count, static_cast<int>(std::lround(badgeHeight * ratio)));
        const QSizeF size = QSizeF(badge.size()) / ratio;
        painter.drawImage(QRectF(QPointF(side - size.width(), side - size.height()), size), badge);
    }
    return pixmap;
}

// Only copies leave: a program that takes a move would delete the user's file.
void KPDocsView::startDrag(Qt::DropActions)
{
    const QStringList paths = selectedPaths();
    if (paths.isEmpty())
        return;
    auto *drag = new QDrag(this);
    drag->setMimeData(XPFileUrls::mimeData(paths));
    const KPDoc &document =
        *m_model->document(currentIndex().isValid() ? currentIndex().row()
                                                    : m_model->indexForPath(paths.first()).row());
    drag->setPixmap(dragPicture(document, paths.size()));
    drag->exec(Qt::CopyAction, Qt::CopyAction);
}
