#pragma once

#include "KPCommandTable.h"
#include "XPDocumentImport.h"
#include "XPMutex.h"

#include <QObject>

class KPDocumentTargets;

// The window's commands that write documents to an archive and bring them back. The work is done on
// the file worker; an import first shows what it would change.
// Ownership: not of the targets, which outlive it. Threads: main.
class KPArchiveCommands : public QObject
{
    Q_OBJECT

public:
    // `results`: all documents that are shown, for the command that exports them.
    KPArchiveCommands(KPDocumentTargets &targets, std::function<QStringList()> results,
                      QObject *parent = nullptr);

    QList<KPCommand> commands();

    void exportSelectedAction() XP_REQUIRES(xpGuiThread);
    void exportSearchResultsAction() XP_REQUIRES(xpGuiThread);
    void importAction() XP_REQUIRES(xpGuiThread);

private:
    void exportPaths(const QStringList &paths) XP_REQUIRES(xpGuiThread);
    void chooseFolder(const QString &archive) XP_REQUIRES(xpGuiThread);
    void preview(const QString &archive, const QString &folder) XP_REQUIRES(xpGuiThread);

    KPDocumentTargets &m_targets;
    const std::function<QStringList()> m_results;
};
