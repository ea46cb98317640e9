#include "KPFilterBar.h"

#include "XPTagsEditor.h"

#include <QComboBox>
#include <QHBoxLayout>

KPFilterBar::KPFilterBar(QWidget *parent)
    : QWidget(parent), m_tags(new XPTagsEditor(XPTagsEditor::Purpose::Filter, this)),
      m_date(new QComboBox(this)), m_rating(new QComboBox(this))
{
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
    row->setContentsMargins(12, 0, 12, 8);
    row->setSpacing(8);
    row->addWidget(m_tags, 1);
    for (QComboBox *choice : {m_date, m_rating}) {
        row->addWidget(choice, 0, Qt::AlignTop);
        choice->setMinimumHeight(m_tags->sizeHint().height());
        connect(choice, &QComboBox::currentIndexChanged, this, &KPFilterBar::changed);
    }
    connect(m_tags, &XPTagsEditor::tagsEdited, this, &KPFilterBar::changed);
    connect(m_tags, &XPTagsEditor::left, this, &KPFilterBar::left);
}

void KPFilterBar::show(const KPSearchState::Ptr &state)
{
    const QSignalBlocker quiet(this);
    m_state = state;
    if (m_tags->tags() != state->searchTags())
        m_tags->setTags(state->searchTags());
    m_date->setCurrentIndex(std::max(0, m_date->findData(state->dateString())));
    m_rating->setCurrentIndex(std::max(0, m_rating->findData(state->ratingString())));
}

void KPFilterBar::changed()
{
    const auto wanted = m_state->searchStateWithNewTags(m_tags->tags())
                            ->searchStateWithNewExcludeTags(m_tags->excludedTags())
                            ->searchStateWithNewDateString(m_date->currentData().toString())
                            ->searchStateWithNewRating(m_rating->currentData().toString());
    if (!wanted->isEqualToSearchState(*m_state))
        Q_EMIT stateAsked(wanted);
}

void KPFilterBar::setSuggestions(std::function<QStringList()> suggestions)
{
    m_tags->setSuggestions(std::move(suggestions));
}

void KPFilterBar::focusTags()
{
    m_tags->focusEntry();
}
