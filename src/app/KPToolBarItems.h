#pragma once

#include <QString>
#include <QStringList>
#include <array>

// What the toolbar can hold: identifiers, the default and the allowed set, and the order that the
// user chose. Threads: main.
namespace KPToolBarItems {

enum class Kind {
    Button,     // one command
    Navigation, // back and forward
    Segments,   // commands of which one is chosen
    Menu,       // a command that opens a menu
    Prominent   // the one filled button
};

struct Item
{
    const char *identifier;
    const char *label;   // text id
    const char *tooltip; // text id; empty: what the command says
    Kind kind;
    std::array<const char *, 3> commands; // ids, as in the command tables; unused ones are null
};

// Null: there is none of that identifier.
const Item *item(const QString &identifier);

inline const QString toolBarIdentifier = QStringLiteral("KPMurnKXToolbar");
inline const QString separator = QStringLiteral("KPToolbarSeparator");
inline const QString space = QStringLiteral("KPToolbarSpace");
inline const QString flexibleSpace = QStringLiteral("KPToolbarFlexibleSpace");

QStringList defaultIdentifiers();
QStringList allowedIdentifiers(); // each once, spaces and the separator last
QString label(const QString &identifier);

// The user's set, in the setting named like the toolbar; unknown identifiers are passed over, an
// item stands once, spaces and separators as often as wanted.
QStringList identifiers();
void setIdentifiers(const QStringList &identifiers);
void reset();

} // namespace KPToolBarItems
