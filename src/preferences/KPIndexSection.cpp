#include "KPIndexSection.h"

#include "IndexSettings.h"
#include "KPDocServices.h"
#include "KPIndexMonitor.h"
#include "KPIndexTexts.h"
#include "KPListEditor.h"
#include "UserDefaults.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QLabel>
#include <QLocale>
#include <QPointer>
#include <QVBoxLayout>

// --- Its state

KPIndexStatusSection::KPIndexStatusSection(KPIndexMonitor &index, QWidget *parent)
    : QWidget(parent), m_index(index), m_state(new QLabel), m_problems(new QLabel)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    for (QLabel *label : {m_state, m_problems}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        column->addWidget(label);
    }
    connect(&index, &KPIndexMonitor::changed, this, &KPIndexStatusSection::refresh);
    refresh();
}

void KPIndexStatusSection::refresh()
{
    const IndexStatus &status = m_index.status();
    const auto count = static_cast<int>(std::min<qint64>(status.items, 2'000'000'000));
    QString state = qtTrId("KPPrefIndexHolds", count).arg(QLocale().toString(status.items));
    const QString activity = m_index.activity();
    state += u' ' + (activity.isEmpty() ? qtTrId("KPPrefIndexUpToDate") : activity);
    m_state->setText(state);
    QStringList problems;
    for (const IndexProblem &problem : status.problems) {
        const QString remedy = KPIndexTexts::remedy(problem);
        problems.append(QStringLiteral("⚠ ") + KPIndexTexts::problem(problem) +
                        (remedy.isEmpty() ? QString() : u' ' + remedy));
    }
    m_problems->setText(problems.join(u'\n'));
    m_problems->setVisible(!problems.isEmpty());
}

// --- Its lists

static void forget(const QString &key, KPIndexMonitor &index)
{
    UserDefaults::standard().remove(key);
    index.settingsChanged();
}

static bool isFactory(const QString &key)
{
    return !UserDefaults::standard().isSaved(key);
}

KPIndexListSection::KPIndexListSection(What what, KPIndexMonitor &index, QWidget *parent)
    : QWidget(parent), m_list(what == What::Roots ? makeRoots(index) : makeRules(index))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_list);
    const QString key = what == What::Roots ? IndexSettings::rootsKey : IndexSettings::rulesKey;
    m_observation = UserDefaults::standard().addObserver(
        QStringLiteral("values.") + key, [this](const PropertyValue &) { m_list->refresh(); });
}

// The folder is looked at where file calls may wait.
static void addRoot(const QString &folder, KPIndexMonitor *index)
{
    xpGuiThread.assertHere();
    auto real = std::make_shared<QString>();
    KPDocServices::current().runFileWork(
        [real, folder] { *real = XPFolders::realFolder(folder).valueOr(QString()); },
        [real, index = QPointer(index)] {
            if (index && !real->isEmpty())
                index->addFolder(*real);
        });
}

KPListEditor *KPIndexListSection::makeRoots(KPIndexMonitor &index)
{
    return new KPListEditor(qtTrId("KPPrefRoots"), qtTrId("KPPrefRootsHint"),
                            {.entries = &IndexSettings::roots,
                             .add =
                                 [&index](const QString &folder) {
                                     addRoot(folder, &index);
                                     return QString();
                                 },
                             .remove =
                                 [&index](const QStringList &folders) {
                                     QStringList roots = IndexSettings::roots();
                                     for (const QString &folder : folders)
                                         roots.removeAll(folder);
                                     IndexSettings::setRoots(roots);
                                     index.settingsChanged();
                                 },
                             .isFactory = [] { return isFactory(IndexSettings::rootsKey); },
                             .reset = [&index] { forget(IndexSettings::rootsKey, index); },
                             .keepsOne = true});
}

KPListEditor *KPIndexListSection::makeRules(KPIndexMonitor &index)
{
    return new KPListEditor(qtTrId("KPPrefRules"), qtTrId("KPPrefRulesHint"),
                            {.entries = &IndexSettings::rules,
                             .add =
                                 [&index](const QString &typed) {
                                     const bool takesIn = typed.startsWith(u'!');
                                     const QString pattern = takesIn ? typed.mid(1) : typed;
                                     if (!IndexSettings::isPattern(pattern))
                                         return qtTrId("KPPrefRuleWrong");
                                     IndexSettings::setExcluded(pattern, !takesIn);
                                     index.settingsChanged();
                                     return QString();
                                 },
                             .remove =
                                 [&index](const QStringList &gone) {
                                     QStringList rules = IndexSettings::rules();
                                     for (const QString &rule : gone)
                                         rules.removeAll(rule);
                                     IndexSettings::setRules(rules);
                                     index.settingsChanged();
                                 },
                             .isFactory = [] { return isFactory(IndexSettings::rulesKey); },
                             .reset = [&index] { forget(IndexSettings::rulesKey, index); },
                             .isTyped = true});
}
