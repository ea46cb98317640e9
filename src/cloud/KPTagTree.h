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
    };

    // Parents that no document has are made.
    explicit KPTagTree(const QList<KPTagDocuments::UsedTag> &tags = {});

    int size() const { return static_cast<int>(m_nodes.size()); }
    const Node &node(int index) const { return m_nodes[static_cast<size_t>(index)]; }
    static constexpr int root = 0;

    // "a/b" and "a" of "a/b/c", the nearest last.
    static QStringList above(const QString &tag);
    static bool isBelow(const QString &tag, const QString &parent);

private:
    int place(const QString &tag, QHash<QString, int> &places);

    std::vector<Node> m_nodes;
};
