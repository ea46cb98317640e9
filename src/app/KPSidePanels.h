#pragma once

#include "KPCommandTable.h"

#include <QObject>
#include <memory>

class IndexSource;
class KPBookmarkCommands;
class KPBookmarks;
class KPCloudController;
class KPController;
class KPCrumbTrail;
class KPFolderFollower;
class KPLastImport;
class KPRowCounts;
class KPSourceList;
class QUndoStack;
struct XPError;

// What stands around the results: the source list, the tag clouds, the crumb trail, the bookmark
// bar and panel, the locations. Makes them, puts each into its place of the window and connects
// them; what they do is theirs. Threads: main. Ownership: the widgets are the window's.
class KPSidePanels : public QObject
{
    Q_OBJECT

public:
    // All must outlive it. `history`: the window's undo stack.
    KPSidePanels(KPController &window, IndexSource &source, QUndoStack &history);
    ~KPSidePanels() override;

    QList<KPCommand> commands();
    void writeOutState() const;
    KPLastImport &lastImport() { return *m_lastImport; }
    // Crumbs offer other things while a key is held.
    void modifiersChanged(Qt::KeyboardModifiers modifiers);

Q_SIGNALS:
    void left(); // the focus is wanted at the results

private:
    void makeBars();
    void makePanels();
    void showBookmarkMenu(const QStringList &identifiers, const QPoint &globalPosition);
    void tellFailed(const QString &what, const XPError &error);

    KPController &m_window;
    std::unique_ptr<KPBookmarks> m_bookmarks;
    std::unique_ptr<KPFolderFollower> m_follower;
    std::unique_ptr<KPLastImport> m_lastImport;
    std::unique_ptr<KPRowCounts> m_counts;
    std::unique_ptr<KPBookmarkCommands> m_bookmarkCommands;
    KPCrumbTrail *m_trail = nullptr;
    KPSourceList *m_sourceList = nullptr;
    KPCloudController *m_cloud = nullptr;
};
