#include "KPRecentTagGroups.h"

#include "UserDefaults.h"

#include <algorithm>

using Dictionary = PropertyValue::Dictionary;

const QString KPRecentTagGroups::settingsKey = QStringLiteral("recentTagGroups");

static constexpr qint64 usuallyKept = 6;
static const QString tagsKey = QStringLiteral("tags");
static const QString dateKey = QStringLiteral("date");

static Dictionary stored()
{
    return UserDefaults::standard().value(KPRecentTagGroups::settingsKey).dictionary();
}

static void store(const Dictionary &groups)
{
    UserDefaults::standard().setValue(KPRecentTagGroups::settingsKey, groups);
}

static double dateOf(const PropertyValue &group)
{
    return group.dictionary().value(dateKey).date().secondsSince1970();
}

QList<QStringList> KPRecentTagGroups::groups()
{
    const Dictionary all = stored();
    QList<PropertyValue> values = all.values();
    std::stable_sort(values.begin(), values.end(),
                     [](const auto &a, const auto &b) { return dateOf(a) > dateOf(b); });
    QList<QStringList> groups;
    for (const PropertyValue &value : values) {
        if (const QStringList tags = value.dictionary().value(tagsKey).strings(); !tags.isEmpty())
            groups.append(tags);
    }
    return groups;
}

void KPRecentTagGroups::removeExtraTagGroups(Dictionary *groups)
{
    const qint64 wanted =
        UserDefaults::standard().integerValue(QStringLiteral("maxTagGroupsToRemember"));
    const qint64 most = wanted > 0 ? wanted : usuallyKept;
    while (groups->size() > most) {
        auto oldest = groups->begin();
        for (auto each = groups->begin(); each != groups->end(); ++each) {
            if (dateOf(*each) < dateOf(*oldest))
                oldest = each;
        }
        groups->erase(oldest);
    }
}

void KPRecentTagGroups::addNewTagsToRecentGroups(const QStringList &tags)
{
    if (tags.isEmpty())
        return;
    Dictionary all = stored();
    // Later than every other, even within the grain of the clock.
    double date = PropertyValue::Date::now().secondsSince1970();
    for (const PropertyValue &group : std::as_const(all))
        date = std::max(date, dateOf(group) + 0.001);
    all.insert(
        tags.join(u','),
        Dictionary{{tagsKey, tags}, {dateKey, PropertyValue::Date::fromSecondsSince1970(date)}});
    removeExtraTagGroups(&all);
    store(all);
}

void KPRecentTagGroups::removeGroup(const QStringList &tags)
{
    Dictionary all = stored();
    if (all.remove(tags.join(u',')) > 0)
        store(all);
}

void KPRecentTagGroups::rename(const KPTagRename &rename)
{
    const Dictionary before = stored();
    Dictionary after;
    for (const PropertyValue &group : before) {
        Dictionary changed = group.dictionary();
        const QStringList tags = rename.applied(changed.value(tagsKey).strings());
        if (tags.isEmpty())
            continue;
        changed.insert(tagsKey, tags);
        after.insert(tags.join(u','), changed);
    }
    if (after != before)
        store(after);
}
