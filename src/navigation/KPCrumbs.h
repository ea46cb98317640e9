#pragma once

#include "KPCrumb.h"

class KPCrumbController;
class KPSearcher;

// A search state as the steps of the crumb trail: source, location, then each criterion. What the
// source item itself asks for is shown by its step alone, as long as the state still says so; no
// criterion is ever left out.
// Threads: main.
class KPCrumbs
{
public:
    explicit KPCrumbs(const KPSearchState::Ptr &state,
                      const KPNavigator::SourceItem &sourceItem = nullptr,
                      const KPNavigator::LocationItem &locationItem = nullptr);

    const KPSearchState::Ptr &state() const { return m_state; }
    // The state still asks for all that the source item does.
    bool holdsSource() const { return m_source != nullptr; }
    const QList<KPCrumb> &crumbs() const { return m_crumbs; }
    // "Tagged work, without draft, PDF, last 7 days": for screen readers and the names of searches.
    QString sentence() const;
    // Of a state without its window, as a saved search shows it.
    static QString sentenceOf(const KPSearchState::Ptr &state);

    // The menus. `controller` gives the recent locations, its searcher the tags of the results.
    QList<KPCrumbChoice> choices(const KPCrumb &crumb, const KPCrumbController &controller) const;
    // Ways of narrowing further, in groups.
    QList<KPCrumbChoice> additions(const KPCrumbController &controller) const;
    // The state with a range of the user's own, in days before now.
    KPSearchState::Ptr withDates(double start, std::optional<double> end) const;

    // Of one line each.
    static QString textOfDates(const KPSearchState &state);
    // The key of all dates but those of the key; empty: there is none.
    static QString oppositeDate(const QString &dateKey);
    static QString oppositeRating(const QString &condition);
    // A word of a search text as it is written there: in quotes where it must be.
    static QString writtenWord(const QString &word);

private:
    void add(KPCrumb crumb) { m_crumbs.append(std::move(crumb)); }
    void addSource(const KPNavigator::SourceItem &item);
    void addFolders(const KPNavigator::LocationItem &item);
    void addModes();
    void addTags();
    void addTypes();
    void addConditions();
    void addWords();
    bool isOfSource(const QString &key) const;
    KPSearchState::Ptr without(const QStringList &keys) const;

    KPSearchState::Ptr m_state;
    KPSearchState::Ptr m_source; // what the source item asks for, where the state still says so
    QList<KPCrumb> m_crumbs;
};
