#include "KPBookmarkBar.h"

#include "KPBookmarkCommands.h"
#include "KPBookmarkItems.h"
#include "KPCrumbController.h"
#include "KPCrumbs.h"
#include "KPDocIcons.h"
#include "KPLocationItem.h"
#include "KPMenuButton.h"
#include "KPNavigationLook.h"
#include "UserDefaults.h"
#include "XPPath.h"
#include "XPRecentDestinations.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QToolButton>
#include <algorithm>

static const QString tagGroupsKey = QStringLiteral("recentTagGroups");
static constexpr std::chrono::milliseconds untilRecent{2500};
static constexpr int margin = 12;
static constexpr int spacing = 4;
static constexpr int widest = 200;

static QString menuText(const QString &text)
{
    return QString(text).replace(u'&', QStringLiteral("&&"));
}

KPBookmarkBar::KPBookmarkBar(KPCrumbController &controller, KPBookmarkCommands &commands,
                             QWidget *parent)
    : QWidget(parent), m_controller(controller), m_commands(commands),
      m_save(new QToolButton(this)), m_overflow(new QToolButton(this)),
      m_hint(new QLabel(qtTrId("KPBookmarkBarEmpty"), this))
{
    setAcceptDrops(true);
    setAccessibleName(qtTrId("KPBookmarkBar"));
    m_save->setIcon(KPDocIcons::symbol(QStringLiteral("add")));
    m_save->setAutoRaise(true);
    m_save->setToolTip(qtTrId("KPBookmarkAdd"));
    m_save->setAccessibleName(qtTrId("KPBookmarkAdd"));
    connect(m_save, &QToolButton::clicked, this, [this] { m_commands.saveCurrent(); });
    m_hint->setTextFormat(Qt::PlainText);
    m_hint->setForegroundRole(QPalette::PlaceholderText);
    m_overflow->setAutoRaise(true);
    m_overflow->setText(QStringLiteral("»"));
    m_overflow->setAccessibleName(qtTrId("KPBookmarkBarMore"));
    KPMenuButton::openByClick(*m_overflow);
    m_overflow->setMenu(new QMenu(m_overflow));
    connect(m_overflow->menu(), &QMenu::aboutToShow, this, &KPBookmarkBar::fillOverflow);
    connect(&commands.bookmarks(), &KPBookmarks::changed, this, &KPBookmarkBar::rebuild);
    m_later.setSingleShot(true);
    m_later.setInterval(untilRecent);
    connect(&m_later, &QTimer::timeout, this, &KPBookmarkBar::rebuild);
    for (const QString &key : {tagGroupsKey, XPRecentDestinations::key})
        m_observations.push_back(UserDefaults::standard().addObserver(
            QStringLiteral("values.") + key, [this](const PropertyValue &) { m_later.start(); }));
    rebuild();
}

KPBookmarkBar::~KPBookmarkBar() = default;

QSize KPBookmarkBar::sizeHint() const
{
    return {480, std::max(KPNavigationLook::barHeight, fontMetrics().height() + 14)};
}

QSize KPBookmarkBar::minimumSizeHint() const
{
    return {120, sizeHint().height()};
}

// --- Buttons

QToolButton *KPBookmarkBar::addButton(const QString &text, const QString &symbol)
{
    auto *button = new QToolButton(this);
    button->setIcon(KPNavigationLook::icon(symbol));
    button->setText(
        menuText(fontMetrics().elidedText(XPPath::printable(text), Qt::ElideMiddle, widest)));
    button->setAccessibleName(XPPath::printable(text));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    m_buttons.push_back(button);
    return button;
}

void KPBookmarkBar::addBookmark(const KPBookmark &bookmark)
{
    QToolButton *button = addButton(bookmark.title, bookmark.isFolder ? QStringLiteral("folder")
                                                                      : QStringLiteral("saved"));
    button->setProperty("identifier", bookmark.identifier);
    button->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(button, &QWidget::customContextMenuRequested, this,
            [this, button, identifier = bookmark.identifier](const QPoint &at) {
                showBookmarkMenu(identifier, button->mapToGlobal(at));
            });
    if (bookmark.isFolder) {
        auto *menu = new QMenu(button);
        button->setMenu(menu);
        KPMenuButton::openByClick(*button);
        connect(menu, &QMenu::aboutToShow, this, [this, menu, identifier = bookmark.identifier] {
            menu->clear();
            if (const KPBookmark *folder = m_commands.bookmarks().find(identifier))
                fill(menu, *folder);
        });
        return;
    }
    button->setToolTip(KPCrumbs::sentenceOf(bookmark.searchState()));
    connect(button, &QToolButton::clicked, this, [this, identifier = bookmark.identifier] {
        m_commands.run(identifier, QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier));
    });
}

// NOLINTNEXTLINE(misc-no-recursion): the depth of a file of saved searches is limited
void KPBookmarkBar::fill(QMenu *menu, const KPBookmark &folder)
{
    for (const KPBookmark &each : folder.children) {
        const QString title = menuText(XPPath::printable(each.title));
        if (each.isFolder) {
            fill(menu->addMenu(title), each);
            continue;
        }
        connect(menu->addAction(title), &QAction::triggered, this,
                [this, identifier = each.identifier] {
                    m_commands.run(identifier,
                                   QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier));
                });
    }
    if (folder.children.isEmpty())
        menu->addAction(qtTrId("KPBookmarkEmptyFolder"))->setEnabled(false);
}

