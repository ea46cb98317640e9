#include "KPLastImport.h"

#include "KPCrumbController.h"
#include "KPLastImportItem.h"

#include <QHash>

KPLastImport::KPLastImport(KPCrumbController &controller, QObject *parent)
    : QObject(parent), m_controller(controller)
{
    m_follow.setSingleShot(true);
    connect(&m_follow, &QTimer::timeout, this, &KPLastImport::follow);
}

static KPSearchState::Ptr stateOf(const QStringList &paths)
{
    return KPSearchState::blankSearchState()->searchStateWithNewFileList(paths);
}

KPSearchState::Ptr KPLastImport::searchState() const
{
    return stateOf(m_paths);
}

void KPLastImport::setPaths(const QStringList &paths)
{
    if (paths == m_paths)
        return;
    m_paths = paths;
    Q_EMIT changed();
}

void KPLastImport::pathChanged(const QString &oldPath, const QString &newPath)
{
    m_moved.append({oldPath, newPath});
    m_follow.start();
}

static QStringList moved(QStringList paths, const QList<std::pair<QString, QString>> &moves)
{
    QHash<QString, qsizetype> places;
    for (qsizetype at = 0; at < paths.size(); ++at)
        places.insert(paths[at], at);
    for (const auto &[from, to] : moves) {
        const auto found = places.constFind(from);
        if (found == places.cend())
            continue;
        const qsizetype at = *found;
        places.erase(found);
        places.insert(to, at);
        paths[at] = to;
    }
    return paths;
}

void KPLastImport::follow()
{
    const auto moves = std::exchange(m_moved, {});
    setPaths(moved(m_paths, moves));
    const KPSearchState::Ptr state = m_controller.searchState();
    if (!state || !state->isFileListSearch())
        return;
    const QStringList shown = state->fileListSearch();
    const QStringList now = moved(shown, moves);
    if (now == shown)
        return;
    // The row and the crumb bear the name of a file that came alone.
    std::shared_ptr<KPBaseItem> item;
    if (std::dynamic_pointer_cast<KPLastImportItem>(m_controller.sourceItem()))
        item = std::make_shared<KPLastImportItem>(stateOf(now));
    m_controller.navigator().setSearchStateAndUpdateUI(state->searchStateWithNewFileList(now),
                                                       false, item);
}
