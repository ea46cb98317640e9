#pragma once

#include "KPFolderContents.h"

#include <QObject>
#include <memory>
#include <thread>

// Reads folders of volumes whose file calls may hang, on a thread of its own, so that only the
// results of these wait.
//
// A thread that a volume never answers is left behind at the end and does nothing more.
// Threads: construct, use and destroy on one thread, which has an event loop.
class KPSlowFolders : public QObject
{
    Q_OBJECT

public:
    KPSlowFolders();
    ~KPSlowFolders() override;

    struct Job
    {
        QByteArray path;
        std::optional<QSet<QByteArray>> only;
        KPFolderContents::How how;
    };
    void read(const Job &job);
    bool isBusy() const { return m_asked != m_taken; }
    std::vector<KPFolderContents> take(); // after folderRead()

Q_SIGNALS:
    void folderRead();

private:
    struct Lane;
    const std::shared_ptr<Lane> m_lane;
    std::thread m_thread;
    qint64 m_asked = 0, m_taken = 0;
};
