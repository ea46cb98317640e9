#pragma once

#include "KPPool.h"

#include <QHash>
#include <QStringList>

// The folders that hold results, as a search delivers them, asked for one level at a time: nothing
// is kept of folders that nobody opened.
// Threads: a value that only refers to its table.
class KPActiveFolders
{
public:
    using Table = QHash<KPPooledString, qsizetype>;
    struct Folder
    {
        QString path;
        qsizetype count = 0; // documents below it
        bool hasChildren = false;
        bool operator==(const Folder &) const = default;
    };

    explicit KPActiveFolders(const Table &table) : m_table(table) {}

    // The folders right below each of these, by name. One walk over the table for all of them.
    QHash<QString, QList<Folder>> below(const QStringList &folders) const;
    // Where a tree of all of them begins: those of `folders` that hold results, in their order.
    QList<Folder> roots(const QStringList &folders) const;

private:
    const Table &m_table;
};
