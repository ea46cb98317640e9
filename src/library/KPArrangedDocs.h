#pragma once

#include "KPDoc.h"
#include "KPResultsOrder.h"
#include "KPSelection.h"

#include <QObject>

// The documents that are shown, in their order, and which of them are selected: what the grid and
// the list have in common.
//
// A new arrangement keeps the selection, the anchor and the current document by identity. Where
// the current document went while the same search is shown (renamed away, thrown away, moved), the
// next one that stays takes its place, and is selected when nothing else is.
// Threads: main.
class KPArrangedDocs : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // --- What is shown

    int count() const { return static_cast<int>(m_arranged.docs ? m_arranged.docs->size() : 0); }
    KPDoc *at(int row) const { return (*m_arranged.docs)[static_cast<size_t>(row)]; }
    const KPResultGroups *groups() const { return m_arranged.groups.get(); } // null: none
    // -1: not shown. Looks from the row of the last answer on.
    int rowOf(const KPDoc *doc) const;
    void setArrangedObjects(const KPResultsArrangement &arranged, bool isSameSearch);
    // Rows that say something else of themselves, both included.
    void tellChanged(int first, int last);

    // --- Selection. Documents that are not shown are passed over.

    const KPSelection &selection() const { return m_selection; }
    bool isSelected(const KPDoc *doc) const { return m_selection.isSelected(rowOf(doc)); }
    KPDoc *singleSelection() const;   // null unless exactly one is selected
    KPDoc *current() const;           // null: none
    KPDoc::Docs selectedDocs() const; // in the order shown, none that is gone

    void setSelections(const KPDoc::Docs &docs, bool scrollFirstToVisible);
    void addSelections(const KPDoc::Docs &docs, bool scrollFirstToVisible);
    void removeSelection(KPDoc *doc);
    void extendSelectionsByShiftClicking(KPDoc *doc);
    void modifySelectedBy(int offset, bool byExtendingSelection, bool wrap);
    void selectFirst(bool extend);
    void selectLast(bool extend);
    void selectAll();
    void selectNone();
    void selectRow(int row);
    void toggleRow(int row);
    // What a rubber band or a list makes of it at once.
    void setSelection(const KPSelection &selection);

Q_SIGNALS:
    void arranged();
    void changed(int first, int last);
    // May be the same as before; `arranged` comes first where both do.
    void selectionChanged();
    void currentChanged(int row);
    void scrollWanted(int row);

private:
    KPDoc::Docs selectedRecords() const;
    void rearrange(const KPDocArray &before, const KPDocArray &now, bool isSameSearch);
    void tell(std::optional<int> visibleRow);
    QList<int> rowsOf(const KPDoc::Docs &docs) const;

    KPResultsArrangement m_arranged;
    KPSelection m_selection;
    mutable int m_lastFound = 0;
};
