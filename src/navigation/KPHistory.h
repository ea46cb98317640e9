#pragma once

#include "KPNavigator.h"

#include <QList>

// The searches of the window in the order in which they were shown, and which of them is shown.
//
// An entry is at most a state, the source item and the location item that went with it, in that
// order: where one is absent, those behind it are too, and going back leaves alone what an entry
// lacks. A new entry drops those ahead of the present one. Grows without bound.
// Threads: main.
class KPHistory
{
public:
    class Entry
    {
    public:
        Entry() = default;
        explicit Entry(const KPSearchState::Ptr &state, const KPNavigator::SourceItem &source = {},
                       const KPNavigator::LocationItem &location = {});

        const KPSearchState::Ptr &state() const { return m_state; }
        const KPNavigator::SourceItem &sourceItem() const { return m_source; }
        const KPNavigator::LocationItem &locationItem() const { return m_location; }
        int count() const; // 0 to 3

    private:
        KPSearchState::Ptr m_state;
        KPNavigator::SourceItem m_source;
        KPNavigator::LocationItem m_location;
    };

    KPHistory();

    void addItem(const Entry &entry);
    // Null: there is none.
    const Entry *currentItem() const;
    const Entry *backItem() const;
    const Entry *forwardItem() const;
    qsizetype backListCount() const { return m_position; } // -1 when empty
    qsizetype forwardListCount() const { return m_entries.size() - 1 - m_position; }
    void goBack();
    void goForward();
    void clearList();
    QString description() const; // for the log

private:
    const Entry *at(qsizetype position) const;

    QList<Entry> m_entries;
    qsizetype m_position = -1;
};
