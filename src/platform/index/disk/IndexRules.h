#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QSet>
#include <QStringList>

// Which folders people do not want to see: hidden ones, caches, version-control stores, build
// trees and package stores. A rule is a folder's name ("node_modules", "*.tmp" with the wildcards
// * and ?) or, beginning with "/" or "~/", the path of one folder. A rule with "!" before it takes
// a folder back in, and the last rule that fits decides. A folder that is itself a root is never
// left out. Also left out is what names itself a cache: a folder that holds a "CACHEDIR.TAG" (the
// Cache Directory Tagging specification) or a build tool's cache file, whose own entries are then
// not indexed. Threads: a value.
class IndexRules
{
public:
    IndexRules() = default; // nothing is left out
    explicit IndexRules(const QStringList &rules);
    static QStringList defaultRules();

    // The same with roots inside other roots (volumes, mostly), which are read on their own.
    IndexRules withRoots(const QByteArrayList &roots) const;
    // The same without the folder that holds the store: an index that reads of its own writing
    // would have no end. `store`: the store's file; an empty path changes nothing.
    IndexRules withoutStore(const QString &store) const;

    // Whether the folder `name` in `parent` (bytes, no slash at the end) is left out.
    bool excludes(QByteArrayView parent, QByteArrayView name) const;
    // Whether a folder that holds an entry of this name is a cache or a build tree.
    bool isCacheMarker(QByteArrayView entryName) const;

    const QStringList &rules() const { return m_texts; }

private:
    struct Rule
    {
        bool include = false;
        bool isPath = false;
        QByteArray pattern;
    };
    QStringList m_texts;
    QList<Rule> m_rules;
    void leaveOut(const QByteArray &folder);

    QSet<QByteArray> m_folders; // left out whatever the rules say
    QSet<QByteArray> m_folderNames;
};
