#include "KPDocsList.h"

#include "KPArrangedDocs.h"
#include "KPDocsKeys.h"
#include "KPDocsListDelegate.h"
#include "KPDocsTable.h"
#include "KPDocsView.h"
#include "KPNameField.h"
#include "KPTagDrop.h"
#include "KPTagMime.h"
#include "UserDefaults.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QProxyStyle>
#include <QScrollBar>
#include <QStyleOptionHeader>
#include <array>

static const QString columnsKey = QStringLiteral("KPVisibleColumnsInDocsList");
static const QString widthsKey = QStringLiteral("KPDocsListColumnWidths");

namespace {
struct ColumnKey
{
    KPLibraryModel::Column column;
    const char *key;
    int width; // points, until the user sizes it
};
using Model = KPLibraryModel;
} // namespace

static constexpr std::array<ColumnKey, Model::ColumnCount> columnKeys{{
    {Model::NameColumn, "name", 300},
    {Model::FlagColumn, "flag", 36},
    {Model::TitleColumn, "title", 220},
    {Model::TypeColumn, "type", 160},
    {Model::SizeColumn, "fileSize", 80},
    {Model::CreatedColumn, "creationDate", 150},
    {Model::ModifiedColumn, "modificationDate", 150},
    {Model::AddedColumn, "dateAdded", 150},
    {Model::RatingColumn, "rating", 96},
    {Model::TagsColumn, "tags", 160},
    {Model::FolderColumn, "folder", 220},
    {Model::PathColumn, "path", 320},
}};

QString KPDocsList::keyOfColumn(int column)
{
    return QLatin1String(columnKeys[static_cast<size_t>(column)].key);
}

int KPDocsList::columnOfKey(const QString &key)
{
    for (const ColumnKey &each : columnKeys) {
        if (key == QLatin1String(each.key))
            return each.column;
    }
    return -1;
}

namespace {

// Titles begin and end where the cells below them do.
class HeaderStyle : public QProxyStyle
{
public:
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        if (element != CE_HeaderLabel) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        const int more = KPDocsListDelegate::padding - pixelMetric(PM_HeaderMargin, option, widget);
        const auto draw = [&](auto label) {
            label.rect.adjust(more, 0, -more, 0);
            QProxyStyle::drawControl(element, &label, painter, widget);
        };
        // Which of the two comes depends on Qt's version.
        if (const auto *newer = qstyleoption_cast<const QStyleOptionHeaderV2 *>(option))
            draw(*newer);
        else if (const auto *older = qstyleoption_cast<const QStyleOptionHeader *>(option))
            draw(*older);
    }
};

} // namespace

KPDocsList::KPDocsList(KPLibraryModel &model, KPArrangedDocs &docs, KPDocsKeys &keys,
                       QWidget *parent)
    : QTreeView(parent), m_model(model), m_docs(docs), m_keys(keys),
      m_nameField(new KPNameField(viewport()))
{
    setModel(new KPDocsTable(model, this));
    setItemDelegate(new KPDocsListDelegate(model, this));
    setFrameShape(QFrame::NoFrame);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setAcceptDrops(true);
    setAccessibleName(qtTrId("KPDocuments"));
    m_nameField->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    auto *style = new HeaderStyle;
    style->setParent(this);
    header()->setStyle(style);
    header()->setSectionsMovable(true);
    header()->setSectionsClickable(true);
    header()->setStretchLastSection(true);
    header()->setFirstSectionMovable(true);
    header()->setMinimumHeight(KPDocsListDelegate::rowHeight);
    header()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header(), &QHeaderView::customContextMenuRequested, this, &KPDocsList::showHeaderMenu);
    connect(header(), &QHeaderView::sectionClicked, this, &KPDocsList::sortRequested);
    const PropertyValue::Dictionary widths = UserDefaults::standard().value(widthsKey).dictionary();
    for (const ColumnKey &each : columnKeys) {
        const double own = widths.value(QLatin1String(each.key)).doubleValue();
        setColumnWidth(each.column, own >= 20 && own < 10000 ? static_cast<int>(own) : each.width);
    }
    setVisibleColumns(UserDefaults::standard().value(columnsKey).strings());
    setColours();
    connect(&docs, &KPArrangedDocs::selectionChanged, this, &KPDocsList::showSelection);
    connect(m_nameField, &KPNameField::renamed, this, &KPDocsList::renameRequested);
    connect(m_nameField, &KPNameField::ended, this, qOverload<>(&QWidget::setFocus));
    connect(&docs, &KPArrangedDocs::arranged, this, [this] {
        if (m_nameField->doc() && m_docs.rowOf(m_nameField->doc()) < 0)
            m_nameField->stop();
    });
}

