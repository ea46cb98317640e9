#include "KPBatchEdit.h"

#include "XPNotificationCenter.h"
#include "XPPrompts.h"

#include <QCoreApplication>
#include <QLocale>
#include <algorithm>

const QString KPBatchEdit::changingRatings = QStringLiteral("documentsChangingRatings");
const QString KPBatchEdit::changingTags = QStringLiteral("documentsChangingTags");

static KPBatchEdit *instance = nullptr;

KPBatchEdit *KPBatchEdit::current()
{
    return instance;
}

KPBatchEdit::KPBatchEdit(KPEditHistory *history, KPEditWorker *worker, QObject *parent)
    : QObject(parent), m_history(history), m_worker(worker)
{
    instance = this;
    connect(worker, &KPEditWorker::reported, this, &KPBatchEdit::reported);
    connect(worker, &KPEditWorker::progressed, this, [this](qsizetype done, qsizetype total) {
        if (m_running > 0)
            Q_EMIT progressed(done, total);
    });
}

KPBatchEdit::~KPBatchEdit()
{
    if (instance == this)
        instance = nullptr;
}

bool KPBatchEdit::needToSetTags(const QStringList &originalTags, const QStringList &newTags)
{
    return originalTags != newTags;
}

bool KPBatchEdit::needToSet(const KPFileEdit &edit)
{
    if (edit.paths.isEmpty())
        return false;
    return edit.rating || edit.rename || edit.comment || edit.repairs ||
           (edit.tags && needToSetTags(edit.tags->before, edit.tags->after));
}

void KPBatchEdit::replaceOriginalTags(const KPFileEdit &edit, bool confirmWhenChangingManyFiles,
                                      QObject *reportChangesOverView)
{
    if (!needToSet(edit))
        return;
    const qsizetype count = edit.paths.size();
    if (!confirmWhenChangingManyFiles || count < asksFrom) {
        perform(edit, reportChangesOverView);
        return;
    }
    const QString number = QLocale().toString(count);
    if (count > mostFiles) {
        XPPrompts::current().alert(qtTrId("XPRefuseToEditTagsManyDocumentsTitle"),
                                   qtTrId("XPRefuseToEditTagsManyDocumentsComments")
                                       .arg(number, QLocale().toString(mostFiles)));
        return;
    }
    XPPrompts::current().ask({qtTrId("XPEditTagsManyDocumentsTitle").arg(number),
                              qtTrId("XPEditTagsManyDocumentsComments").arg(number),
                              {qtTrId("XPEditTagsManyDocumentsOKButton"), qtTrId("XPCancel")},
                              1},
                             [this, self = QPointer<KPBatchEdit>(this), edit,
                              view = QPointer<QObject>(reportChangesOverView)](int answer) {
                                 if (self && answer == 0)
                                     perform(edit, view);
                             });
}

void KPBatchEdit::perform(const KPFileEdit &edit, QObject *view)
{
    KPFileEdit needed = edit;
    if (edit.tags && !needToSetTags(edit.tags->before, edit.tags->after))
        needed.tags.reset();
    const bool showsProgress = needed.paths.size() >= showsProgressFrom;
    m_pending.append({needed, showsProgress ? nullptr : view, showsProgress});
    if (showsProgress && m_running++ == 0)
        Q_EMIT began(needed.paths.size());
    m_history->edit(needed);
}

QString KPBatchEdit::reportText(const KPFileEdit &edit, qsizetype changed)
{
    const auto count = static_cast<int>(changed);
    const QString number = QLocale().toString(changed);
    if (edit.rating && edit.changesTags())
        return changed < 1 ? qtTrId("KPReportNoTagsOrRatingsChanges")
                           : qtTrId("KPReportTagsAndRatingsChanges", count).arg(number);
    if (edit.rating)
        return changed < 1 ? qtTrId("KPReportNoRatingsChanges")
                           : qtTrId("KPReportRatingsChanges", count).arg(number);
    return changed < 1 ? qtTrId("KPReportNoTagsChanges")
                       : qtTrId("KPReportTagsChanges", count).arg(number);
}

void KPBatchEdit::reported(const KPEditReport &report)
{
    const KPFileEdit &edit = report.edit;
    const auto pending = std::find_if(m_pending.begin(), m_pending.end(),
                                      [&edit](const Pending &each) { return each.edit == edit; });
    if (pending != m_pending.end()) {
        const Pending done = *pending;
        m_pending.erase(pending);
        if (done.showsProgress && --m_running == 0)
            Q_EMIT ended();
        if (done.view)
            Q_EMIT toReport(done.view, reportText(edit, report.total - report.failures.size()));
    }
    const PropertyValue::Dictionary paths{{QStringLiteral("paths"), edit.paths}};
    if (edit.rating)
        XPNotificationCenter::instance().post(changingRatings, {}, paths);
    if (edit.changesTags())
        XPNotificationCenter::instance().post(changingTags, {}, paths);
    Q_EMIT finished(edit);
}
