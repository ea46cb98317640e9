#pragma once

#include <QList>
#include <QString>

// The programs of the desktop that can open a file, by its name.
// Threads: main. Nothing here opens the file.
namespace XPApplications {

struct Application
{
    QString name;         // for people
    QString desktopEntry; // "org.example.App.desktop"
    QString iconName;     // of the icon theme; may be empty

    bool operator==(const Application &) const = default;
};

// The usual one first.
QList<Application> forFile(const QString &path);
// Those that show folders, the same.
QList<Application> forFolders();
// Every program that a person would start and that takes files, by name.
QList<Application> all();
// Whether one of that desktop entry is installed.
bool isInstalled(const QString &desktopEntry);
// Whether one start opens many files; else each file is a start of its own.
bool takesMany(const QString &desktopEntry);

} // namespace XPApplications