// Columns.

QStringList KPDocsList::visibleColumns() const
{
    QStringList keys;
    for (int place = 0; place < header()->count(); ++place) {
        const int column = header()->logicalIndex(place);
        if (!header()->isSectionHidden(column))
            keys.append(keyOfColumn(column));
    }
    return keys;
}

void KPDocsList::setVisibleColumns(const QStringList &keys)
{
    QList<int> wanted;
    for (const QString &key : keys) {
        if (const int column = columnOfKey(key); column >= 0 && !wanted.contains(column))
            wanted.append(column);
    }
    if (!wanted.contains(KPLibraryModel::NameColumn))
        wanted.prepend(KPLibraryModel::NameColumn);
    for (int column = 0; column < KPLibraryModel::ColumnCount; ++column)
        setColumnHidden(column, !wanted.contains(column));
    for (int place = 0; place < wanted.size(); ++place)
        header()->moveSection(header()->visualIndex(wanted[place]), place);
}

// Where it comes in the order of all, not behind those that are seen.
void KPDocsList::showColumn(int column, bool on)
{
    const auto isLater = [this, column](int place) {
        const int other = header()->logicalIndex(place);
        return !isColumnHidden(other) && other > column;
    };
    if (on) {
        const int from = header()->visualIndex(column);
        int to = 0;
        while (to < header()->count() && !isLater(to))
            ++to;
        header()->moveSection(from, from < to ? to - 1 : to);
    }
    setColumnHidden(column, !on);
}

void KPDocsList::showSortOrder(int column, bool isAscending)
{
    header()->setSortIndicatorShown(column >= 0);
    header()->setSortIndicator(column, isAscending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

void KPDocsList::showHeaderMenu(const QPoint &at)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const ColumnKey &each : columnKeys) {
        QAction *action = menu->addAction(KPLibraryModel::titleOf(each.column));
        action->setCheckable(true);
        action->setChecked(!isColumnHidden(each.column));
        action->setEnabled(each.column != KPLibraryModel::NameColumn);
        connect(action, &QAction::toggled, this,
                [this, column = each.column](bool on) { showColumn(column, on); });
    }
    menu->popup(header()->mapToGlobal(at));
}

void KPDocsList::writeOutState() const
{
    UserDefaults &defaults = UserDefaults::standard();
    if (const QStringList columns = visibleColumns();
        columns != defaults.value(columnsKey).strings())
        defaults.setValue(columnsKey, columns);
    PropertyValue::Dictionary widths = defaults.value(widthsKey).dictionary();
    for (const ColumnKey &each : columnKeys) {
        // The last one only fills the room.
        const int place = header()->visualIndex(each.column);
        if (!isColumnHidden(each.column) && place + 1 < visibleColumns().size())
            widths.insert(QLatin1String(each.key), PropertyValue::real(columnWidth(each.column)));
    }
    if (PropertyValue(widths) != defaults.value(widthsKey))
        defaults.setValue(widthsKey, widths);
}

// Selection.

void KPDocsList::showEvent(QShowEvent *event)
{
    QTreeView::showEvent(event);
    showSelection();
}

// Only while it is seen, and not between two arrangements.
void KPDocsList::showSelection()
{
    const KPSelection &shown = m_docs.selection();
    if (!isVisible() || shown.rowCount() != m_model.rowCount())
        return;
    QItemSelection selection;
    const int last = KPLibraryModel::ColumnCount - 1;
    for (const KPSelection::Run &run : shown.runs())
        selection.append(
            QItemSelectionRange(model()->index(run.first, 0), model()->index(run.last, last)));
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    const QModelIndex current = shown.current() < 0 ? QModelIndex() : nameIndex(shown.current());
    selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
}

QModelIndex KPDocsList::nameIndex(int row) const
{
    return model()->index(row, KPLibraryModel::NameColumn);
}

void KPDocsList::scrollToRow(int row)
{
    if (row >= 0 && row < m_model.rowCount())
        scrollTo(nameIndex(row));
}

bool KPDocsList::editName(int row)
{
    if (row < 0 || row >= m_model.rowCount() || m_model.document(row)->isGone())
        return false;
    const QModelIndex index = nameIndex(row);
    scrollTo(index);
    QRect place = visualRect(index).adjusted(24, 1, 0, -1);
    place.setWidth(std::max(place.width(), 160));
    m_nameField->setGeometry(place);
    m_nameField->start(m_model.document(row));
    return true;
}

