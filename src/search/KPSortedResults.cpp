#include "KPSortedResults.h"

#include "KPDocMetaData.h"
#include "KPFileType.h"

#include <QSet>
#include <QtEndian>
#include <algorithm>
#include <cmath>
#include <cstring>

using Field = KPSortKey::Field;

namespace {
constexpr qsizetype startSize = sizeof(quint64);
constexpr qsizetype lengthSize = sizeof(quint16);
constexpr qsizetype longestRest = 0xFFFF;
} // namespace

KPSortedResults::KPSortedResults(const KPSortOrder &order, Clock clock)
    : m_order(order), m_clock(std::move(clock))
{
    if (order.group)
        m_grouper = std::make_unique<KPResultGrouper>(order.group->field, now());
}

KPSortedResults::~KPSortedResults() = default;

QDateTime KPSortedResults::now() const
{
    return m_clock ? m_clock() : QDateTime::currentDateTime();
}

// --- What a document is compared by, as bytes

static qint64 createdOf(const KPDoc &doc)
{
    return static_cast<qint64>(doc.creationTimeSince1970() * 1e9);
}

qint64 KPSortedResults::addedOf(const KPDoc &doc)
{
    const PropertyValue dated =
        KPDocMetaData::indexed(doc.filePath(), QStringLiteral("kMDItemDateAdded"));
    return dated.kind() == PropertyValue::Kind::Date
               ? static_cast<qint64>(dated.date().secondsSince1970() * 1e9)
               : createdOf(doc);
}

static qint64 numberOf(Field field, const KPDoc &doc)
{
    constexpr double fractionsOfAStar = 1000;
    switch (field) {
    case Field::Size:
        return doc.unixFileSize();
    case Field::Modified:
        return doc.unixModificationTime();
    case Field::Created:
        return createdOf(doc);
    case Field::Added:
        return KPSortedResults::addedOf(doc);
    case Field::Rating:
        return std::llround(std::clamp(doc.ratingFast(), -1e6, 1e6) * fractionsOfAStar);
    default:
        return 0;
    }
}

// In the order of the numbers, negative ones too.
static void appendNumber(QByteArray &bytes, qint64 number)
{
    const quint64 ordered = qToBigEndian(static_cast<quint64>(number) ^ (quint64(1) << 63));
    bytes.append(reinterpret_cast<const char *>(&ordered), sizeof ordered);
}

