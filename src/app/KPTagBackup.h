#pragma once

#include "XPError.h"
#include "XPNotificationCenter.h"

#include <QObject>
#include <QStringList>
#include <QTimer>
#include <functional>

class IndexSource;

// Has the tags and ratings backed up while the application runs: once some minutes after its
// launch, then every hour in which it is active. Not without the setting "KPSyncTagsForBackup".
// When the last one that worked was, the setting "KPLastBackup" says.
//
// A backup is made by KarvexSync, on its thread, and asks nobody anything; the last one is ended by
// the destructor.
// Threads: main. Ownership: the source must outlive it.
class KPTagBackup : public QObject
{
    Q_OBJECT

public:
    // Whether the application is active; of the program itself unless given.
    using Activity = std::function<bool()>;
    explicit KPTagBackup(IndexSource &source, Activity isActive = {});
    ~KPTagBackup() override;

    // Backs up now, whatever the setting says.
    void backUpNow();
    // The same, if the setting allows it.
    void doTagSync();
    // The same, unless the application is not active.
    void doTagSyncTimer();

    // In the user's language, as far as there is something to say; else empty.
    const QString &activity() const { return m_activity; }
    const QString &problem() const { return m_problem; } // of the last backup

    // The file in a synchronised folder, where there is one, then the program's own.
    static QStringList locations();

Q_SIGNALS:
    void changed(); // what the two texts say

private:
    void syncDone(const PropertyValue::Dictionary &result);

    IndexSource &m_source;
    const Activity m_isActive;
    QTimer m_hourly;
    int m_running = 0;
    QString m_activity;
    QString m_problem;
    XPObservation m_observation;
};
