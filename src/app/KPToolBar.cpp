#include "KPToolBar.h"

#include "KPCommandTable.h"
#include "KPIconButton.h"
#include "KPLook.h"
#include "KPMenuButton.h"
#include "KPSearchField.h"
#include "KPToolBarDialog.h"
#include "KPToolBarItems.h"
#include "UserDefaults.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <memory>

using KPToolBarItems::Item;
using KPToolBarItems::Kind;

static constexpr int gap = 8;

namespace {

// Room that is only there to part items, with a line in its middle or without.
class Gap : public QWidget
{
public:
    explicit Gap(bool hasLine) : m_hasLine(hasLine) { setFixedSize(2 * gap + 1, 24); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        if (m_hasLine)
            QPainter(this).fillRect(QRect(gap, 2, 1, 20), KPLook::line(palette()));
    }

private:
    const bool m_hasLine;
};

QWidget *pair(const QList<QAction *> &actions)
{
    auto *group = new QWidget;
    auto *row = new QHBoxLayout(group);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    for (QAction *action : actions)
        row->addWidget(new KPIconButton(action));
    return group;
}

} // namespace

KPToolBar::KPToolBar(KPCommands *commands, KPSearchField *field, QWidget *parent)
    : QToolBar(qtTrId("KPToolBar"), parent), m_commands(commands), m_field(field)
{
    setObjectName(KPToolBarItems::toolBarIdentifier);
    setMovable(false);
    setFloatable(false);
    setFixedHeight(KPLook::toolBarHeight);
    layout()->setContentsMargins(0, 0, 0, 0);
    auto *row = new QWidget;
    m_row = new QHBoxLayout(row);
    m_row->setContentsMargins(12, 8, 12, 8);
    m_row->setSpacing(4);
    addWidget(row);
    m_observation = UserDefaults::standard().addObserver(
        QStringLiteral("values.") + KPToolBarItems::toolBarIdentifier,
        [this](const PropertyValue &) { adapt(); });
    connect(commands, &KPCommands::updated, this, &KPToolBar::adapt);
    fill();
}

QList<QAction *> KPToolBar::actionsOf(const QString &identifier) const
{
    QList<QAction *> actions;
    const Item *item = KPToolBarItems::item(identifier);
    for (const char *id : item ? item->commands : decltype(item->commands){}) {
        if (QAction *action = id ? m_commands->action(id) : nullptr; action && action->isVisible())
            actions.append(action);
    }
    return actions;
}

// What the user wants, without what is not there; no separator stands at an end or twice.
QStringList KPToolBar::shownIdentifiers() const
{
    QStringList shown;
    bool wantsSeparator = false;
    for (const QString &identifier : KPToolBarItems::identifiers()) {
        if (identifier == KPToolBarItems::separator) {
            wantsSeparator = !shown.isEmpty();
        } else if (!KPToolBarItems::item(identifier) || !actionsOf(identifier).isEmpty()) {
            if (std::exchange(wantsSeparator, false) && identifier != KPToolBarItems::flexibleSpace)
                shown.append(KPToolBarItems::separator);
            shown.append(identifier);
        }
    }
    return shown;
}

void KPToolBar::adapt()
{
    if (shownIdentifiers() != m_shown)
        fill();
}

// The field stays one widget through every rearrangement, with what is being typed in it.
void KPToolBar::fill()
{
    while (const auto item = std::unique_ptr<QLayoutItem>(m_row->takeAt(0))) {
        if (item->widget() != m_field)
            delete item->widget();
    }
    m_gaps.clear();
    m_prominent = nullptr;
    m_shown = shownIdentifiers();
    bool hasField = false;
    for (const QString &identifier : std::as_const(m_shown)) {
        if (identifier != KPToolBarItems::flexibleSpace) {
            m_row->addWidget(widgetFor(identifier));
            continue;
        }
        m_row->addStretch(1);
        if (!std::exchange(hasField, true))
            m_row->addWidget(m_field, 2);
    }
    if (!hasField)
        m_row->addWidget(m_field, 1);
    fit();
}

QWidget *KPToolBar::widgetFor(const QString &identifier)
{
    const Item *item = KPToolBarItems::item(identifier);
    if (!item) {
        m_gaps.append(new Gap(identifier == KPToolBarItems::separator));
        return m_gaps.last();
    }
    const QList<QAction *> actions = actionsOf(identifier);
    if (item->kind == Kind::Segments)
        return new KPSegments(actions);
    if (item->kind == Kind::Navigation)
        return pair(actions);
    auto *button = new KPIconButton(actions.first());
    if (item->kind == Kind::Menu)
        KPMenuButton::openByClick(*button);
    if (item->kind == Kind::Prominent) {
        button->setProminent(true);
        m_prominent = button;
    }
    return button;
}

// In a narrow window the items would lie over each other otherwise.
void KPToolBar::fit()
{
    setCompact(false);
    const QMargins margins = m_row->contentsMargins();
    int needed = margins.left() + margins.right() - m_row->spacing();
    for (int i = 0; i < m_row->count(); ++i) {
        if (const QWidget *widget = m_row->itemAt(i)->widget())
            needed += std::max(widget->minimumWidth(), widget->minimumSizeHint().width()) +
                      m_row->spacing();
    }
    setCompact(needed > width());
}

void KPToolBar::setCompact(bool isCompact)
{
    for (QWidget *each : std::as_const(m_gaps))
        each->setVisible(!isCompact);
    if (m_prominent)
        m_prominent->setToolButtonStyle(isCompact ? Qt::ToolButtonIconOnly
                                                  : Qt::ToolButtonTextBesideIcon);
}

void KPToolBar::resizeEvent(QResizeEvent *event)
{
    QToolBar::resizeEvent(event);
    fit();
}

void KPToolBar::customise()
{
    auto *dialog = new KPToolBarDialog(m_commands, window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void KPToolBar::contextMenuEvent(QContextMenuEvent *event)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(m_commands->action("KPCustomiseToolbar"));
    menu->popup(event->globalPos());
}

// No frame and no shading: the chrome is quieter than the documents.
void KPToolBar::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), palette().color(QPalette::Window));
}
