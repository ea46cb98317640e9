#pragma once

#include "XPError.h"

#include <QStringList>

// What the desktop does with the user's files: opening and showing them. What was opened stands in
// its list of recently used files (XPRecentFiles).
// Threads: the main thread. Nothing here waits for another program, unless it says so.
namespace XPWorkspace {

// Opens the file with the program that the desktop has chosen for its type. The answer is
// whether there was somebody to ask; that program's own failures are its own business.
std::optional<XPError> open(const QString &path);

// The same with a program of the user's choice, by the name of its desktop entry
// ("org.example.App.desktop"). NotFound when no such program is installed.
std::optional<XPError> openWith(const QStringList &paths, const QString &desktopEntry);

// Shows the files, selected, in the file manager (org.freedesktop.FileManager1); where there is
// none, opens the folder of the first.
void reveal(const QStringList &paths);

// The same for a program that ends at once: waits for the answer. An error: there is nobody to
// show them.
std::optional<XPError> revealAndWait(const QStringList &paths);

} // namespace XPWorkspace
