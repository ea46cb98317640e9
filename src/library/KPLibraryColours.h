#pragma once

#include <QColor>
#include <QPalette>

// The colours of the documents' desk.
//
// The settings "KPLibraryBackgroundColour" and "KPLibraryTextColour" hold when the user chose
// them; with the factory values a dark desktop gets the palette's.
// Threads: main.
struct KPLibraryColours
{
    explicit KPLibraryColours(const QPalette &palette);

    QPalette palette; // of the desk: its Base and Text are those below
    QColor background;
    QColor text;
    QColor muted;
    QColor accent;
    QColor selection; // behind a selected document
    QColor hover;
    QColor line;
    QColor star;
    QColor flag;
    QColor shadow;
    bool isDark = false;
};
