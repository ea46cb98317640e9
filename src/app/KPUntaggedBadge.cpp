#include "KPUntaggedBadge.h"

#include "KPCrumbController.h"
#include "KPLibraryItems.h"
#include "KPLocationItem.h"
#include "KPRowCounts.h"
#include "UserDefaults.h"

#include <algorithm>
#include <limits>

static const QString setting = QStringLiteral("KPBadgeUntaggedDocs");
static const QString row = QStringLiteral("untagged");

KPUntaggedBadge::KPUntaggedBadge(IndexSource &source, QObject *parent)
    : QObject(parent), m_source(source)
{
    m_observations.push_back(UserDefaults::standard().addObserver(
        QStringLiteral("values.") + setting,
        [this](const PropertyValue &on) { follow(on.boolValue()); }));
    follow(UserDefaults::standard().boolValue(setting));
}

KPUntaggedBadge::~KPUntaggedBadge() = default;

void KPUntaggedBadge::follow(bool isOn)
{
    if (!isOn) {
        m_counts.reset();
    } else if (!m_counts) {
        m_counts = std::make_unique<KPRowCounts>(m_source);
        connect(m_counts.get(), &KPRowCounts::countsChanged, this, &KPUntaggedBadge::showCount);
        m_counts->setRows(
            {{row, KPCrumbController::stateInLocation(KPUntaggedItem().searchState(),
                                                      KPLocationItem::everywhere())}});
    }
    showCount();
}

void KPUntaggedBadge::showCount()
{
    const qsizetype count = m_counts ? m_counts->count(row).value_or(0) : 0;
    const int number =
        static_cast<int>(std::min<qsizetype>(count, std::numeric_limits<int>::max()));
    if (std::exchange(m_number, number) != number)
        Q_EMIT numberChanged(number);
}
