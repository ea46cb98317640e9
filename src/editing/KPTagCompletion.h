#pragma once

#include <QHash>
#include <QStringList>
#include <memory>
#include <vector>

// Which of the library's tags may be meant by what somebody types.
//
// In this order: those that begin so, those used together with the tags that are there already,
// those used lately, those used often. Read once, then asked after each key.
// Threads: read() and usedWith() any, blocking, as the index and a file are read; an immutable
// value then.
class KPTagCompletion
{
public:
    using Ptr = std::shared_ptr<const KPTagCompletion>;
    // Documents that have a tag, by its key (karvexTagKey).
    using Counts = QHash<QString, qsizetype>;

    struct Known
    {
        QString tag;
        qsizetype count = 0; // documents that have it
    };
    struct Match
    {
        QString tag;
        qsizetype count = 0;
    };

    static Ptr read();
    // How many documents have another tag beside one of these.
    static Counts usedWith(const QStringList &tags);

    // `recent`: the newest first; tags that no document has any more among them.
    KPTagCompletion(const QList<Known> &known, const QStringList &recent);

    // `present` are not among them. Case, accents and composition do not count.
    QList<Match> matches(const QString &typed, const QStringList &present, const Counts &together,
                         qsizetype most) const;

private:
    struct Entry
    {
        QString tag;
        QString key;
        QString folded;
        qsizetype count;
        qsizetype recency; // 0: not used lately; else the greater the later
    };
    std::vector<Entry> m_entries;
};
