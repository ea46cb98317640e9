#include "KPCrumbTrail.h"

#include "KPCrumbButton.h"
#include "KPCrumbController.h"
#include "KPDocIcons.h"
#include "KPFileTypeRegistry.h"
#include "KPMenuButton.h"
#include "KPNavigationLook.h"
#include "KPSearcher.h"

#include <QAccessible>
#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QPainter>
#include <QToolButton>
#include <algorithm>

static constexpr int margin = 12;
static constexpr int spacing = 6;
static constexpr int arrowWidth = 14;
static constexpr size_t places = 2; // the source and the location stand first
static constexpr std::chrono::milliseconds untilBusy{500};

KPCrumbTrail::KPCrumbTrail(KPCrumbController &controller, QWidget *parent)
    : QWidget(parent), m_controller(controller), m_crumbs(nullptr), m_add(new QToolButton(this)),
      m_overflow(new QToolButton(this)), m_count(new QLabel(this))
{
    m_add->setIcon(KPDocIcons::symbol(QStringLiteral("add")));
    m_add->setAutoRaise(true);
    m_add->setToolTip(qtTrId("KPCrumbAdd"));
    m_add->setAccessibleName(qtTrId("KPCrumbAdd"));
    m_overflow->setAutoRaise(true);
    KPMenuButton::openByClick(*m_overflow);
    m_overflow->setMenu(new QMenu(m_overflow));
    m_count->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    connect(m_add, &QToolButton::clicked, this, [this] {
        QMenu *menu = menuOfAdditions();
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(m_add->mapToGlobal(QPoint(0, m_add->height())));
    });
    connect(m_overflow->menu(), &QMenu::aboutToShow, this, &KPCrumbTrail::fillOverflow);

    // Several notices of one change are one rebuild.
    m_rebuild.setSingleShot(true);
    m_rebuild.setInterval(0);
    connect(&m_rebuild, &QTimer::timeout, this, &KPCrumbTrail::rebuild);
    m_busy.setSingleShot(true);
    m_busy.setInterval(untilBusy);
    connect(&m_busy, &QTimer::timeout, this, &KPCrumbTrail::showCount);
    const auto soon = [this] { m_rebuild.start(); };
    connect(&controller, &KPCrumbController::itemsChanged, &m_rebuild, soon);
    for (const QString &notice :
         {KPSearcher::lookMayHaveChanged, KPFileTypeRegistry::changedNotification})
        m_observations.push_back(XPNotificationCenter::instance().addObserver(
            notice, [soon](const XPNotification &) { soon(); }));
    const KPSearcher *searcher = &controller.navigator().searcher();
    connect(searcher, &KPSearcher::searchStarted, this, [this] { m_busy.start(); });
    connect(searcher, &KPSearcher::delivered, this, &KPCrumbTrail::showCount);
    connect(searcher, &KPSearcher::finished, this, [this] {
        m_busy.stop();
        showCount();
    });
    rebuild();
}

KPCrumbTrail::~KPCrumbTrail() = default;

QSize KPCrumbTrail::sizeHint() const
{
    return {640, std::max(KPNavigationLook::trailHeight, fontMetrics().height() + 18)};
}

QSize KPCrumbTrail::minimumSizeHint() const
{
    return {240, sizeHint().height()};
}

void KPCrumbTrail::modifiersChanged(Qt::KeyboardModifiers modifiers)
{
    const bool excludes = modifiers.testFlag(Qt::AltModifier);
    if (std::exchange(m_isExcluding, excludes) != excludes)
        m_rebuild.start();
}

// --- The steps

