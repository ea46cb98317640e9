#pragma once

#include <QAction>
#include <QHash>
#include <QKeySequence>
#include <QList>
#include <QMenu>
#include <functional>
#include <optional>
#include <vector>

class QMenuBar;

// The menus of the window's bar, in their order.
enum class KPCommandMenu { File, Edit, View, Go, Documents, Tags, Window, Help };

// How a command stands at the moment.
struct KPCommandState
{
    bool isEnabled = true;
    std::optional<bool> isChecked = std::nullopt; // nothing: it is not one that is checked
    const char *text = nullptr; // another text id than the command's own ("Hide …" for "Show …")
    QString title = {};         // the text itself, where it says more ("Undo Renaming")
    bool isShown = true;        // false: what it works on is not there, so that it is not either
};

// One command of the program. Each feature has a table of its own; the window composes its menu
// bar, toolbar and contextual menus from all of them.
struct KPCommand
{
    const char *id; // the id of its text, by which it is also found
    KPCommandMenu menu;
    QKeySequence shortcut = {};
    std::function<void()> run = {};
    std::function<KPCommandState()> state = {}; // absent: always enabled
    const char *symbol = "";                    // of data/icons; shown in the toolbar
    bool isOnDocuments = false;                 // in the contextual menu of documents too
    bool endsGroup = false;                     // a separator follows
    const char *shownKey = "";             // a key that a view takes by itself, shown with the text
    std::function<QMenu *()> submenu = {}; // made once; the command only opens it
};

// The actions of all tables: each command is one QAction, wherever it is shown. States are asked
// when a menu opens and at update(), so that none is out of date.
// Ownership: actions and menus are children of this. Threads: main.
class KPCommands : public QObject
{
    Q_OBJECT

public:
    explicit KPCommands(QObject *parent = nullptr);
    ~KPCommands() override;

    // Adds a feature's commands, after those that are there.
    void add(const QList<KPCommand> &table);
    // Null: there is no such command.
    QAction *action(const char *id) const;
    // Fills the bar with a menu a group; menus without a command are left out. Once, after the last
    // add().
    void fill(QMenuBar *bar);
    // The commands on documents, with their separators.
    void fillDocumentsMenu(QMenu *menu) const;
    // Asks every state again.
    void update();

Q_SIGNALS:
    void updated();

private:
    struct Entry
    {
        KPCommand command;
        QAction *action = nullptr;
    };

    void update(const Entry &entry) const;

    std::vector<Entry> m_entries;
    QHash<QByteArray, QAction *> m_byId;
};
