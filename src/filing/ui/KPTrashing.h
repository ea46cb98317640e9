#pragma once

#include "XPFileDeeds.h"
#include "XPMutex.h"

#include <functional>
#include <memory>

class KPDoc;
struct XPProgressTask;

// Throws documents away, one after the other, with progress and a stop between two of them. Those
// that only an administrator may move are asked for at the end, one by one, until the user says no;
// what could not be moved is told in one alert.
// Threads: main. Keeps itself until it is over.
class KPTrashing : public std::enable_shared_from_this<KPTrashing>
{
public:
    // What went to the trash, for undo.
    using Done = std::function<void(const QList<XPFileDeeds::Chain> &)>;

    static void start(const QList<KPDoc *> &docs, Done done) XP_REQUIRES(xpGuiThread);

private:
    KPTrashing(const QList<KPDoc *> &docs, Done done);
    void next() XP_REQUIRES(xpGuiThread);
    void askForRights() XP_REQUIRES(xpGuiThread);
    void failed(const KPDoc *doc, const XPError &error);
    void finish() XP_REQUIRES(xpGuiThread);

    QList<KPDoc *> m_docs; // that are left
    const Done m_done;
    std::shared_ptr<XPProgressTask> m_task;
    QList<KPDoc *> m_denied;
    QList<XPFileDeeds::Chain> m_deeds;
    QStringList m_failed; // names
    QString m_reason;     // of the first
};
