#include "KPTagTree.h"

#include "KPNameOrder.h"
#include "KarvexTagKey.h"
#include "XPText.h"

#include <algorithm>

QStringList KPTagTree::above(const QString &tag)
{
    QStringList parents;
    for (qsizetype slash = tag.indexOf(u'/'); slash >= 0; slash = tag.indexOf(u'/', slash + 1)) {
        if (slash > 0 && slash < tag.size() - 1)
            parents.append(tag.left(slash));
    }
    return parents;
}

bool KPTagTree::isBelow(const QString &tag, const QString &parent)
{
    return karvexTagKey(tag).startsWith(karvexTagKey(parent) + u'/');
}

// The node of a tag, with those above it. A tag may have a thousand parts.
int KPTagTree::place(const QString &tag, QHash<QString, int> &places)
{
    int parent = root;
    qsizetype nameAt = 0;
    for (const QString &part : above(tag) + QStringList{tag}) {
        int &index = places[karvexTagKey(part)];
        if (index == 0) {
            index = size();
            m_nodes.push_back({part, part.mid(nameAt), 0, 0, parent});
            m_nodes[static_cast<size_t>(parent)].children.push_back(index);
        }
        parent = index;
        nameAt = part.size() + 1;
    }
    return parent;
}

void KPTagTree::sort()
{
    const QCollator collator = kpNameCollator();
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

KPTagTree::KPTagTree(const QList<KPTagDocuments::UsedTag> &tags) : m_nodes(1)
{
    QHash<QString, int> places;
    for (const auto &each : tags) {
        if (each.tag.isEmpty())
            continue;
        Node &known = m_nodes[static_cast<size_t>(place(each.tag, places))];
        // Its own spelling, whatever the tags below call it.
        known.name = each.tag.mid(known.tag.size() - known.name.size());
        known.tag = each.tag;
        known.count = each.count;
        known.branchCount = each.branchCount;
    }
    for (Node &each : m_nodes)
        each.folded = foldText(each.tag);
    sort();
}

// --- Looking for tags

KPTagTree KPTagTree::filtered(const QString &text) const
{
    if (text.isEmpty())
        return *this;
    std::vector<bool> isKept(m_nodes.size());
    for (size_t at = m_nodes.size() - 1; at > root; --at) {
        isKept[at] = isKept[at] || m_nodes[at].folded.contains(text);
        if (isKept[at])
            isKept[static_cast<size_t>(m_nodes[at].parent)] = true;
    }
    KPTagTree tree;
    // Children by their rows, so that they need no sorting.
    std::vector<std::pair<int, int>> open{{root, root}}; // here, and there
    while (!open.empty()) {
        const auto [from, to] = open.back();
        open.pop_back();
        for (const int child : node(from).children) {
            if (!isKept[static_cast<size_t>(child)])
                continue;
            const int copy = tree.size();
            tree.m_nodes.push_back(node(child));
            Node &made = tree.m_nodes.back();
            auto &siblings = tree.m_nodes[static_cast<size_t>(to)].children;
            made.parent = to;
            made.row = static_cast<int>(siblings.size());
            made.children.clear();
            siblings.push_back(copy);
            open.emplace_back(child, copy);
        }
    }
    return tree;
}

int KPTagTree::find(const QString &tag) const
{
    const QString key = karvexTagKey(tag);
    const QString folded = foldText(tag);
    const auto found = std::find_if(m_nodes.begin() + 1, m_nodes.end(), [&](const Node &each) {
        return each.folded == folded && karvexTagKey(each.tag) == key;
    });
    return found == m_nodes.end() ? root : static_cast<int>(found - m_nodes.begin());
}

int KPTagTree::findHolding(const QString &text) const
{
    std::vector<int> open{root};
    while (!open.empty()) {
        const int at = open.back();
        open.pop_back();
        if (at != root && node(at).folded.contains(text))
            return at;
        const auto &children = node(at).children;
        open.insert(open.end(), children.rbegin(), children.rend());
    }
    return root;
}
