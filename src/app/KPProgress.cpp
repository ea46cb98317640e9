#include "KPProgress.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <chrono>

using namespace std::chrono_literals;

static constexpr auto showAfter = 500ms;
static constexpr auto interval = 100ms;

static QLabel *plainLabel(const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

KPProgressSheet::KPProgressSheet(const XPProgress::Task &task, QWidget *window)
    : QDialog(window), m_task(task), m_bar(new QProgressBar)
{
    setWindowModality(task->isBeside ? Qt::NonModal : Qt::WindowModal);
    setWindowTitle(task->title);
    m_bar->setRange(0, static_cast<int>(task->total));
    m_bar->setAccessibleName(task->title);
    auto *buttons = new QDialogButtonBox;
    QPushButton *stop = buttons->addButton(qtTrId("XPStop"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::rejected, this, [this, stop] {
        stop->setEnabled(false);
        reject();
    });
    auto *column = new QVBoxLayout(this);
    column->addWidget(plainLabel(task->title));
    column->addWidget(m_bar);
    column->addWidget(plainLabel(task->note));
    column->addWidget(buttons);
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &KPProgressSheet::look);
    timer->start(interval);
    look();
}

void KPProgressSheet::reject()
{
    m_task->isStopAsked = true;
}

void KPProgressSheet::look()
{
    m_bar->setValue(static_cast<int>(m_task->done));
}

KPProgress::~KPProgress()
{
    for (const auto &[task, sheet] : m_sheets) {
        task->isStopAsked = true;
        delete sheet;
    }
}

void KPProgress::begin(const Task &task)
{
    auto *sheet = new KPProgressSheet(task, m_window);
    m_sheets[task] = sheet;
    QTimer::singleShot(showAfter, sheet, &QWidget::show);
}

void KPProgress::end(const Task &task)
{
    if (const auto node = m_sheets.extract(task); node && node.mapped()) {
        node.mapped()->hide(); // or else it takes the keyboard from what is shown next
        node.mapped()->deleteLater();
    }
}
