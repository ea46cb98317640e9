#include "KPStatusLine.h"

#include "KPDocIcons.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QTextDocument>
#include <QToolButton>

static constexpr qsizetype fewFiles = 10;
static constexpr qsizetype listedProblems = 12;
static constexpr qsizetype hintedProblems = 4;
static constexpr std::chrono::milliseconds noticeable{600};

KPStatusLine::KPStatusLine(QWidget *parent)
    : QStatusBar(parent), m_counts(new QLabel), m_index(new QLabel),
      m_problemsButton(new QToolButton)
{
    QProgressBar *searchBar = nullptr;
    QLabel *searchLabel = nullptr;
    m_search = makeProgress(&searchBar, &searchLabel, &KPStatusLine::stopSearchRequested);
    searchLabel->setText(qtTrId("KPLooking"));
    searchBar->setAccessibleName(qtTrId("KPLooking"));
    m_edit = makeProgress(&m_editBar, &m_editLabel, &KPStatusLine::stopEditRequested);
    m_editBar->setAccessibleName(qtTrId("KPEditingName"));
    m_problemsButton->setObjectName(QStringLiteral("problems"));
    m_problemsButton->setAutoRaise(true);
    m_problemsButton->setIcon(KPDocIcons::symbol(QStringLiteral("warning")));
    m_problemsButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_problemsButton->hide();
    connect(m_problemsButton, &QToolButton::clicked, this, &KPStatusLine::listProblems);

    m_indexDelay.setSingleShot(true);
    m_indexDelay.setInterval(noticeable);
    connect(&m_indexDelay, &QTimer::timeout, m_index, &QWidget::show);
    m_index->hide();

    setContentsMargins(8, 0, 8, 0);
    addWidget(m_counts);
    addPermanentWidget(m_index);
    addPermanentWidget(m_problemsButton);
    addPermanentWidget(m_edit);
    addPermanentWidget(m_search);
    m_search->hide();
    m_edit->hide();
}

QWidget *KPStatusLine::makeProgress(QProgressBar **bar, QLabel **label,
                                    void (KPStatusLine::*stop)())
{
    auto *group = new QWidget;
    auto *row = new QHBoxLayout(group);
    row->setContentsMargins(0, 0, 0, 0);
    *label = new QLabel;
    *bar = new QProgressBar;
    (*bar)->setRange(0, 0);
    (*bar)->setTextVisible(false);
    (*bar)->setFixedSize(120, 8);
    auto *button = new QToolButton;
    button->setAutoRaise(true);
    button->setIcon(KPDocIcons::symbol(QStringLiteral("stop")));
    button->setToolTip(qtTrId("KPStop"));
    button->setAccessibleName(qtTrId("KPStop"));
    connect(button, &QToolButton::clicked, this, stop);
    row->addWidget(*label);
    row->addWidget(*bar);
    row->addWidget(button);
    return group;
}

void KPStatusLine::showCounts(qsizetype documents, qsizetype selected)
{
    const QLocale locale;
    const QString count =
        qtTrId("KPDocumentCount", static_cast<int>(documents)).arg(locale.toString(documents));
    m_counts->setText(selected ? qtTrId("KPCountsSelected").arg(count, locale.toString(selected))
                               : count);
}

void KPStatusLine::showSearching(bool searching)
{
    m_search->setVisible(searching);
}

void KPStatusLine::showEditing(qsizetype done, qsizetype total)
{
    m_edit->setVisible(total > fewFiles);
    m_editBar->setRange(0, static_cast<int>(total));
    m_editBar->setValue(static_cast<int>(done));
    m_editLabel->setText(
        qtTrId("KPEditing").arg(QLocale().toString(done), QLocale().toString(total)));
}

void KPStatusLine::endEditing()
{
    m_edit->hide();
}

void KPStatusLine::showIndex(const QString &activity)
{
    m_index->setText(activity);
    if (activity.isEmpty()) {
        m_indexDelay.stop();
        m_index->hide();
    } else if (m_index->isHidden() && !m_indexDelay.isActive()) {
        m_indexDelay.start();
    }
}

void KPStatusLine::showProblems(const QStringList &problems)
{
    m_problems = problems;
    m_problemsButton->setVisible(!problems.isEmpty());
    m_problemsButton->setText(qtTrId("KPProblemCount", static_cast<int>(problems.size())));
    // As plain text, whatever the names hold.
    m_problemsButton->setToolTip(
        Qt::convertFromPlainText(problemLines(hintedProblems).join(u'\n')));
}

QStringList KPStatusLine::problemLines(qsizetype count) const
{
    QStringList lines;
    for (const QString &problem : m_problems.first(std::min(count, m_problems.size())))
        lines.append(XPPath::printable(problem));
    if (const auto more = static_cast<int>(m_problems.size() - count); more > 0)
        lines.append(qtTrId("KPAndMore", more));
    return lines;
}

void KPStatusLine::listProblems()
{
    XPPrompts::current().alert(qtTrId("KPProblemsTitle"), problemLines(listedProblems).join(u'\n'));
}
