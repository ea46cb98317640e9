#pragma once

#include "KPSearchState.h"
#include "XPFileInfo.h"

#include <QSet>

// A search state as the index is asked for it: the text of the query, where to look, and which of
// what the query matched are the state's documents.
//
// Those are regular files and packages; what is hidden below the folders looked in is left out.
// Tags and ratings are decided by the query, so by the index alone: the attribute caches, which
// the state's own tests read, may not be filled (murnctl has none) or lag behind the index, and
// nobody would ask again once they have caught up.
// What could not be read of a file is unknown, not absent: a file with damaged tags is not shown as
// one that lacks a tag.
// Threads: one at a time. Looks at the disk where it says so.
class KPIndexFilter
{
public:
    // The folders that a state's entries stand for; several entries may be one place.
    struct Scope
    {
        QStringList folders;     // absolute; none and not everywhere: there is nothing to ask
        bool everywhere = false; // whatever is indexed, now and later
        QStringList uncovered;   // those that are left out, as the index is of no use there
    };
    static Scope scopeOf(const KPSearchState &state);
    // The scope of the query for these folders. Looks at the disk, but at no volume that may hang.
    static QStringList reduced(const QStringList &folders);

    explicit KPIndexFilter(KPSearchState::Ptr state);

    // By its types alone: nothing need be asked.
    bool findsNothing() const { return m_state->utiIsInconsistent(); }
    QString text() const;
    const Scope &scope() const { return m_scope; }
    // Of an index that is searched everywhere: what is hidden below one of them is left out.
    void setRoots(const QStringList &roots);

    // By what the index's row says: false says that it is no document of the state.
    bool mayHold(const QByteArray &path, const QString &text, const XPFileInfo &info,
                 const QString &type) const;
    bool hidesUnreadableTags() const { return m_hidesUnreadableTags; }
    // Whether passes() has anything to ask beyond that.
    bool needsRecord() const;
    bool passes(const KPDoc &doc) const { return m_tests->docPassesMDQuery(doc); }

    // Those that would be found if it were not for the tags, the rating and the words in tags,
    // and of which these cannot be read: they may be missing. Null: there is none.
    std::unique_ptr<KPIndexFilter> unreadable() const;

private:
    bool isHidden(const QString &path) const;

    const KPSearchState::Ptr m_state;
    const KPSearchState::Ptr m_tests; // what is asked of a document found by the query
    Scope m_scope;
    QSet<QString> m_folders;
    QString m_clause; // more that the query asks
    bool m_hidesUnreadableTags;
};
