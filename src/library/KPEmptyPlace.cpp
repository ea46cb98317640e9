#include "KPEmptyPlace.h"

#include <QAction>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>

static constexpr int inset = 50;
static constexpr int headingSize = 24;
static constexpr int between = 12;

KPEmptyPlace::KPEmptyPlace(QWidget *parent)
    : QWidget(parent), m_progressIndicator(new QProgressBar(this)),
      m_clearFiltersButton(new QPushButton(qtTrId("KPClearFilters"), this)),
      m_remedyButton(new QPushButton(this))
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_progressIndicator->setRange(0, 0);
    m_progressIndicator->setTextVisible(false);
    m_progressIndicator->setFixedSize(160, 6);
    m_progressIndicator->setAccessibleName(qtTrId("KPSearchingForDocuments"));
    // Not below this widget, which lets the pointer through.
    for (QPushButton *button : {m_clearFiltersButton, m_remedyButton}) {
        button->setParent(parent);
        button->hide();
    }
    m_progressIndicator->hide();
    connect(m_clearFiltersButton, &QPushButton::clicked, this,
            &KPEmptyPlace::clearFiltersRequested);
    connect(m_remedyButton, &QPushButton::clicked, this, [this] {
        if (m_remedy)
            m_remedy->trigger();
    });
}

KPEmptyPlace::Texts KPEmptyPlace::texts(const Facts &facts)
{
    if (facts.isStarting)
        return {qtTrId("KPStartupSearchingNoDocuments"),
                qtTrId("KPStartupSearchingNoDocumentsHelp")};
    if (facts.isSearching)
        return {qtTrId("KPSearchingForDocuments"), qtTrId("KPSearchingDocumentsHelpZel")};
    if (facts.reason)
        return *facts.reason;
    if (facts.isNarrowed && facts.sourceNarrowed)
        return *facts.sourceNarrowed;
    if (facts.source)
        return *facts.source;
    return {qtTrId("KPNoDocuments"), qtTrId("KPNoDocumentsHelpZel")};
}

void KPEmptyPlace::setFacts(const Facts &facts)
{
    if (facts == m_facts)
        return;
    m_facts = facts;
    arrange();
}

void KPEmptyPlace::setRemedy(QAction *remedy)
{
    m_remedy = remedy;
    arrange();
}

void KPEmptyPlace::setColours(const QColor &text)
{
    m_text = text;
    update();
}

void KPEmptyPlace::place(const QRect &room, bool isWanted)
{
    setGeometry(room);
    setVisible(isWanted);
    arrange();
}

struct KPEmptyPlace::Layout
{
    Texts texts;
    QFont headingFont;
    QRect heading;
    QRect hint;
    int next = 0; // what follows begins here
};

KPEmptyPlace::Layout KPEmptyPlace::layOut() const
{
    Layout layout{texts(m_facts), font(), {}, {}, 0};
    layout.headingFont.setPixelSize(headingSize);
    const int side = std::min(inset, width() / 6);
    const QRect room = rect().adjusted(side, std::min(inset, height() / 6), -side, 0);
    const int flags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
    layout.heading = QFontMetrics(layout.headingFont).boundingRect(room, flags, layout.texts.title);
    QRect below = room;
    below.setTop(layout.heading.bottom() + between);
    layout.hint = fontMetrics().boundingRect(below, flags, layout.texts.hint);
    const int content = layout.hint.bottom() - layout.heading.top();
    // A little above the middle, where the eye is.
    const int down = std::max(0, (room.height() - content) * 2 / 5);
    layout.heading.translate(0, down);
    layout.hint.translate(0, down);
    layout.next = layout.hint.bottom() + between + between / 2;
    return layout;
}

void KPEmptyPlace::arrange()
{
    const bool isRunning = m_facts.isSearching || m_facts.isStarting;
    const bool helps = isVisibleTo(parentWidget()) && !isRunning;
    const int next = layOut().next;
    m_progressIndicator->setVisible(m_facts.isSearching && !m_facts.isStarting);
    m_progressIndicator->move((width() - m_progressIndicator->width()) / 2, next);
    m_clearFiltersButton->setVisible(helps && m_facts.isNarrowed && !m_remedy);
    m_remedyButton->setVisible(helps && m_remedy);
    if (m_remedy)
        m_remedyButton->setText(m_remedy->text());
    for (QPushButton *button : {m_clearFiltersButton, m_remedyButton}) {
        button->resize(button->sizeHint() + QSize(24, 8));
        button->move((width() - button->width()) / 2, next);
    }
    const Texts said = texts(m_facts);
    setAccessibleName(said.title);
    setAccessibleDescription(said.hint);
    update();
}

void KPEmptyPlace::paintEvent(QPaintEvent *)
{
    const Layout layout = layOut();
    QPainter painter(this);
    QColor quiet = m_text;
    quiet.setAlphaF(0.68F);
    painter.setPen(quiet);
    const int flags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
    painter.setFont(layout.headingFont);
    painter.drawText(layout.heading, flags, layout.texts.title);
    painter.setFont(font());
    painter.drawText(layout.hint, flags, layout.texts.hint);
}
