#include "KPFolderNode.h"

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

QByteArray KPFolderNode::path() const
{
    std::vector<const KPFolderNode *> way;
    for (const KPFolderNode *node = this; node; node = node->parent)
        way.push_back(node);
    QByteArray path = way.back()->name;
    for (auto it = way.rbegin() + 1; it != way.rend(); ++it)
        path += '/' + (*it)->name;
    return path;
}

size_t KPFolderOpener::depthOf(const KPFolderNode *node) const
{
    const auto it = std::find_if(m_open.rbegin(), m_open.rend(),
                                 [node](const Open &open) { return open.node == node; });
    return static_cast<size_t>(m_open.rend() - it);
}

void KPFolderOpener::truncate(size_t size)
{
    while (m_open.size() > size) {
        ::close(m_open.back().descriptor);
        m_open.pop_back();
    }
}

void KPFolderOpener::forget(const KPFolderNode &node)
{
    if (const size_t depth = depthOf(&node))
        truncate(depth - 1);
}

int KPFolderOpener::open(const KPFolderNode &node)
{
    constexpr size_t maximumOpen = 64;
    std::vector<const KPFolderNode *> missing;
    const KPFolderNode *known = &node;
    for (; known && depthOf(known) == 0; known = known->parent)
        missing.push_back(known);
    truncate(known ? depthOf(known) : 0);
    for (auto it = missing.rbegin(); it != missing.rend(); ++it) {
        // A root may be a link: the user named it. Below it links lead nowhere.
        const bool isRoot = !(*it)->parent;
        const QByteArray name = isRoot && (*it)->name.isEmpty() ? QByteArray("/") : (*it)->name;
        const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | (isRoot ? 0 : O_NOFOLLOW);
        const int from = isRoot ? AT_FDCWD : m_open.back().descriptor;
        const int descriptor = ::openat(from, name.constData(), flags);
        if (descriptor < 0)
            return -1;
        m_open.push_back({*it, descriptor});
        if (m_open.size() > maximumOpen) {
            ::close(m_open.front().descriptor);
            m_open.erase(m_open.begin());
        }
    }
    return m_open.back().descriptor;
}
