#include "KPFilterBar.h"

#include "KPDocIcons.h"
#include "XPTagsEditor.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

static constexpr std::chrono::milliseconds typingPause{500};

KPFilterBar::KPFilterBar(QWidget *parent)
    : QWidget(parent), m_search(new QLineEdit(this)),
      m_tags(new XPTagsEditor(XPTagsEditor::Purpose::Filter, this)), m_rating(new QComboBox(this))
{
    m_search->setPlaceholderText(qtTrId("KPSearchPlaceholder"));
    m_search->setAccessibleName(qtTrId("KPSearch"));
    m_search->setAccessibleDescription(qtTrId("KPSearchPlaceholder"));
    m_search->setClearButtonEnabled(true);
    m_search->addAction(KPDocIcons::symbol(QStringLiteral("search")), QLineEdit::LeadingPosition);
    m_search->installEventFilter(this);
    // The same frame as the tag field's, which is drawn from the palette too.
    m_search->setStyleSheet(QStringLiteral(
        "QLineEdit { border: 1px solid palette(mid); border-radius: 4px; padding: 4px;"
        " background: palette(base); } QLineEdit:focus { border-color: palette(highlight); }"));
    m_tags->setHint(qtTrId("KPFilterTagsHint"), qtTrId("KPFilterTags"));
    m_rating->setAccessibleName(qtTrId("KPFilterRating"));
    m_rating->addItem(qtTrId("KPAnyRating"), 0);
    for (int stars = 1; stars <= 5; ++stars)
        m_rating->addItem(qtTrId("KPAtLeastStars", stars), stars);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(10, 0, 10, 8);
    row->setSpacing(8);
    row->addWidget(m_tags, 1);
    row->addWidget(m_rating, 0, Qt::AlignTop);
    m_rating->setMinimumHeight(m_tags->sizeHint().height());

    m_typing.setSingleShot(true);
    m_typing.setInterval(typingPause);
    connect(&m_typing, &QTimer::timeout, this, &KPFilterBar::changed);
    connect(m_search, &QLineEdit::textChanged, this,
            [this](const QString &text) { text.isEmpty() ? changed() : m_typing.start(); });
    connect(m_search, &QLineEdit::returnPressed, this, &KPFilterBar::changed);
    connect(m_tags, &XPTagsEditor::tagsEdited, this, &KPFilterBar::changed);
    connect(m_tags, &XPTagsEditor::left, this, &KPFilterBar::left);
    connect(m_rating, &QComboBox::currentIndexChanged, this, &KPFilterBar::changed);
}

KPSearchRequest KPFilterBar::request() const
{
    KPSearchRequest request;
    request.words = m_search->text().simplified();
    request.tags = m_tags->tags();
    request.notTags = m_tags->excludedTags();
    if (const int stars = m_rating->currentData().toInt())
        request.rating = {KPSearchRequest::Comparison::GreaterOrEqual, double(stars)};
    return request;
}

void KPFilterBar::changed()
{
    m_typing.stop();
    const KPSearchRequest now = request();
    if (std::exchange(m_announced, now) != now)
        Q_EMIT requestChanged();
}

void KPFilterBar::clear()
{
    const QSignalBlocker blocker(this);
    m_search->clear();
    m_tags->setTags({});
    m_rating->setCurrentIndex(0);
    m_announced = {};
    m_typing.stop();
}

void KPFilterBar::setSuggestions(std::function<QStringList()> suggestions)
{
    m_tags->setSuggestions(std::move(suggestions));
}

void KPFilterBar::focusSearch()
{
    m_search->setFocus(Qt::ShortcutFocusReason);
    m_search->selectAll();
}

void KPFilterBar::focusTags()
{
    m_tags->focusEntry();
}

void KPFilterBar::escape()
{
    if (m_search->text().isEmpty())
        Q_EMIT left();
    m_search->clear();
}

bool KPFilterBar::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_search && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Escape) {
            escape();
            return true;
        }
        if (key == Qt::Key_Down) {
            Q_EMIT left();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
