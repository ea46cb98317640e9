#pragma once

#include "IndexRecord.h"

#include <QHash>
#include <QStringList>
#include <deque>
#include <functional>

// A file that came in the place of another one and lacks attributes that the other had.
struct IndexLoss
{
    QByteArray path;
    IndexRecord::Attributes attributes; // of the file before, all of them; see IndexRecord
    QStringList present;                // names of those that it has now
    QString typeBefore;                 // content types
    QString type;
    // It was seen: renamed over the other one, or made anew within two seconds. Otherwise the file
    // is just another one than when the index looked last, whenever that happened.
    bool isSeen = false;
};

// Notices such files while changes are applied: most programs save by writing a new file and
// putting it in the old one's place. Only tells of them.
// Threads: the writer's. Times are milliseconds of a steady clock.
class IndexLosses
{
public:
    using Report = std::function<void(IndexLoss)>;
    explicit IndexLosses(Report report) : m_report(std::move(report)) {}

    // The file was deleted or renamed away, at this time.
    void gone(const QByteArray &path, const IndexRecord &record, qint64 time);
    // A file is new at the path; one that went from there shortly before counts as its predecessor.
    void made(const QByteArray &path, const IndexRecord &record, qint64 time);
    // The file at the path is another one now.
    void replaced(const QByteArray &path, const IndexRecord &before, const IndexRecord &now,
                  bool isSeen) const;

    static qint64 now();

private:
    struct Gone
    {
        IndexRecord record;
        qint64 time;
    };
    const Report m_report;
    QHash<QByteArray, Gone> m_gone; // of the last two seconds, files with attributes only
    std::deque<std::pair<QByteArray, qint64>> m_inOrder; // the same by their time, oldest first
};
