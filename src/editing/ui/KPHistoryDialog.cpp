#include "KPHistoryDialog.h"

#include "KPDocServices.h"
#include "KPLook.h"
#include "XPPath.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QUndoStack>
#include <QVBoxLayout>

static constexpr int stepsRole = Qt::UserRole;

KPHistoryDialog::KPHistoryDialog(QUndoStack &history, KPEditWorker &worker, QWidget *window)
    : QDialog(window), m_history(history), m_worker(worker), m_list(new QListWidget),
      m_note(new QLabel), m_go(new QPushButton)
{
    setObjectName(QStringLiteral("KPHistoryDialog"));
    setWindowTitle(qtTrId("KPHistoryTitle"));
    m_list->setAccessibleName(qtTrId("KPHistoryTitle"));
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setUniformItemSizes(true);
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->setForegroundRole(QPalette::PlaceholderText);
    m_note->setFont(KPLook::font(KPLook::Type::Facts));
    m_go->setAutoDefault(false);
    auto *buttons = new QDialogButtonBox;
    buttons->addButton(m_go, QDialogButtonBox::ActionRole);
    // Last: Tab would pass over it otherwise.
    buttons->addButton(QDialogButtonBox::Close)->setText(qtTrId("KPClose"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 12);
    column->setSpacing(8);
    column->addWidget(m_list, 1);
    column->addWidget(m_note);
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_list, &QListWidget::currentRowChanged, this, &KPHistoryDialog::describe);
    connect(m_list, &QListWidget::itemActivated, this, [this] { goTo(stepsOfCurrent()); });
    connect(m_go, &QPushButton::clicked, this, [this] { goTo(stepsOfCurrent()); });
    connect(&m_history, &QUndoStack::indexChanged, this, &KPHistoryDialog::fill);
    connect(&m_worker, &KPEditWorker::reported, this, [this](const KPEditReport &report) {
        m_hasFailed = m_hasFailed || !report.failures.isEmpty() || report.stopped;
    });
    resize(460, 420);
    fill();
}

// A line stands for the state after its step; the last one for the beginning.
void KPHistoryDialog::fill()
{
    if (isGoing())
        return;
    const QSignalBlocker blocker(m_list);
    m_list->clear();
    for (int step = m_history.count(); step >= 0; --step) {
        const QString text = step > 0 ? m_history.text(step - 1) : qtTrId("KPHistoryBeginning");
        const bool isDone = step <= m_history.index();
        auto *item = new QListWidgetItem(isDone ? text : qtTrId("KPHistoryUndone").arg(text));
        item->setData(stepsRole, step);
        if (!isDone)
            item->setForeground(palette().brush(QPalette::PlaceholderText));
        if (step == m_history.index()) {
            QFont font = m_list->font();
            font.setWeight(QFont::DemiBold);
            item->setFont(font);
            item->setToolTip(qtTrId("KPHistoryNow"));
        }
        m_list->addItem(item);
    }
    m_list->setCurrentRow(m_history.count() - m_history.index());
    describe();
}

int KPHistoryDialog::stepsOfCurrent() const
{
    const QListWidgetItem *item = m_list->currentItem();
    return item ? item->data(stepsRole).toInt() : -1;
}

void KPHistoryDialog::describe()
{
    const int steps = stepsOfCurrent();
    const int back = m_history.index() - steps;
    m_go->setEnabled(steps >= 0 && back != 0 && !isGoing());
    m_go->setText(back >= 0 ? qtTrId("KPHistoryBack") : qtTrId("KPHistoryForward"));
    m_note->setText(steps < 0 || back == 0 ? qtTrId("KPHistoryHint")
                    : back > 0             ? qtTrId("KPHistoryWillUndo", back)
                                           : qtTrId("KPHistoryWillRedo", -back));
}

void KPHistoryDialog::goTo(int steps)
{
    if (steps < 0 || isGoing())
        return;
    m_target = steps;
    m_hasFailed = false;
    m_go->setEnabled(false);
    step();
}

void KPHistoryDialog::step()
{
    const bool isBack = m_target < m_history.index();
    if (m_target == m_history.index() || m_hasFailed ||
        !(isBack ? m_history.canUndo() : m_history.canRedo())) {
        end();
        return;
    }
    isBack ? m_history.undo() : m_history.redo();
    wait();
}

// File calls of the step are in the queue before this one; tags and ratings have a queue of theirs.
void KPHistoryDialog::wait()
{
    const auto done = [self = QPointer(this)] {
        if (!self)
            return;
        if (!self->m_worker.isBusy())
            self->step();
        else
            QObject::connect(&self->m_worker, &KPEditWorker::reported, self, &KPHistoryDialog::wait,
                             Qt::ConnectionType(Qt::SingleShotConnection | Qt::QueuedConnection));
    };
    xpGuiThread.assertHere();
    KPDocServices::current().runFileWork([] {}, done);
}

void KPHistoryDialog::end()
{
    const bool stopped = m_target != m_history.index();
    m_target = -1;
    fill();
    if (m_hasFailed || stopped)
        m_note->setText(qtTrId("KPHistoryStopped"));
    Q_EMIT arrived();
}
