#include "KPDocOrder.h"

#include "XPPath.h"

#include <array>

static constexpr std::array<std::pair<KPDocOrder::Key, const char *>, 4> names{{
    {KPDocOrder::Key::Name, "name"},
    {KPDocOrder::Key::Modified, "modified"},
    {KPDocOrder::Key::Rating, "rating"},
    {KPDocOrder::Key::Size, "size"},
}};

QString KPDocOrder::toText() const
{
    for (const auto &[candidate, name] : names) {
        if (candidate == key)
            return (ascending ? QString() : QStringLiteral("-")) + QLatin1String(name);
    }
    return {};
}

KPDocOrder KPDocOrder::fromText(const QString &text)
{
    const bool descending = text.startsWith(u'-');
    for (const auto &[candidate, name] : names) {
        if (QStringView(text).mid(descending ? 1 : 0) == QLatin1String(name))
            return {candidate, !descending};
    }
    return {};
}

KPOrderedDocument::KPOrderedDocument(const KPShownDocument &shown, const QCollator &collator)
    : document(shown), modified(shown.doc->unixModificationTime()), size(shown.doc->unixFileSize()),
      nameKey(collator.sortKey(XPPath::fileName(shown.path)))
{
}

static int compareNumbers(auto a, auto b)
{
    return a < b ? -1 : a > b ? 1 : 0;
}

static int compareByKey(KPDocOrder::Key key, const KPOrderedDocument &a, const KPOrderedDocument &b)
{
    switch (key) {
    case KPDocOrder::Key::Name:
        return a.nameKey.compare(b.nameKey);
    case KPDocOrder::Key::Modified:
        return compareNumbers(a.modified, b.modified);
    case KPDocOrder::Key::Rating:
        return compareNumbers(a.document.rating, b.document.rating);
    case KPDocOrder::Key::Size:
        return compareNumbers(a.size, b.size);
    }
    return 0;
}

bool kpComesBefore(const KPDocOrder &order, const KPOrderedDocument &a, const KPOrderedDocument &b)
{
    if (const int byKey = compareByKey(order.key, a, b))
        return order.ascending ? byKey < 0 : byKey > 0;
    if (const int byName = a.nameKey.compare(b.nameKey))
        return byName < 0;
    return a.document.path < b.document.path;
}
