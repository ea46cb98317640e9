#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

// How the window looks beyond what the palette's roles say: tints, type sizes, measures.
//
// Roles: Window is the chrome, AlternateBase a panel, Base a field, Mid a line, PlaceholderText a
// muted text, Highlight the accent. Tints are made of these, so that they hold in light and dark
// and with the colours of a desktop that has its own.
// Measures are in device-independent pixels, all multiples of 4. Threads: main.
namespace KPLook {

enum class Type { Caption, Facts, Body, Title, Heading }; // 11, 12, 13, 14 and 24 on a body of 13

// The application's font in that size; captions and titles are semibold.
QFont font(Type type);

bool isDark(const QPalette &palette);
QColor line(const QPalette &palette);
QColor muted(const QPalette &palette);
QColor panel(const QPalette &palette);
QColor hover(const QPalette &palette);     // 5 % of the text
QColor selection(const QPalette &palette); // the accent, as a tint
QColor chip(const QPalette &palette);      // the same, lighter
QColor star(const QPalette &palette);
QColor flag(const QPalette &palette);
// The text in filter mode: brown, readable on a field.
QColor brown(const QPalette &palette);
// What documents lie on, and the text on it: the settings "KPLibraryBackgroundColour" and
// "KPLibraryTextColour" where the user chose them, else what goes with the palette.
QColor desk(const QPalette &palette);
QColor deskText(const QPalette &palette);

constexpr int controlHeight = 32;
constexpr int controlRadius = 7;
constexpr int toolBarHeight = 48;
constexpr int crumbBarHeight = 36;
constexpr int bookmarkBarHeight = 32;
constexpr int statusHeight = 28;

// Of what stands below the words beside a check box.
inline constexpr int boxIndent = 24;

} // namespace KPLook
