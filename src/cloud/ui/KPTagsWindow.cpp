#include "KPTagsWindow.h"

#include "KPDocServices.h"
#include "KPLook.h"
#include "KPSearcher.h"
#include "KPTagClicks.h"
#include "KPTagTreeModel.h"
#include "KPWindowFrame.h"
#include "UserDefaults.h"
#include "XPText.h"

#include <QCheckBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHideEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTreeView>
#include <QVBoxLayout>

static const QString availableKey = QStringLiteral("KPTagsWindowOnlyShowAvailable");
static const QString frameKey = QStringLiteral("KPTagsWindowGeometry");
static constexpr std::chrono::milliseconds refreshPause{300};

KPTagsWindow::KPTagsWindow(KPNavigator &navigator, QWidget *window)
    : QDialog(window, Qt::Tool), m_navigator(navigator), m_model(new KPTagTreeModel(this)),
      m_filter(new QLineEdit), m_view(new QTreeView),
      m_available(new QCheckBox(qtTrId("KPTagsWindowAvailable"))), m_counts(new QLabel)
{
    setObjectName(QStringLiteral("KPTagsWindow"));
    setWindowTitle(qtTrId("KPTagsWindowTitle"));
    build();
    KPWindowFrame::restore(*this, frameKey, {300, 460});
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(refreshPause);
    connect(&m_refresh, &QTimer::timeout, this, &KPTagsWindow::refresh);
    observe();
}

void KPTagsWindow::build()
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(12, 12, 12, 12);
    column->setSpacing(8);
    m_filter->setPlaceholderText(qtTrId("KPCloudFilterHint"));
    m_filter->setAccessibleName(qtTrId("KPCloudFilter"));
    m_filter->setClearButtonEnabled(true);
    m_filter->installEventFilter(this);
    m_view->setModel(m_model);
    m_view->setAccessibleName(qtTrId("KPTagsWindowTitle"));
    m_view->setUniformRowHeights(true);
    m_view->setAlternatingRowColors(false);
    m_view->setAllColumnsShowFocus(true);
    m_view->setExpandsOnDoubleClick(false);
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    m_view->header()->setStretchLastSection(false);
    m_view->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_view->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_counts->setForegroundRole(QPalette::PlaceholderText);
    m_counts->setFont(KPLook::font(KPLook::Type::Facts));
    column->addWidget(m_filter);
    column->addWidget(m_view, 1);
    column->addWidget(m_available);
    column->addWidget(m_counts);
    connect(m_filter, &QLineEdit::textChanged, this, &KPTagsWindow::filter);
    connect(m_view, &QTreeView::activated, this, [this](const QModelIndex &index) {
        click(index.data(KPTagTreeModel::tagRole).toString(),
              QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier));
    });
    connect(m_view, &QWidget::customContextMenuRequested, this, &KPTagsWindow::showMenu);
    connect(m_available, &QCheckBox::clicked, this, [](bool on) {
        UserDefaults::standard().setValue(availableKey, PropertyValue::boolean(on));
    });
}

void KPTagsWindow::observe()
{
    m_observations.push_back(XPNotificationCenter::instance().addObserver(
        KPSearcher::tagSetsChanged, [this](const XPNotification &) {
            if (isVisible() && !m_refresh.isActive())
                m_refresh.start();
        }));
    m_observations.push_back(UserDefaults::standard().addObserver(
        QStringLiteral("values.") + availableKey, [this](const PropertyValue &) {
            if (isVisible())
                refresh();
        }));
}

void KPTagsWindow::open()
{
    show();
    raise();
    activateWindow();
    m_filter->setFocus(Qt::ShortcutFocusReason);
    refresh();
}

void KPTagsWindow::refresh()
{
    const bool onlyAvailable = UserDefaults::standard().boolValue(availableKey);
    m_available->setChecked(onlyAvailable);
    ++m_asked; // what is still being read is too late
    if (!onlyAvailable) {
        readLibrary();
        return;
    }
    QList<KPTagDocuments::UsedTag> tags;
    for (const auto &set : m_navigator.searcher().zenTagsSorted()) {
        if (set.tag->tagType() == KPTagName::User)
            tags.append({set.tag->displayName(), set.count, 0});
    }
    showTree(KPTagTree(tags));
}

void KPTagsWindow::readLibrary()
{
    xpGuiThread.assertHere();
    auto tree = std::make_shared<KPTagTree>();
    KPDocServices::current().runFileWork(
        [tree] { *tree = KPTagTree(KPTagDocuments::allUserTags()); },
        [self = QPointer(this), tree, asked = m_asked] {
            if (self && self->m_asked == asked)
                self->showTree(std::move(*tree));
        });
}

void KPTagsWindow::showTree(KPTagTree tree)
{
    m_tree = std::move(tree);
    filter();
    const int count = m_tree.size() - 1;
    m_counts->setText(qtTrId("KPTagsWindowCount", count).arg(QLocale().toString(count)));
}

void KPTagsWindow::filter()
{
    const QString current = m_view->currentIndex().data(KPTagTreeModel::tagRole).toString();
    m_model->setTree(m_tree.filtered(foldText(m_filter->text())));
    const KPTagTree &shown = m_model->tree();
    constexpr int mostExpanded = 2000; // more are no overview
    if (shown.size() <= mostExpanded)
        m_view->expandAll();
    if (const int found = current.isEmpty() ? KPTagTree::root : shown.find(current))
        m_view->setCurrentIndex(m_model->indexOf(found));
}

void KPTagsWindow::click(const QString &tag, bool excludes)
{
    if (KPTagName *name = KPTagName::tagNameForUserEnteredTag(tag))
        m_navigator.setSearchStateAndUpdateUI(
            KPTagClicks::click(m_navigator.searcher().searchState(), name, excludes), true);
}

void KPTagsWindow::showMenu(const QPoint &at)
{
    const QString tag = m_view->indexAt(at).data(KPTagTreeModel::tagRole).toString();
    if (KPTagName *name = KPTagName::tagNameForUserEnteredTag(tag))
        m_navigator.showTagMenu(name, m_view->viewport()->mapToGlobal(at));
}

// From the filter into the tree, and out of both with Escape.
bool KPTagsWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_filter && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Down) {
            m_view->setFocus(Qt::OtherFocusReason);
            if (!m_view->currentIndex().isValid())
                m_view->setCurrentIndex(m_model->index(0, 0));
            return true;
        }
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            const QString text = foldText(m_filter->text());
            if (const int first = text.isEmpty() ? KPTagTree::root : m_tree.findHolding(text))
                click(m_tree.node(first).tag, false);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

// However it is closed.
void KPTagsWindow::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous())
        KPWindowFrame::save(*this, frameKey);
    QDialog::hideEvent(event);
}
