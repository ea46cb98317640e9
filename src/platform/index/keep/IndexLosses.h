#pragma once

#include "IndexLoss.h"
#include "IndexRecord.h"

#include <QHash>
#include <deque>

// Notices files that lack attributes of the one before while changes are applied: most programs
// save by writing a new file and putting it in the old one's place. Only tells of them. Threads:
// the writer's. Times are milliseconds of a steady clock.
class IndexLosses
{
public:
    explicit IndexLosses(IndexLoss::Report report) : m_report(std::move(report)) {}

    // The file was deleted or renamed away, at this time.
    void gone(const QByteArray &path, const IndexRecord &record, qint64 time);
    // A file is new at the path; one that went from there shortly before counts as its predecessor.
    void made(const QByteArray &path, const IndexRecord &record, qint64 time);
    // The file at the path is another one now.
    void replaced(const QByteArray &path, const IndexRecord &before, const IndexRecord &now,
                  bool isSeen) const;

    static qint64 now();
    // By inode and birth, of which the index keeps the seconds.
    static bool isSameFile(const XPFileInfo &one, const XPFileInfo &other);

private:
    struct Gone
    {
        IndexRecord record;
        qint64 time;
    };
    const IndexLoss::Report m_report;
    QHash<QByteArray, Gone> m_gone; // of the last two seconds, files with attributes only
    std::deque<std::pair<QByteArray, qint64>> m_inOrder; // the same by their time, oldest first
};
