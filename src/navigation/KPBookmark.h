#pragma once

#include "KPSearchState.h"

// A saved search, or a folder of them. A value. Threads: any.
struct KPBookmark
{
    QString identifier; // for good; empty: not in a list yet
    QString title;      // what was typed: shown with XPPath::printable()
    bool isFolder = false;
    KPSearchState::SavedDictionary state;  // of a saved search
    QList<KPBookmark> children;            // of a folder
    PropertyValue::Dictionary others = {}; // what a newer program stores beside these
    PropertyValue::Array unknown = {};     // entries of a folder that are neither; kept at its end

    static KPBookmark search(const QString &title, const KPSearchState &state);
    static KPBookmark folder(const QString &title, const QList<KPBookmark> &children = {});

    KPSearchState::Ptr searchState() const;
    // Of itself and all below it; null: it is not there.
    const KPBookmark *find(const QString &identifier) const;
    KPBookmark *find(const QString &identifier);
    bool operator==(const KPBookmark &) const = default;

    // The stored form of one and all below it. A value of another kind is none.
    PropertyValue saved() const;
    static std::optional<KPBookmark> read(const PropertyValue &saved);
};

// A file of bookmarks: a property list that people can read, with all of them as children of one
// folder without a name.
namespace KPBookmarkFile {

inline const QString listKey = QStringLiteral("_bookmarksAndFoldersArray");
inline const QString versionKey = QStringLiteral("version");
inline constexpr int version = 1;

struct Contents
{
    KPBookmark root;
    bool isNewer = false; // of a newer program: what is not known here would be lost by writing
};

// Malformed where it is no such list. Identifiers are made where they are missing or there twice,
// the same ones each time that the same bytes are read.
XPResult<Contents> parse(QByteArrayView bytes);
XPResult<QByteArray> bytes(const KPBookmark &root);

} // namespace KPBookmarkFile
