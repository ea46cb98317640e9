#include "KPForgetting.h"

#include "KPRecentTagGroups.h"
#include "KarvexPrefs.h"
#include "UserDefaults.h"
#include "XPRecentDestinations.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

static std::function<void()> removing(const QString &key)
{
    return [key] { UserDefaults::standard().remove(key); };
}

const QList<KPForgetting::Memory> &KPForgetting::memories()
{
    static const QList<Memory> all = {
        {QT_TRID_NOOP("KPPrefForgetSearches"), removing(QStringLiteral("KPRecentSearches"))},
        {QT_TRID_NOOP("KPPrefForgetTags"),
         [] { (void)KarvexPrefs::removeTagsFromRecents(KarvexPrefs::recentTags()); }},
        {QT_TRID_NOOP("KPPrefForgetTagGroups"), removing(KPRecentTagGroups::settingsKey)},
        {QT_TRID_NOOP("KPPrefForgetDestinations"), removing(XPRecentDestinations::key)},
    };
    return all;
}

QWidget *KPForgetting::makeRow(const Memory &memory)
{
    auto *row = new QWidget;
    auto *label = new QLabel(qtTrId(memory.text));
    auto *button = new QPushButton(qtTrId("KPPrefForget"));
    button->setAutoDefault(false);
    button->setAccessibleName(qtTrId("KPPrefForgetNamed").arg(label->text()));
    auto *line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(label, 1);
    line->addWidget(button);
    QObject::connect(button, &QPushButton::clicked, button, [forget = memory.forget, button] {
        forget();
        button->setEnabled(false); // seen to be done; the next window has it again
    });
    return row;
}
