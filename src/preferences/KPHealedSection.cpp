#include "KPBackupSection.h"
#include "KPDocServices.h"
#include "KPEditSummary.h"
#include "KPHealingChoice.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QDateTime>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPointer>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using State = KPHealing::State;

static constexpr int rowsShown = 7;
static constexpr qsizetype mostShown = 500; // the newest; the shell shows all

KPHealedSection::KPHealedSection(QWidget *parent)
    : QWidget(parent), m_text(new QLabel), m_problem(new QLabel), m_list(new QTreeWidget),
      m_accept(new QPushButton(qtTrId("KPHealedAccept"))),
      m_undo(new QPushButton(qtTrId("KPHealedUndo")))
{
    for (QLabel *label : {m_text, m_problem}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    m_problem->hide();
    m_list->setAccessibleName(qtTrId("KPHealedList"));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setHeaderLabels({qtTrId("KPHealedFile"), qtTrId("KPHealedTags"),
                             qtTrId("KPHealedState"), qtTrId("KPHealedTime")});
    m_list->setFixedHeight((fontMetrics().height() + 6) * rowsShown);
    auto *line = new QHBoxLayout;
    for (QPushButton *button : {m_accept, m_undo}) {
        button->setAutoDefault(false);
        line->addWidget(button);
    }
    line->addStretch(1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(m_text);
    column->addWidget(m_list);
    column->addLayout(line);
    column->addWidget(m_problem);
    connect(m_list, &QTreeWidget::itemSelectionChanged, this, &KPHealedSection::updateButtons);
    connect(m_accept, &QPushButton::clicked, this, [this] { decide(true); });
    connect(m_undo, &QPushButton::clicked, this, [this] { decide(false); });
    show({});
}

void KPHealedSection::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    look();
}

void KPHealedSection::look()
{
    xpGuiThread.assertHere();
    using Cases = XPResult<QList<KPHealing>>;
    auto cases = std::make_shared<Cases>(QList<KPHealing>());
    KPDocServices::current().runFileWork([cases] { *cases = KPHealingLog::read(); },
                                         [cases, self = QPointer(this)] {
                                             if (self)
                                                 self->show(cases->valueOr({}));
                                             if (self && !*cases) // nobody knows of none
                                                 self->m_text->setText(cases->error().reason());
                                         });
}

static QString stateText(const KPHealing &healing)
{
    switch (healing.state) {
    case State::Pending:
        return qtTrId("KPHealedPending");
    case State::Healed:
        return qtTrId("KPHealedDone");
    case State::Undone:
        return qtTrId("KPHealedUndone");
    case State::Failed:
        break;
    }
    return qtTrId("KPHealedFailed");
}

static QString tagsOf(const KPHealing &healing)
{
    const QByteArray bytes = healing.attributes.value(QStringLiteral("kMDItemKXUserTags"));
    const QStringList tags = XPPropertyList::read(bytes).valueOr({}).strings();
    return XPPath::printable(tags.join(QStringLiteral(", ")));
}

// The newest first; those that wait for the user before all others.
void KPHealedSection::show(const QList<KPHealing> &cases)
{
    m_cases = cases;
    std::stable_sort(m_cases.begin(), m_cases.end(), [](const auto &one, const auto &other) {
        const bool waits = one.state == State::Pending;
        const bool otherWaits = other.state == State::Pending;
        return waits != otherWaits ? waits : one.number > other.number;
    });
    if (m_cases.size() > mostShown)
        m_cases.resize(mostShown);
    m_list->clear();
    for (const KPHealing &healing : std::as_const(m_cases)) {
        const auto time =
            QDateTime::fromSecsSinceEpoch(static_cast<qint64>(healing.time.secondsSince1970()));
        auto *item = new QTreeWidgetItem(m_list, {XPPath::printable(XPPath::fileName(healing.path)),
                                                  tagsOf(healing), stateText(healing),
                                                  QLocale().toString(time, QLocale::ShortFormat)});
        item->setToolTip(0, XPPath::printable(XPFolders::abbreviateWithTilde(healing.path)));
    }
    const auto waiting = std::count_if(m_cases.begin(), m_cases.end(), [](const auto &healing) {
        return healing.state == State::Pending;
    });
    m_text->setText(waiting > 0         ? qtTrId("KPHealedWaiting", static_cast<int>(waiting))
                    : m_cases.isEmpty() ? qtTrId("KPHealedNone")
                                        : qtTrId("KPHealedAllDone"));
    m_list->header()->resizeSection(0, 200);
    m_list->header()->resizeSection(1, 160);
    m_list->header()->resizeSection(2, 130);
    for (QWidget *part : std::initializer_list<QWidget *>{m_list, m_accept, m_undo})
        part->setVisible(!m_cases.isEmpty());
    updateButtons();
}

QList<qint64> KPHealedSection::chosen(bool accepts) const
{
    QList<qint64> numbers;
    for (const QModelIndex &row : m_list->selectionModel()->selectedRows()) {
        const KPHealing &healing = m_cases[row.row()];
        if (KPHealingChoice::isOpen(healing, accepts))
            numbers.append(healing.number);
    }
    return numbers;
}

void KPHealedSection::updateButtons()
{
    m_accept->setEnabled(!chosen(true).isEmpty());
    m_undo->setEnabled(!chosen(false).isEmpty());
}

void KPHealedSection::decide(bool accepts)
{
    xpGuiThread.assertHere();
    auto result = std::make_shared<KPHealingChoice::Result>();
    KPDocServices::current().runFileWork(
        [result, numbers = chosen(accepts), accepts] {
            *result = KPHealingChoice::apply(numbers, accepts);
        },
        [result, self = QPointer(this)] {
            if (!self)
                return;
            QStringList problems;
            for (const XPError &failure : result->failures)
                problems.append(XPPath::printable(XPPath::fileName(failure.path)) +
                                QStringLiteral(": ") + KPEditSummary::reason(failure));
            self->m_problem->setText(problems.join(u'\n'));
            self->m_problem->setVisible(!problems.isEmpty());
            self->look();
        });
}
