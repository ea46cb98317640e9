#pragma once

#include "KarvexMerge.h"
#include "KarvexProgress.h"

#include <QSet>

class IndexSource;

// Gives files back the tags and ratings that a backup has of them.
//
// What becomes of a file KarvexMerge decides. A file that is not at its path any more is looked for
// by name: where just one file has the name, and no record of its own, that one is treated as it;
// several are only listed. Threads: any but main. Reads and writes the files: one that hangs holds
// the run up.
class KarvexRestore
{
public:
    struct Change : KarvexMerge::Result
    {
        QString path;
        QString recordedAt; // the path in the backup
    };
    struct Several
    {
        QString recordedAt;
        QStringList candidates;
    };
    struct Result
    {
        std::optional<XPError> error; // nothing usable: no backup, or not readable
        qsizetype records = 0;
        QList<Change> changes; // done, or to be done
        QList<Several> several;
        qsizetype missing = 0;   // files that are nowhere
        QList<XPError> failures; // by file
        bool stopped = false;
        QString status; // "3 restores done", or what failed
    };
    struct Options
    {
        bool dryRun = false; // only finds out
        // Only the files that have these paths in the backup; nothing: all of them.
        std::optional<QSet<QString>> only = {};
        KarvexProgress progress = {};
    };

    KarvexRestore(IndexSource &source, Options options);
    Result readSingleFile(const QString &path);

private:
    void restore(const KarvexBackupRecord &record, const QString &path);
    void findMissing();
    void searchAndRestore(const QList<KarvexBackupRecord> &records);
    std::optional<QStringList> filesNamed(const QString &name) const;

    IndexSource &m_source;
    const Options m_options;
    KarvexBackupFile::Records m_records;
    QList<KarvexBackupRecord> m_missing;
    qsizetype m_done = 0;
    Result m_result;
};
