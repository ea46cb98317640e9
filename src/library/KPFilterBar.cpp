#include "KPFilterBar.h"

#include "KPDocIcons.h"
#include "UserDefaults.h"
#include "XPTagsEditor.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

static constexpr std::chrono::milliseconds typingPause{500};

KPFilterBar::KPFilterBar(QWidget *parent)
    : QWidget(parent), m_search(new QLineEdit(this)),
      m_tags(new XPTagsEditor(XPTagsEditor::Purpose::Filter, this)), m_date(new QComboBox(this)),
      m_rating(new QComboBox(this))
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
    m_date->setAccessibleName(qtTrId("KPFilterDate"));
    for (const QString &key : KPSearchDates::allKeys())
        m_date->addItem(KPSearchState::prettyDateStringFromDateString(key), key);
    m_date->setItemData(0, QString()); // any date: no condition
    m_rating->setAccessibleName(qtTrId("KPFilterRating"));
    const auto addRating = [this](const QString &condition) {
        m_rating->addItem(KPSearchState::prettyRatingsStringFromRatingString(condition), condition);
    };
    addRating({});
    addRating(QStringLiteral("!= *"));
    for (int stars = 1; stars <= 5; ++stars)
        addRating(QStringLiteral(">= %1").arg(stars));

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(10, 0, 10, 8);
    row->setSpacing(8);
    row->addWidget(m_tags, 1);
    for (QComboBox *choice : {m_date, m_rating}) {
        row->addWidget(choice, 0, Qt::AlignTop);
        choice->setMinimumHeight(m_tags->sizeHint().height());
        connect(choice, &QComboBox::currentIndexChanged, this, &KPFilterBar::changed);
    }

    m_typing.setSingleShot(true);
    m_typing.setInterval(typingPause);
    connect(&m_typing, &QTimer::timeout, this, &KPFilterBar::changed);
    connect(m_search, &QLineEdit::textChanged, this,
            [this](const QString &text) { text.isEmpty() ? changed() : m_typing.start(); });
    connect(m_search, &QLineEdit::returnPressed, this, &KPFilterBar::changed);
    connect(m_tags, &XPTagsEditor::tagsEdited, this, &KPFilterBar::changed);
    connect(m_tags, &XPTagsEditor::left, this, &KPFilterBar::left);
    m_announced = state();
}

KPSearchState::Ptr KPFilterBar::state() const
{
    const UserDefaults &defaults = UserDefaults::standard();
    return KPSearchState::searchStateWithNativeDictionary({})
        ->searchStateWithNewSearchString(
            m_search->text().simplified(),
            defaults.boolValue(QStringLiteral("KPDoSpotlightSearches")),
            defaults.boolValue(QStringLiteral("KPDoMetaDataSearches")), true)
        ->searchStateWithNewTags(m_tags->tags())
        ->searchStateWithNewExcludeTags(m_tags->excludedTags())
        ->searchStateWithNewDateString(m_date->currentData().toString())
        ->searchStateWithNewRating(m_rating->currentData().toString());
}

void KPFilterBar::changed()
{
    m_typing.stop();
    const KPSearchState::Ptr now = state();
    if (!std::exchange(m_announced, now)->isEqualToSearchState(*now))
        Q_EMIT stateChanged();
}

void KPFilterBar::clear()
{
    const QSignalBlocker blocker(this);
    m_search->clear();
    m_tags->setTags({});
    m_date->setCurrentIndex(0);
    m_rating->setCurrentIndex(0);
    m_announced = state();
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
