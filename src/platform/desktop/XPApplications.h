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
};

// The usual one first.
QList<Application> forFile(const QString &path);

} // namespace XPApplications
