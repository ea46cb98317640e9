#pragma once

#include "XPError.h"

#include <QByteArrayList>
#include <QStringList>

// What the program was asked for on its command line.
// Threads: a value; parse() before other threads, it looks whether files and folders exist.
struct KPCommandLine
{
    enum class Action { ShowWindow, ShowHelp, ShowVersion };
    enum class ColourScheme { Desktop, Light, Dark };

    Action action = Action::ShowWindow;
    QStringList folders; // absolute, by their links' targets; empty: the user's home
    QStringList urls;    // to open: addresses as they were given, files and folders as `file:`
    std::optional<QString> searchText; // empty: what is selected or copied
    bool filesClipboard = false;
    QString documentsAction;    // what is to be done with `urls`, as XPApplicationBus calls it
    bool isNewInstance = false; // beside one that runs
    QString screenshot;         // where to put a picture of the window; empty: none
    QString selection;          // for that picture: select the documents whose names begin so
    ColourScheme colours = ColourScheme::Desktop;

    // The arguments as bytes, program name first: a folder's name need not be valid UTF-8.
    static XPResult<KPCommandLine> parse(const QByteArrayList &arguments);
    static QString helpText();
};