static void invert(QByteArray &bytes, qsizetype from)
{
    for (qsizetype i = from; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(~bytes[i]);
}

const QByteArray &KPSortedResults::textKey(const void *address, const QString &text)
{
    QByteArray &key = m_texts[address];
    if (key.isEmpty())
        m_names.append(key, text);
    return key;
}

void KPSortedResults::appendText(const KPDoc &doc, Field field)
{
    if (field == Field::Name) {
        m_names.append(m_key, doc.fsDisplayName());
    } else if (field == Field::Type) {
        const KPTagName *type = doc.utiTagName();
        const auto known = m_texts.constFind(type);
        m_key.append(known != m_texts.cend()
                         ? *known
                         : textKey(type, KPFileType::displayNameForUTI(doc.fileType())));
    } else if (field == Field::Folder) {
        m_key.append(textKey(doc.pooledParentPath().data(), doc.parentPath()));
    } else {
        // Those without tags come after those that have some.
        const KPTagName::Tags tags = doc.tagNamesOfTypeUserEntered();
        m_key.append(tags.isEmpty() ? '\2' : '\1');
        for (const KPTagName *tag : tags)
            m_key.append(textKey(tag, tag->displayName()));
        m_key.append('\0');
    }
}

void KPSortedResults::appendField(const KPSortKey &key, const KPDoc &doc)
{
    const qsizetype from = m_key.size();
    const bool isText = key.field == Field::Name || key.field == Field::Type ||
                        key.field == Field::Tags || key.field == Field::Folder;
    if (isText)
        appendText(doc, key.field);
    else
        appendNumber(m_key, numberOf(key.field, doc));
    if (!key.ascending)
        invert(m_key, from);
}

quint32 KPSortedResults::appendGroup(const KPDoc &doc)
{
    const auto place = m_grouper->placeOf(doc, numberOf(m_order.group->field, doc));
    const auto known = m_groupNumbers.constFind(place.group);
    const quint32 number =
        known != m_groupNumbers.cend() ? *known : static_cast<quint32>(m_groups.size());
    if (known == m_groupNumbers.cend()) {
        QByteArray key;
        appendNumber(key, place.rank);
        m_names.append(key, place.group->name);
        if (!m_order.group->ascending)
            invert(key, 0);
        appendNumber(key, number); // groups of one name stay apart
        m_groupNumbers.insert(place.group, number);
        m_groups.push_back({place.group, key});
    }
    m_key.append(m_groups[number].key);
    return number;
}

KPSortedResults::Entry KPSortedResults::entryOf(KPDoc *doc)
{
    m_key.clear();
    Entry entry = {doc, doc->pooledPath(), 0, 0, 0};
    if (m_grouper)
        entry.group = appendGroup(*doc);
    bool hasName = false;
    for (const KPSortKey &key : m_order.keys) {
        appendField(key, *doc);
        hasName = hasName || key.field == Field::Name;
    }
    if (!hasName)
        appendField({}, *doc);
    // The first bytes beside the entry, the rest apart.
    if (m_key.size() < startSize)
        m_key.append(startSize - m_key.size(), '\0');
    entry.start = qFromBigEndian<quint64>(m_key.constData());
    const auto restSize = static_cast<quint16>(std::min(m_key.size() - startSize, longestRest));
    entry.at = static_cast<quint32>(m_bytes.size());
    m_bytes.append(reinterpret_cast<const char *>(&restSize), sizeof restSize);
    m_bytes.append(m_key.constData() + startSize, restSize);
    return entry;
}

QByteArrayView KPSortedResults::rest(const Entry &entry) const
{
    quint16 size = 0;
    std::memcpy(&size, m_bytes.constData() + entry.at, sizeof size);
    return {m_bytes.constData() + entry.at + lengthSize, size};
}

bool KPSortedResults::comesBefore(const Entry &a, const Entry &b) const
{
    if (a.start != b.start)
        return a.start < b.start;
    const QByteArrayView first = rest(a);
    const QByteArrayView second = rest(b);
    const auto common = static_cast<size_t>(std::min(first.size(), second.size()));
    if (const int order = std::memcmp(first.data(), second.data(), common); order != 0)
        return order < 0;
    if (first.size() != second.size())
        return first.size() < second.size();
    return a.path.view() < b.path.view();
}

// --- Changes

void KPSortedResults::takeOut(const KPResultsDifference &difference)
{
    if (difference.isReset) {
        m_entries.clear();
        m_bytes.clear();
        m_unusedBytes = 0;
        return;
    }
    std::vector<const KPDoc *> gone;
    for (const auto *list : {&difference.removed, &difference.changed}) {
        for (const auto &told : *list)
            gone.push_back(told.doc);
    }
    if (gone.empty())
        return;
    // Of a few, looking at each costs less than asking a set for every entry.
    constexpr size_t few = 8;
    const bool areFew = gone.size() <= few;
    const QSet<const KPDoc *> all =
        areFew ? QSet<const KPDoc *>() : QSet<const KPDoc *>(gone.begin(), gone.end());
    const auto isGone = [&](const KPDoc *doc) {
        return areFew ? std::find(gone.begin(), gone.end(), doc) != gone.end() : all.contains(doc);
    };
    std::erase_if(m_entries, [&](const Entry &entry) {
        if (!isGone(entry.doc))
            return false;
        m_unusedBytes += lengthSize + rest(entry).size();
        return true;
    });
}

void KPSortedResults::takeIn(const std::vector<KPDoc *> &docs)
{
    if (docs.empty())
        return;
    std::vector<Entry> added;
    added.reserve(docs.size());
    for (KPDoc *doc : docs) {
        added.push_back(entryOf(doc));
        if (m_grouper)
            doc->setCachedGroup(m_groups[added.back().group].group);
    }
    const auto before = [this](const Entry &a, const Entry &b) { return comesBefore(a, b); };
    std::sort(added.begin(), added.end(), before);
    // Each is looked for: comparing costs more than moving what stands between two of them.
    std::vector<Entry> merged;
    merged.reserve(m_entries.size() + added.size());
    auto from = m_entries.cbegin();
    for (const Entry &entry : added) {
        const auto to = std::upper_bound(from, m_entries.cend(), entry, before);
        merged.insert(merged.end(), from, to);
        merged.push_back(entry);
        from = to;
    }
    merged.insert(merged.end(), from, m_entries.cend());
    m_entries = std::move(merged);
}

void KPSortedResults::dropUnusedBytes()
{
    constexpr qsizetype few = 1 << 16;
    if (m_unusedBytes < few || m_unusedBytes < m_bytes.size() / 2)
        return;
    QByteArray kept;
    kept.reserve(m_bytes.size() - m_unusedBytes);
    for (Entry &entry : m_entries) {
        const auto at = static_cast<quint32>(kept.size());
        kept.append(m_bytes.constData() + entry.at, lengthSize + rest(entry).size());
        entry.at = at;
    }
    m_bytes = kept;
    m_unusedBytes = 0;
}

bool KPSortedResults::isOfAnotherDay() const
{
    const auto field = m_order.group ? m_order.group->field : Field::Name;
    const bool isOfDates =
        field == Field::Modified || field == Field::Created || field == Field::Added;
    return isOfDates && m_grouper->day() != now().date();
}

void KPSortedResults::arrangeAll()
{
    std::vector<KPDoc *> docs;
    docs.reserve(m_entries.size());
    for (const Entry &entry : m_entries)
        docs.push_back(entry.doc);
    m_grouper = std::make_unique<KPResultGrouper>(m_order.group->field, now());
    m_groups.clear();
    m_groupNumbers.clear();
    m_entries.clear();
    m_bytes.clear();
    m_unusedBytes = 0;
    takeIn(docs);
}

KPResultsArrangement KPSortedResults::arrangement()
{
    auto docs = std::make_shared<KPDocArray>();
    docs->reserve(m_entries.size());
    for (const Entry &entry : m_entries)
        docs->push_back(entry.doc);
    if (!m_grouper)
        return {std::move(docs), nullptr};
    auto groups = std::make_shared<KPResultGroups>();
    groups->key = *m_order.group;
    qsizetype at = 0;
    quint32 last = 0;
    for (const Entry &entry : m_entries) {
        if (groups->runs.empty() || entry.group != last)
            groups->runs.push_back({m_groups[entry.group].group, at, 0});
        last = entry.group;
        ++groups->runs.back().count;
        ++at;
    }
    return {std::move(docs), std::move(groups)};
}

KPResultsArrangement KPSortedResults::apply(const KPResultsDifference &difference)
{
    const bool isNewDay = isOfAnotherDay();
    if (difference.isEmpty() && !isNewDay && m_last.docs)
        return m_last;
    takeOut(difference);
    if (isNewDay)
        arrangeAll();
    std::vector<KPDoc *> docs = difference.added;
    for (const auto &told : difference.changed)
        docs.push_back(told.doc);
    takeIn(docs);
    dropUnusedBytes();
    m_last = arrangement();
    return m_last;
}
