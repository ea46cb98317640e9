#pragma once

#include "KPDocServices.h"
#include "XPFileWorker.h"

#include <QObject>
#include <QStringList>

// What document records ask of the application: the thread for file calls, and the window's views.
// Threads: main, but for clearCacheForPath().
class KPAppServices : public QObject, public KPDocServices
{
    Q_OBJECT

public:
    // On the file worker, where the pause after each mark holds up nobody. What fails is logged.
    bool setManaged(bool managed, const QString &path) override;
    void clearCacheForPath(const QString &path) override;
    // In the window by its tag editor's road, undoable; without a window written at once.
    void replaceOriginalTags(const TagChange &change) override;
    void revealInLibrary(const QStringList &paths) override;
    void pathChanged(const QString &oldPath, const QString &newPath) override;
    void openInfoWindow(const QStringList &paths) override;
    void importDropped(const QMimeData &data, const QString &folder, bool copies) override;
    void documentsImported(const QStringList &paths) override;
    void runFileWork(std::function<void()> work, std::function<void()> done) override;

Q_SIGNALS:
    void revealAsked(const QStringList &paths);
    void infoAsked(const QStringList &paths);
    void importAsked(const QMimeData *data, const QString &folder, bool copies);
    void imported(const QStringList &paths);
    void pathMoved(const QString &oldPath, const QString &newPath); // of a record

private:
    XPFileWorker m_worker;
};