void KPCrumbTrail::rebuild()
{
    m_crumbs = KPCrumbs(m_controller.searchState(), m_controller.sourceItem(),
                        m_controller.locationItem());
    const auto focused =
        std::find_if(m_buttons.begin(), m_buttons.end(),
                     [](const KPCrumbButton *button) { return button->hasFocus(); });
    const auto focusedPlace = std::distance(m_buttons.begin(), focused);
    const bool hadFocus = focused != m_buttons.end();
    for (KPCrumbButton *button : m_buttons) {
        button->hide();
        button->deleteLater();
    }
    m_buttons.clear();
    for (const KPCrumb &crumb : m_crumbs.crumbs()) {
        auto *button = new KPCrumbButton(crumb, this);
        m_buttons.push_back(button);
        connect(button, &QAbstractButton::clicked, this, [this, button] { open(button); });
        connect(button, &KPCrumbButton::removeRequested, this,
                [this, button] { m_controller.applyState(button->crumb().without); });
        connect(button, &KPCrumbButton::negateRequested, this,
                [this, button] { m_controller.applyState(button->crumb().negated); });
        connect(button, &KPCrumbButton::leaveRequested, this,
                [this, button](int direction) { moveFocus(button, direction); });
        if (m_isExcluding && crumb.negated)
            button->setToolTip(qtTrId("KPCrumbNegateHint"));
    }
    const QString sentence = m_crumbs.sentence();
    if (accessibleName() != sentence) {
        setAccessibleName(sentence);
        QAccessibleEvent event(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
    place();
    showCount();
    if (hadFocus)
        m_buttons[std::min(m_buttons.size() - 1, static_cast<size_t>(focusedPlace))]->setFocus();
}

// What fits stands in the row, the rest in the menu behind it.
void KPCrumbTrail::place()
{
    const int countWidth = m_count->sizeHint().width();
    m_count->setGeometry(width() - margin - countWidth, 0, countWidth, height());
    const QSize addSize = m_add->sizeHint();
    const int overflowWidth = fontMetrics().horizontalAdvance(QStringLiteral("+ 99 …")) + 24;
    int left = margin;
    const int right = width() - margin - countWidth - 12 - addSize.width();
    m_separators.clear();
    size_t hidden = 0;
    for (size_t number = 0; number < m_buttons.size(); ++number) {
        KPCrumbButton *button = m_buttons[number];
        QSize size = button->sizeHint();
        const bool isLast = number + 1 == m_buttons.size();
        const int limit = right - (isLast ? 0 : overflowWidth);
        if (number < places) // never hidden: they become narrow instead
            size.setWidth(
                std::min(size.width(), std::max(button->minimumSizeHint().width(), right / 4)));
        else if (hidden > 0 || left + size.width() > limit)
            ++hidden;
        button->setVisible(hidden == 0);
        if (hidden > 0)
            continue;
        button->setGeometry(left, (height() - size.height()) / 2, size.width(), size.height());
        left += size.width() + spacing;
        if (number < places && !isLast) {
            m_separators.push_back(left);
            left += arrowWidth;
        }
    }
    m_overflow->setVisible(hidden > 0);
    if (hidden > 0) {
        m_overflow->setText(qtTrId("KPCrumbMore", static_cast<int>(hidden)));
        const QSize size = m_overflow->sizeHint();
        m_overflow->setGeometry(left, (height() - size.height()) / 2, size.width(), size.height());
        left += size.width() + spacing;
    }
    m_add->setGeometry(left, (height() - addSize.height()) / 2, addSize.width(), addSize.height());
    update();
}

void KPCrumbTrail::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    place();
}

void KPCrumbTrail::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange)
        m_rebuild.start();
}

void KPCrumbTrail::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(KPNavigationLook::muted(palette()), 1.2, Qt::SolidLine, Qt::RoundCap));
    for (const int left : m_separators) {
        const QPointF tip(left + 5, height() / 2.0);
        painter.drawPolyline(QPolygonF{tip + QPointF(-2.5, -3.5), tip, tip + QPointF(-2.5, 3.5)});
    }
}

void KPCrumbTrail::showCount()
{
    KPSearcher &searcher = m_controller.navigator().searcher();
    const auto number = static_cast<int>(searcher.currentSearchResults().size());
    const bool isBusy = searcher.isSearching() && !m_busy.isActive();
    const QString count = qtTrId("KPCrumbDocuments", number).arg(QLocale().toString(number));
    m_count->setText(isBusy ? qtTrId("KPCrumbSearching").arg(count) : count);
    QPalette shown = palette();
    shown.setColor(QPalette::WindowText, KPNavigationLook::muted(palette()));
    m_count->setPalette(shown);
    place();
}

void KPCrumbTrail::moveFocus(const KPCrumbButton *from, int direction)
{
    QList<QWidget *> row(m_buttons.begin(), m_buttons.end());
    row << m_overflow << m_add;
    row.removeIf([](const QWidget *each) { return !each->isVisible(); });
    const qsizetype next = row.indexOf(from) + (isRightToLeft() ? -direction : direction);
    if (next >= 0 && next < row.size())
        row[next]->setFocus(Qt::TabFocusReason);
}
