#include "KPMirrorQuestion.h"

#include "KPDocMetaData.h"
#include "KPDocServices.h"
#include "KarvexMirror.h"
#include "UserDefaults.h"
#include "XPPrompts.h"

#include <QPointer>

KPMirrorQuestion::KPMirrorQuestion(KPEditWorker *worker, QObject *parent) : QObject(parent)
{
    connect(worker, &KPEditWorker::reported, this, &KPMirrorQuestion::edited);
}

static bool desktopHasTags()
{
    const QString query = QStringLiteral("%1 == * || %2 == *")
                              .arg(KarvexFacts::desktopTagsKey, KarvexFacts::desktopRatingKey);
    bool found = false;
    KPDocMetaData::indexedPaths(query, KarvexFacts::desktopTagsKey, [&](const PropertyValue &) {
        found = true;
        return false; // no need of the path
    });
    return found;
}

void KPMirrorQuestion::edited(const KPEditReport &report)
{
    xpGuiThread.assertHere();
    if (m_isAsking || report.changed == 0 || KarvexMirror::wasAsked())
        return;
    m_isAsking = true;
    auto found = std::make_shared<bool>(false);
    KPDocServices::current().runFileWork([found] { *found = desktopHasTags(); },
                                         [self = QPointer(this), found] {
                                             if (!self)
                                                 return;
                                             self->m_isAsking = *found;
                                             if (*found)
                                                 self->ask();
                                         });
}

void KPMirrorQuestion::ask()
{
    xpGuiThread.assertHere();
    XPPrompts::current().ask({qtTrId("KPMirrorQuestionTitle"),
                              qtTrId("KPMirrorQuestionText"),
                              {qtTrId("KPMirrorQuestionYes"), qtTrId("KPMirrorQuestionNo")},
                              1},
                             [](int answer) {
                                 UserDefaults::standard().setValue(
                                     KarvexMirror::settingsKey,
                                     PropertyValue::boolean(answer == 0));
                             });
}
