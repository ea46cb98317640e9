#pragma once

#include "KPSearchState.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <utility>

class KPCrumbController;

// The documents that came into the library last. Those that are moved or renamed stay in the list,
// and in the list of files that the window shows just then.
// Threads: main. Ownership: the controller must outlive it.
class KPLastImport : public QObject
{
    Q_OBJECT

public:
    explicit KPLastImport(KPCrumbController &controller, QObject *parent = nullptr);

    // A list of files, in no place.
    KPSearchState::Ptr searchState() const;
    void setPaths(const QStringList &paths);
    // Many may come at once: the lists follow when control returns to the event loop.
    void pathChanged(const QString &oldPath, const QString &newPath);

Q_SIGNALS:
    void changed();

private:
    void follow();

    KPCrumbController &m_controller;
    QStringList m_paths;
    QList<std::pair<QString, QString>> m_moved; // in their order: from and to
    QTimer m_follow;
};
