#include "KPArrangedDocs.h"

#include <QSet>
#include <algorithm>

int KPArrangedDocs::rowOf(const KPDoc *doc) const
{
    const int count = this->count();
    for (int step = 0; step < count; ++step) {
        const int row = (m_lastFound + step) % count;
        if (at(row) == doc)
            return m_lastFound = row;
    }
    return -1;
}

// In the order of the documents given; each once.
QList<int> KPArrangedDocs::rowsOf(const KPDoc::Docs &docs) const
{
    if (docs.size() == 1) {
        const int row = rowOf(docs.first());
        return row < 0 ? QList<int>() : QList<int>{row};
    }
    QHash<const KPDoc *, int> places;
    for (const KPDoc *doc : docs)
        places.insert(doc, -1);
    if (places.isEmpty())
        return {};
    for (int row = 0; row < count(); ++row) {
        if (const auto place = places.find(at(row)); place != places.end())
            *place = row;
    }
    QList<int> rows;
    for (const KPDoc *doc : docs) {
        if (const int row = std::exchange(places[doc], -1); row >= 0)
            rows.append(row);
    }
    return rows;
}

KPDoc::Docs KPArrangedDocs::selectedRecords() const
{
    KPDoc::Docs docs;
    docs.reserve(m_selection.count());
    for (const KPSelection::Run &run : m_selection.runs()) {
        for (int row = run.first; row <= run.last; ++row)
            docs.append(at(row));
    }
    return docs;
}

KPDoc::Docs KPArrangedDocs::selectedDocs() const
{
    KPDoc::Docs docs = selectedRecords();
    docs.removeIf([](const KPDoc *doc) { return doc->isGone(); });
    return docs;
}

KPDoc *KPArrangedDocs::singleSelection() const
{
    return m_selection.count() == 1 ? at(m_selection.first()) : nullptr;
}

KPDoc *KPArrangedDocs::current() const
{
    return m_selection.current() < 0 ? nullptr : at(m_selection.current());
}

// Rearranging.

namespace {

// What is the same at both ends of two arrays keeps its state; only the part between is looked up.
struct Middle
{
    Middle(const KPDocArray &before, const KPDocArray &now)
    {
        const size_t shorter = std::min(before.size(), now.size());
        while (prefix < shorter && before[prefix] == now[prefix])
            ++prefix;
        while (suffix < shorter - prefix &&
               before[before.size() - 1 - suffix] == now[now.size() - 1 - suffix])
            ++suffix;
        endBefore = static_cast<int>(before.size() - suffix);
        endNow = static_cast<int>(now.size() - suffix);
    }
    int start() const { return static_cast<int>(prefix); }

    size_t prefix = 0;
    size_t suffix = 0;
    int endBefore = 0;
    int endNow = 0;
};

// Where a row of the array before is now.
class Places
{
public:
    Places(const KPDocArray &before, const KPDocArray &now, const Middle &middle)
        : m_before(before), m_now(now), m_middle(middle)
    {
    }
    int rowOf(int before)
    {
        if (before < m_middle.start())
            return before;
        if (before >= m_middle.endBefore)
            return before + m_middle.endNow - m_middle.endBefore;
        fill();
        return m_rows.value(m_before[static_cast<size_t>(before)], -1);
    }
    // Of the row, or of the next one that stays, or else of the last before it.
    int nearestTo(int before)
    {
        for (auto row = static_cast<size_t>(before); row < m_before.size(); ++row) {
            if (const int now = rowOf(static_cast<int>(row)); now >= 0)
                return now;
        }
        for (int row = before; row-- > 0;) {
            if (const int now = rowOf(row); now >= 0)
                return now;
        }
        return -1;
    }

private:
    void fill()
    {
        if (!m_rows.isEmpty())
            return;
        for (int row = m_middle.start(); row < m_middle.endNow; ++row)
            m_rows.insert(m_now[static_cast<size_t>(row)], row);
        m_rows.insert(nullptr, -1);
    }

    const KPDocArray &m_before;
    const KPDocArray &m_now;
    const Middle &m_middle;
    QHash<const KPDoc *, int> m_rows;
};

} // namespace

