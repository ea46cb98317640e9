#include "KPTagTree.h"

#include "KarvexTagKey.h"

#include <QCollator>
#include <algorithm>

QStringList KPTagTree::above(const QString &tag)
{
    QStringList parents;
    for (qsizetype slash = tag.indexOf(u'/'); slash >= 0; slash = tag.indexOf(u'/', slash + 1)) {
        if (slash > 0 && slash < tag.size() - 1)
            parents.append(tag.left(slash));
    }
    parents.removeAll(tag);
    return parents;
}

bool KPTagTree::isBelow(const QString &tag, const QString &parent)
{
    return karvexTagKey(tag).startsWith(karvexTagKey(parent) + u'/');
}

// The node of a tag, with those above it.
int KPTagTree::place(const QString &tag, QHash<QString, int> &places)
{
    const QString key = karvexTagKey(tag);
    if (const auto known = places.constFind(key); known != places.cend())
        return *known;
    const QStringList parents = above(tag);
    const int parent = parents.isEmpty() ? root : place(parents.last(), places);
    const int index = size();
    places.insert(key, index);
    const QString name =
        parents.isEmpty() ? tag : tag.mid(parents.last().size() + 1);
    m_nodes.push_back({tag, name, 0, 0, parent});
    m_nodes[static_cast<size_t>(parent)].children.push_back(index);
    return index;
}

KPTagTree::KPTagTree(const QList<KPTagDocuments::UsedTag> &tags) : m_nodes(1)
{
    QHash<QString, int> places;
    for (const auto &each : tags) {
        if (each.tag.isEmpty())
            continue;
        const int index = place(each.tag, places);
        Node &known = m_nodes[static_cast<size_t>(index)];
        known.count = each.count;
        known.branchCount = each.branchCount;
    }
    QCollator collator;
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<QCollatorSortKey> keys;
    keys.reserve(m_nodes.size());
    for (const Node &each : m_nodes)
        keys.push_back(collator.sortKey(each.name));
    for (Node &each : m_nodes) {
        auto &children = each.children;
        std::sort(children.begin(), children.end(), [&](int a, int b) {
            const int order = keys[static_cast<size_t>(a)].compare(keys[static_cast<size_t>(b)]);
            return order != 0 ? order < 0 : node(a).name < node(b).name;
        });
        for (size_t row = 0; row < children.size(); ++row)
            m_nodes[static_cast<size_t>(children[row])].row = static_cast<int>(row);
    }
}
