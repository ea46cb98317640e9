#pragma once

#include "KPTagDocuments.h"

#include <vector>

// The tags of the user as a tree: "tax/2024" stands below "tax". Sorted by name, numbers by value.
// Threads: any; an immutable value.
class KPTagTree
{
public:
    struct Node
    {
        QString tag;               // whole; empty for the root
        QString name;              // its last part
        qsizetype count = 0;       // documents that have it
        qsizetype branchCount = 0; // or one below it; 0: not known
        int parent = -1;
        int row = 0; // among its parent's children
        std::vector<int> children = {};
        QString folded = {}; // the whole tag, as filters compare it (foldText)
    };

    // Parents that no document has are made.
    explicit KPTagTree(const QList<KPTagDocuments::UsedTag> &tags = {});

    int size() const { return static_cast<int>(m_nodes.size()); }
    const Node &node(int index) const { return m_nodes[static_cast<size_t>(index)]; }
    static constexpr int root = 0;
    // The tags that hold the text, which is folded, with those above them.
    KPTagTree filtered(const QString &text) const;
    int find(const QString &tag) const;         // root: it is not there
    int findHolding(const QString &text) const; // the first from above that does, folded; or root

    // "a/b" and "a" of "a/b/c", the nearest last.
    static QStringList above(const QString &tag);
    static bool isBelow(const QString &tag, const QString &parent);

private:
    int place(const QString &tag, QHash<QString, int> &places);
    void sort();

    std::vector<Node> m_nodes; // a parent before its children
};
