#pragma once

#include <QDialog>

// What the program is, its version, and what it is made of: each library with the version that
// this build was made with and its licence.
// Threads: main. It deletes itself when closed.
class KPAboutWindow : public QDialog
{
    Q_OBJECT

public:
    explicit KPAboutWindow(QWidget *parent);
};

// The parts of the program that others made.
struct KPLibraryVersion
{
    const char *name;
    const char *version; // empty: not known
    const char *licence;
};
QList<KPLibraryVersion> kpLibraryVersions();
