#pragma once

#include "KPEditHistory.h"

#include <QPointer>

// The change of many documents at once, as windows ask for it: asks the user where it is large,
// hands it to the history, and tells in the end.
//
// At the end it posts "documentsChangingRatings" and "documentsChangingTags" with all paths that
// were handed in ("paths" in the user information), whatever came of them.
// Threads: main. Exactly one exists; history and worker outlive it.
class KPBatchEdit : public QObject
{
    Q_OBJECT

public:
    static constexpr qsizetype asksFrom = 21;
    static constexpr qsizetype mostFiles = 150000;
    static constexpr qsizetype showsProgressFrom = 11;

    KPBatchEdit(KPEditHistory *history, KPEditWorker *worker, QObject *parent = nullptr);
    ~KPBatchEdit() override;
    static KPBatchEdit *current(); // null while there is none

    // Whether anything would change.
    static bool needToSet(const KPFileEdit &edit);
    static bool needToSetTags(const QStringList &originalTags, const QStringList &newTags);

    // `reportChangesOverView`: where a short message says what was done; null: nowhere.
    void replaceOriginalTags(const KPFileEdit &edit, bool confirmWhenChangingManyFiles,
                             QObject *reportChangesOverView = nullptr) XP_REQUIRES(xpGuiThread);
    void stopWritingTags() { m_worker->stop(); }

    // "3 documents tagged": what an edit did, for the message over a view.
    static QString reportText(const KPFileEdit &edit, qsizetype changed);

    static const QString changingRatings; // "documentsChangingRatings"
    static const QString changingTags;    // "documentsChangingTags"

Q_SIGNALS:
    void began(qsizetype files); // so many that their progress is to be seen
    void progressed(qsizetype done, qsizetype total);
    void ended();
    void toReport(QObject *view, const QString &text);
    void finished(const KPFileEdit &edit); // written, as far as it could be

private:
    void perform(const KPFileEdit &edit, QObject *view);
    void reported(const KPEditReport &report);

    KPEditHistory *m_history;
    KPEditWorker *m_worker;
    // Edits that came this way and are not reported yet; others go straight to the history.
    struct Pending
    {
        KPFileEdit edit;
        QPointer<QObject> view;
        bool showsProgress = false;
    };
    QList<Pending> m_pending;
    qsizetype m_running = 0; // of those with progress
};
