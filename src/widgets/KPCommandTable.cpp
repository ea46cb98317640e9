#include "KPCommandTable.h"

#include "KPDocIcons.h"

#include <QMenuBar>
#include <array>
#include <memory>

static constexpr std::array<const char *, 8> menuTexts{
    QT_TRID_NOOP("KPMenuFile"),   QT_TRID_NOOP("KPMenuEdit"),      QT_TRID_NOOP("KPMenuView"),
    QT_TRID_NOOP("KPMenuGo"),     QT_TRID_NOOP("KPMenuDocuments"), QT_TRID_NOOP("KPMenuTags"),
    QT_TRID_NOOP("KPMenuWindow"), QT_TRID_NOOP("KPMenuHelp")};

KPCommands::KPCommands(QObject *parent) : QObject(parent)
{
}

KPCommands::~KPCommands() = default;

void KPCommands::add(const QList<KPCommand> &table)
{
    for (const KPCommand &command : table) {
        auto *action = new QAction(this);
        action->setObjectName(QLatin1String(command.id));
        action->setShortcut(command.shortcut);
        if (*command.symbol) {
            action->setIcon(KPDocIcons::symbol(QLatin1String(command.symbol)));
            action->setIconVisibleInMenu(false);
        }
        if (command.submenu) {
            QMenu *menu = command.submenu();
            QObject::connect(this, &QObject::destroyed, menu, &QObject::deleteLater);
            action->setMenu(menu);
        } else {
            // The state is asked again first: a shortcut reaches a command whose menu never opened.
            connect(action, &QAction::triggered, this, [this, command] {
                const KPCommandState state = command.state ? command.state() : KPCommandState{};
                if (state.isEnabled && state.isShown)
                    command.run();
                update();
            });
        }
        m_entries.push_back({command, action});
        m_byId.insert(command.id, action);
        update(m_entries.back());
    }
}

QAction *KPCommands::action(const char *id) const
{
    return m_byId.value(id);
}

void KPCommands::fill(QMenuBar *bar)
{
    for (std::size_t number = 0; number < menuTexts.size(); ++number) {
        QMenu *menu = nullptr;
        for (const Entry &entry : m_entries) {
            if (static_cast<std::size_t>(entry.command.menu) != number)
                continue;
            if (!menu) {
                menu = bar->addMenu(qtTrId(menuTexts[number]));
                connect(menu, &QMenu::aboutToShow, this, [this] { update(); });
            }
            menu->addAction(entry.action);
            if (entry.command.endsGroup)
                menu->addSeparator();
        }
    }
}

void KPCommands::fillDocumentsMenu(QMenu *menu) const
{
    for (const Entry &entry : m_entries) {
        if (!entry.command.isOnDocuments)
            continue;
        update(entry);
        menu->addAction(entry.action);
        if (entry.command.endsGroup)
            menu->addSeparator();
    }
}

void KPCommands::update()
{
    for (const Entry &entry : m_entries)
        update(entry);
    Q_EMIT updated();
}

// A button of an icon alone says what it does and which key does the same.
static QString toolTip(QString text, const QKeySequence &key)
{
    text.remove(u'&');
    return key.isEmpty()
               ? text
               : qtTrId("KPToolTipWithKey").arg(text, key.toString(QKeySequence::NativeText));
}

void KPCommands::update(const Entry &entry) const
{
    const KPCommandState state = entry.command.state ? entry.command.state() : KPCommandState{};
    QString text =
        state.title.isEmpty() ? qtTrId(state.text ? state.text : entry.command.id) : state.title;
    entry.action->setToolTip(toolTip(text, *entry.command.shownKey
                                               ? QKeySequence(QLatin1String(entry.command.shownKey))
                                               : entry.command.shortcut));
    if (*entry.command.shownKey) {
        const QKeySequence key(QLatin1String(entry.command.shownKey));
        text += u'\t' + key.toString(QKeySequence::NativeText);
    }
    entry.action->setText(text);
    entry.action->setVisible(state.isShown);
    entry.action->setEnabled(state.isEnabled && state.isShown);
    entry.action->setCheckable(state.isChecked.has_value());
    entry.action->setChecked(state.isChecked.value_or(false));
}
