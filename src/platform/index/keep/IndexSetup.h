#pragma once

#include <QString>
#include <QStringList>
#include <chrono>

// What an index is made of and from.
// Threads: a value.
struct IndexSetup
{
    QString path; // of the store; empty: in memory only
    QStringList roots;
    QStringList rules;      // folders that are left out; see IndexRules
    QString recents;        // the desktop's list of recently used files; empty: none
    bool waitedFor = false; // somebody waits for the contents: read them at normal priority
    // How often folders without a watch, and volumes that others change, are read again.
    std::chrono::milliseconds unwatchedInterval = std::chrono::seconds(30);
    std::chrono::milliseconds distantInterval = std::chrono::minutes(5);
    std::chrono::seconds patience = std::chrono::seconds(10); // until a root counts as silent
};
