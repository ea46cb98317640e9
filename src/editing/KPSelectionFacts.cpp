#include "KPSelectionFacts.h"

#include <QSet>
#include <algorithm>

// In UTC: two time zones of a user's days are told apart by nobody.
static QDate dayOf(const KPDoc &doc)
{
    static constexpr qint64 nanosecondsOfDay = qint64{86400} * 1000000000;
    const qint64 modified = doc.unixModificationTime();
    return modified == 0 ? QDate() : QDate(1970, 1, 1).addDays(modified / nanosecondsOfDay);
}

void KPSelectionFacts::add(KPDoc *doc)
{
    Own own{doc->tagNamesOfTypeUserEntered(), doc->rating(), doc->unixFileSize(), dayOf(*doc),
            true};
    if (const auto error = doc->unreadableMetaData()) {
        own.isReadable = false;
        own.tags.clear();
        m_unreadable.insert(doc, error->reason());
    }
    for (KPTagName *tag : std::as_const(own.tags))
        ++m_tags[tag];
    ++m_ratings[own.rating];
    m_size += own.size;
    if (own.day.isValid())
        ++m_days[own.day];
    m_own.insert(doc, own);
}

void KPSelectionFacts::remove(KPDoc *doc)
{
    const Own own = m_own.take(doc);
    for (KPTagName *tag : own.tags) {
        if (--m_tags[tag] == 0)
            m_tags.remove(tag);
    }
    if (--m_ratings[own.rating] == 0)
        m_ratings.remove(own.rating);
    m_size -= own.size;
    if (own.day.isValid() && --m_days[own.day] == 0)
        m_days.remove(own.day);
    m_unreadable.remove(doc);
}

void KPSelectionFacts::setDocuments(const KPDoc::Docs &documents)
{
    m_own.reserve(documents.size());
    const QSet<KPDoc *> wanted(documents.begin(), documents.end());
    for (KPDoc *doc : std::as_const(m_documents)) {
        if (!wanted.contains(doc))
            remove(doc);
    }
    for (KPDoc *doc : documents) {
        if (!m_own.contains(doc))
            add(doc);
    }
    m_documents = documents;
}

void KPSelectionFacts::update(const KPDoc::Docs &changed)
{
    for (KPDoc *doc : changed) {
        if (!m_own.contains(doc))
            continue;
        remove(doc);
        add(doc);
    }
}

QStringList KPSelectionFacts::paths() const
{
    QStringList paths;
    paths.reserve(m_documents.size());
    for (const KPDoc *doc : m_documents)
        paths.append(doc->filePath());
    return paths;
}

QStringList KPSelectionFacts::commonTags() const
{
    const qsizetype readable = m_documents.size() - unreadable();
    QStringList tags;
    for (auto last = m_documents.crbegin(); last != m_documents.crend(); ++last) {
        const auto own = m_own.constFind(*last);
        if (!own->isReadable)
            continue;
        for (KPTagName *tag : own->tags) {
            if (m_tags.value(tag) == readable)
                tags.append(tag->displayName());
        }
        break;
    }
    return tags;
}

QList<KPSelectionFacts::Some> KPSelectionFacts::someTags(qsizetype most) const
{
    const qsizetype readable = m_documents.size() - unreadable();
    QList<Some> some;
    for (auto tag = m_tags.cbegin(); tag != m_tags.cend(); ++tag) {
        if (*tag < readable)
            some.append({tag.key()->displayName(), *tag});
    }
    std::sort(some.begin(), some.end(), [](const Some &a, const Some &b) {
        return a.count != b.count ? a.count > b.count : a.tag < b.tag;
    });
    some.resize(std::min(most, some.size()));
    return some;
}

std::optional<double> KPSelectionFacts::rating() const
{
    return m_ratings.size() == 1 ? std::optional(m_ratings.firstKey()) : std::nullopt;
}

QString KPSelectionFacts::error() const
{
    return m_unreadable.isEmpty() ? QString() : *m_unreadable.cbegin();
}
