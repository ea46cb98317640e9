#pragma once

#include "DocumentAnswer.h"
#include "KPHealing.h"
#include "XPMutex.h"

#include <QObject>
#include <condition_variable>
#include <memory>
#include <stop_token>
#include <thread>

// What one document says, for a view that shows it: its text and properties as the importer in its
// cage reads them, the attributes that stand on the file, and which of them were put back after a
// program had dropped them.
//
// The document asked for last is read, whatever came before is cut off. Files of slow volumes
// (network, FUSE) are not read.
// Threads: lives on the main thread; reads on one of its own, with an importer that ends when it
// has nothing to do for a while. The destructor stops and joins.
class KPContentsReader : public QObject
{
    Q_OBJECT

public:
    struct Attribute
    {
        QString name; // in full
        QByteArray bytes;
        PropertyValue value; // null: no property list
    };
    struct Contents
    {
        QString path;
        QString uti;
        bool isRead = false;   // whether the importer was asked, and what it answered
        DocumentAnswer answer; // its failure tells why there is less than all
        QList<Attribute> attributes;
        QStringList unreadable;       // names of attributes that nobody can understand
        QList<KPHealing> healings;    // of this path, the newest first; none that was taken back
        std::optional<XPError> error; // the file cannot be asked at all
    };
    using ContentsPtr = std::shared_ptr<const Contents>;

    // `importer`: the program's path.
    explicit KPContentsReader(QByteArray importer, QObject *parent = nullptr);
    ~KPContentsReader() override;
    // The usual importer.
    static QByteArray usualImporter();

    // `reads`: what the document itself says too. An empty path: nothing is wanted any more.
    void want(const QString &path, bool reads) XP_EXCLUDES(m_mutex);
    // Puts lost attributes on the file again, or takes them off; then the file is read once more.
    void heal(const KPHealing &healing, bool accepts) XP_EXCLUDES(m_mutex);

Q_SIGNALS:
    // Of the path asked for last.
    void ready(const KPContentsReader::ContentsPtr &contents);
    void failed(const XPError &error); // heal()
    void newsWaiting(QPrivateSignal);

private:
    struct Job
    {
        QString path;
        bool reads = false;
        std::optional<KPHealing> healing;
        bool accepts = false;
    };
    class Reading;

    void loop() XP_EXCLUDES(m_mutex);
    void post(Job job) XP_EXCLUDES(m_mutex);
    void receive() XP_EXCLUDES(m_mutex);

    const QByteArray m_importer;
    XPMutex m_mutex;
    std::condition_variable_any m_wake;
    std::optional<Job> m_job XP_GUARDED_BY(m_mutex);
    std::stop_source m_stop XP_GUARDED_BY(m_mutex); // of the job at work
    ContentsPtr m_contents XP_GUARDED_BY(m_mutex);
    std::optional<XPError> m_error XP_GUARDED_BY(m_mutex);
    bool m_quit XP_GUARDED_BY(m_mutex) = false;
    std::thread m_thread;
};