void KPArrangedDocs::rearrange(const KPDocArray &before, const KPDocArray &now, bool isSameSearch)
{
    const Middle middle(before, now);
    Places places(before, now, middle);
    const KPSelection old = std::exchange(m_selection, {});
    m_selection.reset(static_cast<int>(now.size()));
    QSet<const KPDoc *> wanted;
    for (const KPSelection::Run &run : old.runs()) {
        m_selection.add({run.first, std::min(run.last, middle.start() - 1)});
        const int shift = middle.endNow - middle.endBefore;
        m_selection.add({std::max(run.first, middle.endBefore) + shift, run.last + shift});
        const int last = std::min(run.last, middle.endBefore - 1);
        for (int row = std::max(run.first, middle.start()); row <= last; ++row)
            wanted.insert(before[static_cast<size_t>(row)]);
    }
    for (int row = middle.start(); !wanted.isEmpty() && row < middle.endNow; ++row) {
        if (wanted.remove(now[static_cast<size_t>(row)]))
            m_selection.add({row, row});
    }
    if (old.anchor() >= 0)
        m_selection.setAnchor(places.rowOf(old.anchor()));
    if (old.current() < 0)
        return;
    int current = places.rowOf(old.current());
    if (current < 0 && isSameSearch) {
        current = places.nearestTo(old.current());
        if (current >= 0 && m_selection.isEmpty() && !old.isEmpty())
            m_selection.select(current);
    }
    m_selection.setCurrent(current);
}

void KPArrangedDocs::setArrangedObjects(const KPResultsArrangement &arranged, bool isSameSearch)
{
    static const KPDocArray none;
    const KPResultsArrangement old = std::exchange(m_arranged, arranged);
    m_lastFound = 0;
    if (old.docs != arranged.docs)
        rearrange(old.docs ? *old.docs : none, arranged.docs ? *arranged.docs : none, isSameSearch);
    Q_EMIT this->arranged();
    Q_EMIT selectionChanged();
}

void KPArrangedDocs::tellChanged(int first, int last)
{
    Q_EMIT changed(first, last);
}

// Selecting.

void KPArrangedDocs::tell(std::optional<int> visibleRow)
{
    Q_EMIT selectionChanged();
    Q_EMIT currentChanged(m_selection.current());
    if (visibleRow && *visibleRow >= 0)
        Q_EMIT scrollWanted(*visibleRow);
}

void KPArrangedDocs::setSelections(const KPDoc::Docs &docs, bool scrollFirstToVisible)
{
    m_selection.clear();
    if (!docs.isEmpty())
        m_selection.setAnchor(rowOf(docs.first()));
    addSelections(docs, scrollFirstToVisible);
}

void KPArrangedDocs::addSelections(const KPDoc::Docs &docs, bool scrollFirstToVisible)
{
    const QList<int> rows = rowsOf(docs);
    for (const int row : rows)
        m_selection.add({row, row});
    if (!rows.isEmpty())
        m_selection.setCurrent(rows.first());
    tell(scrollFirstToVisible && !rows.isEmpty() ? std::optional(rows.first()) : std::nullopt);
}

void KPArrangedDocs::removeSelection(KPDoc *doc)
{
    const int row = rowOf(doc);
    m_selection.remove({row, row});
    tell({});
}

void KPArrangedDocs::extendSelectionsByShiftClicking(KPDoc *doc)
{
    m_selection.extendByShiftClicking(rowOf(doc));
    tell({});
}

void KPArrangedDocs::modifySelectedBy(int offset, bool byExtendingSelection, bool wrap)
{
    tell(m_selection.modify(offset, byExtendingSelection, wrap));
}

void KPArrangedDocs::selectFirst(bool extend)
{
    tell(m_selection.selectFirst(extend));
}

void KPArrangedDocs::selectLast(bool extend)
{
    tell(m_selection.selectLast(extend));
}

void KPArrangedDocs::selectAll()
{
    m_selection.selectAll();
    tell({});
}

void KPArrangedDocs::selectNone()
{
    m_selection.clear();
    tell({});
}

void KPArrangedDocs::selectRow(int row)
{
    m_selection.select(row);
    tell({});
}

void KPArrangedDocs::toggleRow(int row)
{
    m_selection.toggle(row);
    tell({});
}

void KPArrangedDocs::setSelection(const KPSelection &selection)
{
    if (selection.rowCount() != m_selection.rowCount())
        return;
    m_selection = selection;
    tell({});
}