void KPBookmarkBar::addTagGroups()
{
    QList<PropertyValue::Dictionary> groups;
    const PropertyValue stored = UserDefaults::standard().value(tagGroupsKey);
    for (const PropertyValue &group : stored.dictionary())
        groups.append(group.dictionary());
    const QString date = QStringLiteral("date");
    std::stable_sort(groups.begin(), groups.end(), [&date](const auto &a, const auto &b) {
        return a.value(date).date().secondsSince2001 > b.value(date).date().secondsSince2001;
    });
    for (const auto &group : groups) {
        const QStringList tags = group.value(QStringLiteral("tags")).strings();
        if (tags.isEmpty())
            continue;
        QToolButton *button = addButton(tags.join(QStringLiteral(", ")), QStringLiteral("tag"));
        button->setToolTip(qtTrId("KPBookmarkBarTags").arg(tags.join(QStringLiteral(", "))));
        connect(button, &QToolButton::clicked, this, [this, tags] { showTags(tags); });
    }
}

void KPBookmarkBar::showTags(const QStringList &tags)
{
    const bool inPlace = QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier);
    KPSearchState::Ptr state =
        inPlace ? KPCrumbController::stateInLocation(KPSearchState::blankSearchState(),
                                                     m_controller.locationItem())
                : m_controller.searchState();
    for (const QString &tag : tags) {
        if (!state->hasSearchTag(tag))
            state = state->searchStateByClearingTag(tag)->searchStateByAddingTag(tag);
    }
    m_controller.applyState(state);
}

void KPBookmarkBar::addDestinations()
{
    for (const QString &folder : XPRecentDestinations::paths()) {
        const auto location = KPLocationItem::withFolder(folder);
        QToolButton *button = addButton(location->displayName(), QStringLiteral("folder"));
        button->setToolTip(location->tooltip());
        connect(button, &QToolButton::clicked, this,
                [this, location] { m_controller.showLocation(location); });
    }
}

void KPBookmarkBar::rebuild()
{
    for (QToolButton *button : m_buttons) {
        button->hide();
        button->deleteLater();
    }
    m_buttons.clear();
    for (const KPBookmark &bookmark : m_commands.bookmarks().root().children)
        addBookmark(bookmark);
    addTagGroups();
    addDestinations();
    place();
}

void KPBookmarkBar::place()
{
    const QSize saveSize = m_save->sizeHint();
    const int overflowWidth = m_overflow->sizeHint().width();
    const int right = width() - margin - saveSize.width() - spacing;
    int left = margin - 4;
    bool isFull = false;
    for (size_t number = 0; number < m_buttons.size(); ++number) {
        QToolButton *button = m_buttons[number];
        const QSize size = button->sizeHint();
        const bool isLast = number + 1 == m_buttons.size();
        isFull = isFull || left + size.width() > right - (isLast ? 0 : overflowWidth + spacing);
        button->setVisible(!isFull);
        if (isFull)
            continue;
        button->setGeometry(left, (height() - size.height()) / 2, size.width(), size.height());
        left += size.width() + spacing;
    }
    m_overflow->setVisible(isFull);
    if (isFull) {
        m_overflow->setGeometry(left, (height() - saveSize.height()) / 2, overflowWidth,
                                saveSize.height());
        left += overflowWidth + spacing;
    }
    m_save->setGeometry(left, (height() - saveSize.height()) / 2, saveSize.width(),
                        saveSize.height());
    left += saveSize.width() + spacing;
    m_hint->setVisible(m_buttons.empty());
    m_hint->setGeometry(left, 0, std::max(0, width() - margin - left), height());
}

void KPBookmarkBar::fillOverflow()
{
    QMenu *menu = m_overflow->menu();
    menu->clear();
    for (QToolButton *button : m_buttons) {
        if (!button->isHidden())
            continue;
        QAction *action = menu->addAction(button->icon(), menuText(button->accessibleName()));
        if (button->menu())
            action->setMenu(button->menu());
        else
            connect(action, &QAction::triggered, button, &QToolButton::click);
    }
}

// --- Events

void KPBookmarkBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    place();
}

void KPBookmarkBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        rebuild();
}

void KPBookmarkBar::showBookmarkMenu(const QString &identifier, const QPoint &position)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    m_commands.fillMenu(menu, {identifier});
    menu->popup(position);
}

void KPBookmarkBar::contextMenuEvent(QContextMenuEvent *event)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction *save = menu->addAction(qtTrId("KPBookmarkAdd"));
    save->setEnabled(m_commands.canSave());
    connect(save, &QAction::triggered, this, [this] { m_commands.saveCurrent(); });
    connect(menu->addAction(qtTrId("KPBookmarkNewFolder")), &QAction::triggered, this,
            [this] { m_commands.addFolder(); });
    menu->popup(event->globalPos());
}

void KPBookmarkBar::dragEnterEvent(QDragEnterEvent *event)
{
    dragMoveEvent(event);
}

void KPBookmarkBar::dragMoveEvent(QDragMoveEvent *event)
{
    const KPBookmarkFolderItem list(m_commands.bookmarks(), QString());
    const Qt::DropAction action =
        list.validateDropOfType(event->possibleActions(), -1, nullptr, *event->mimeData());
    event->setDropAction(action);
    event->setAccepted(action != Qt::IgnoreAction);
}

// Between the buttons where it was let go.
void KPBookmarkBar::dropEvent(QDropEvent *event)
{
    KPBookmarkPlace place{{}, 0};
    for (const QToolButton *button : m_buttons) {
        const bool isBookmark = button->property("identifier").isValid();
        if (isBookmark && button->isVisible() &&
            event->position().x() > button->geometry().center().x())
            ++place.index;
    }
    if (const auto moved = KPBookmarkFolderItem::identifiersOf(*event->mimeData());
        !moved.isEmpty())
        m_commands.move(moved, place);
    else if (const auto made = KPBookmarkFolderItem::madeOf(*event->mimeData()))
        m_commands.add({*made}, place);
    event->acceptProposedAction();
}
