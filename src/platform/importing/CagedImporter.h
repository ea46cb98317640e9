#pragma once

#include "ImportAttempts.h"
#include "IndexImporter.h"

#include <QStringList>

// The index's importer: has the caged program read what it can read.
//
// Types are asked of the program itself, which is started for it. While it cannot be started every
// type is accepted and no file can be read: so nothing that was imported before is forgotten. A
// document that breaks it is
// tried once more at once when it crashed, at the next start when it took too long; see
// ImportAttempts. One that is left alone counts as imported, with nothing in it.
// Threads: as IndexImporter; accepts() from any.
class CagedImporter : public IndexImporter
{
public:
    // `attempts`: the file of ImportAttempts.
    CagedImporter(const ImportWorker::Setup &setup, const QString &attempts);

    // Has every index that this process opens from now on read documents so. `manners`: when to
    // stand still; outlives the index; null: never.
    // An index whose contents somebody waits for never stands still. Before the index is opened.
    static void install(const QString &storePath, ImportManners *manners = nullptr);
    // Where the attempts of the index at `storePath` are written down.
    static QString attemptsOf(const QString &storePath);

    bool accepts(const QString &type) const override;
    XPResult<Content> import(const QByteArray &path, const QString &type,
                             const std::stop_token &stop) override;

private:
    XPResult<ImportHello> hello() const;
    XPResult<Content> contentOf(const ImportDocument &document, const ImportFrame &frame);

    mutable XPMutex m_mutex; // held while the program starts
    mutable std::optional<XPResult<ImportHello>> m_hello XP_GUARDED_BY(m_mutex);
    mutable ImportWorker m_worker; // under the lock until m_hello is there, then import()'s
    ImportAttempts m_attempts;
};
