#include "KPStatusLine.h"

#include "KPDocIcons.h"
#include "KPLook.h"
#include "XPFileSize.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QProgressBar>
#include <QSlider>
#include <QTextDocument>
#include <QToolButton>
#include <cmath>

static constexpr qsizetype fewFiles = 10;
static constexpr qsizetype listedProblems = 12;
static constexpr qsizetype hintedProblems = 4;
static constexpr std::chrono::milliseconds noticeable{500};
static constexpr int zoomSteps = 100;

KPStatusLine::KPStatusLine(QWidget *parent)
    : QStatusBar(parent), m_counts(new QLabel), m_index(new QLabel),
      m_zoom(new QSlider(Qt::Horizontal)), m_problemsButton(new QToolButton)
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

    m_searchDelay.setSingleShot(true);
    m_searchDelay.setInterval(noticeable);
    connect(&m_searchDelay, &QTimer::timeout, m_search, &QWidget::show);

    makeZoom();
    for (QLabel *label : {m_counts, m_index}) {
        label->setFont(KPLook::font(KPLook::Type::Facts));
        label->setForegroundRole(QPalette::PlaceholderText);
    }
    setSizeGripEnabled(false);
    setContentsMargins(10, 0, 10, 0);
    setMinimumHeight(std::max(KPLook::statusHeight, m_counts->fontMetrics().height() + 8));
    addWidget(m_counts);
    addWidget(m_index);
    addPermanentWidget(m_problemsButton);
    addPermanentWidget(m_edit);
    addPermanentWidget(m_search);
    addPermanentWidget(m_zoom);
    m_search->hide();
    m_edit->hide();
}

void KPStatusLine::makeZoom()
{
    m_zoom->setRange(0, zoomSteps);
    m_zoom->setPageStep(zoomSteps / 10);
    m_zoom->setFixedWidth(110);
    m_zoom->setAccessibleName(qtTrId("KPZoom"));
    m_zoom->setToolTip(qtTrId("KPZoom"));
    connect(m_zoom, &QSlider::valueChanged, this,
            [this](int value) { Q_EMIT zoomChanged(value / double(zoomSteps)); });
}

void KPStatusLine::setZoom(double zoom)
{
    const QSignalBlocker quiet(m_zoom);
    m_zoom->setValue(static_cast<int>(std::lround(zoom * zoomSteps)));
}

void KPStatusLine::setZoomShown(bool isShown)
{
    m_zoom->setVisible(isShown);
}

// A hairline above, as between all panes, and no frames around the parts.
void KPStatusLine::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    painter.fillRect(0, 0, width(), 1, KPLook::line(palette()));
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

void KPStatusLine::showCounts(qsizetype documents, qsizetype selected, qint64 size)
{
    const QLocale locale;
    const QString count =
        qtTrId("KPDocumentCount", static_cast<int>(documents)).arg(locale.toString(documents));
    QString text =
        selected ? qtTrId("KPCountsSelected").arg(locale.toString(selected), count) : count;
    if (selected && size > 0)
        text += QStringLiteral(" · ") + xpFileSizeInWords(size);
    m_counts->setText(text);
}

void KPStatusLine::showSearching(bool searching)
{
    if (!searching) {
        m_searchDelay.stop();
        m_search->hide();
    } else if (m_search->isHidden() && !m_searchDelay.isActive()) {
        m_searchDelay.start();
    }
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
