#pragma once

#include "KPNameOrder.h"
#include "KPResultGroups.h"
#include "KPResultsOrder.h"

#include <functional>

// The documents of a search in an order of KPSortOrder, in groups if it asks for them.
//
// What a document is compared by is put into bytes once, when it comes or changes; from then on
// only these are compared, so that nothing moves while a record's facts do. A change is sorted
// alone and merged in. Where groups are ranges of dates, the first change of a new day arranges
// everything anew.
// Threads: as KPResultsOrder. Documents learn their groups (KPDoc::cachedGroup()).
class KPSortedResults : public KPResultsOrder
{
public:
    using Clock = std::function<QDateTime()>; // local time
    explicit KPSortedResults(const KPSortOrder &order, Clock clock = {});
    ~KPSortedResults() override;

    KPResultsArrangement apply(const KPResultsDifference &difference) override;
    // When the document was added, as Field::Added says: nanoseconds since 1970, 0 unknown. Any
    // thread.
    static qint64 addedOf(const KPDoc &doc);

private:
    // 32 bytes, as there is one for each result.
    struct Entry
    {
        KPDoc *doc = nullptr;
        KPPooledString path; // when it took its place
        quint64 start = 0;   // the first bytes of its key
        quint32 at = 0;      // of the rest in m_bytes, after its length
        quint32 group = 0;   // in m_groups
    };
    struct Group
    {
        const KPResultGroup *group;
        QByteArray key;
    };

    Entry entryOf(KPDoc *doc);
    quint32 appendGroup(const KPDoc &doc);
    void appendField(const KPSortKey &key, const KPDoc &doc);
    void appendText(const KPDoc &doc, KPSortKey::Field field);
    const QByteArray &textKey(const void *address, const QString &text);
    bool comesBefore(const Entry &a, const Entry &b) const;
    QByteArrayView rest(const Entry &entry) const;
    void arrangeAll();
    void takeOut(const KPResultsDifference &difference);
    void takeIn(const std::vector<KPDoc *> &docs);
    void dropUnusedBytes();
    QDateTime now() const;
    bool isOfAnotherDay() const;
    KPResultsArrangement arrangement();

    const KPSortOrder m_order;
    const Clock m_clock;
    const KPNameKeys m_names;
    std::unique_ptr<KPResultGrouper> m_grouper; // null: no groups
    std::vector<Entry> m_entries;
    std::vector<Group> m_groups;
    QHash<const KPResultGroup *, quint32> m_groupNumbers;
    QByteArray m_bytes;
    qsizetype m_unusedBytes = 0;
    QByteArray m_key;                        // under construction
    QHash<const void *, QByteArray> m_texts; // keys of types' names and folders, by identity
    KPResultsArrangement m_last;
};