void KPDocsList::scrollContentsBy(int dx, int dy)
{
    QTreeView::scrollContentsBy(dx, dy);
    if (m_nameField->doc())
        m_nameField->move(m_nameField->pos() + QPoint(dx, dy));
}

// Keys and pointer.

void KPDocsList::keyPressEvent(QKeyEvent *event)
{
    if (!m_keys.press(*event, 1))
        QTreeView::keyPressEvent(event); // NOLINT(bugprone-parent-virtual-call)
}

int KPDocsList::rowAt(const QPoint &point) const
{
    const int row = indexAt(point).row();
    return row < m_docs.count() ? row : -1;
}

bool KPDocsList::editCell(const QModelIndex &index, const QPoint &at)
{
    KPDoc *doc = m_model.document(index.row());
    if (index.column() == KPLibraryModel::FlagColumn) {
        Q_EMIT flagClicked(doc);
        return true;
    }
    const int x = at.x() - visualRect(index).left();
    if (index.column() != KPLibraryModel::RatingColumn || x > 96)
        return false;
    const int stars = KPDocsListDelegate::starsAt(x);
    // The star that is the rating already takes it away.
    Q_EMIT ratingClicked(doc, doc->starsToShow() == stars ? 0 : stars);
    return true;
}

void KPDocsList::mousePressEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->pos());
    const int row = rowAt(event->pos());
    m_pressedRow = -1;
    m_selectsOnRelease = false;
    if (row < 0) {
        m_docs.selectNone();
        return;
    }
    const bool isSelected = m_docs.selection().isSelected(row);
    if (event->button() == Qt::RightButton) {
        if (!isSelected)
            m_docs.selectRow(row);
        return;
    }
    if (event->button() != Qt::LeftButton)
        return;
    m_pressedAt = event->pos();
    m_pressedRow = row;
    if (event->modifiers() & Qt::ShiftModifier)
        m_docs.extendSelectionsByShiftClicking(m_docs.at(row));
    else if (event->modifiers() & Qt::ControlModifier)
        m_docs.toggleRow(row);
    else if (editCell(index, event->pos()))
        m_pressedRow = -1;
    else if (isSelected)
        m_selectsOnRelease = true;
    else
        m_docs.selectRow(row);
}

void KPDocsList::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton)) {
        QTreeView::mouseMoveEvent(event);
        return;
    }
    const bool isDrag = m_pressedRow >= 0 && (event->pos() - m_pressedAt).manhattanLength() >=
                                                 QApplication::startDragDistance();
    if (isDrag)
        Q_EMIT dragRequested(std::exchange(m_pressedRow, -1));
}

void KPDocsList::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_selectsOnRelease && m_pressedRow >= 0 &&
        m_pressedRow < m_docs.count())
        m_docs.selectRow(m_pressedRow);
    m_pressedRow = -1;
}

void KPDocsList::mouseDoubleClickEvent(QMouseEvent *event)
{
    mousePressEvent(event);
    if (event->button() == Qt::LeftButton && std::exchange(m_pressedRow, -1) >= 0)
        Q_EMIT openRequested();
}

void KPDocsList::contextMenuEvent(QContextMenuEvent *event)
{
    QPoint at = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid())
        at = viewport()->mapToGlobal(visualRect(currentIndex()).center());
    Q_EMIT contextMenuRequested(at);
}

void KPDocsList::dragEnterEvent(QDragEnterEvent *event)
{
    if (!KPDocsView::takesDrop(event->mimeData(), event->source()) &&
        !KPTagMime::hasTags(event->mimeData()))
        return event->ignore();
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void KPDocsList::dragMoveEvent(QDragMoveEvent *event)
{
    if (KPTagDrop::drag(event, m_docs, rowAt(event->position().toPoint())))
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void KPDocsList::dropEvent(QDropEvent *event)
{
    if (KPTagDrop::drop(event, m_docs, rowAt(event->position().toPoint()), this))
        return;
    if (!KPDocsView::takesDrop(event->mimeData(), event->source()))
        return event->ignore();
    event->setDropAction(Qt::CopyAction);
    event->accept();
    Q_EMIT dropped(event->mimeData(), event->modifiers() & Qt::AltModifier);
}

void KPDocsList::setColours()
{
    const KPLibraryColours colours(QApplication::palette());
    static_cast<KPDocsListDelegate *>(itemDelegate())->setColours(colours);
    QPalette own = colours.palette;
    if (viewport()->palette().color(QPalette::Base) != own.color(QPalette::Base) ||
        viewport()->palette().color(QPalette::Text) != own.color(QPalette::Text))
        viewport()->setPalette(own);
}

void KPDocsList::changeEvent(QEvent *event)
{
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        setColours();
}
