#include "KPFolderWalk.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

void KPFolderWalk::watch(KPFolderNode &node, int descriptor)
{
    const int number = m_watch->add(descriptor);
    if (number == node.watch && number >= 0)
        return;
    release(node);
    if (number < 0) {
        m_unwatched.insert(&node);
        return;
    }
    node.watch = number;
    m_nodesByWatch.emplace(number, &node);
    m_unwatched.erase(&node);
}

void KPFolderWalk::release(KPFolderNode &node)
{
    const int number = std::exchange(node.watch, -1);
    if (number < 0)
        return;
    const auto [first, last] = m_nodesByWatch.equal_range(number);
    for (auto it = first; it != last; ++it) {
        if (it->second == &node) {
            m_nodesByWatch.erase(it);
            break;
        }
    }
    // A folder that moved is for a while known at both places, by one watch.
    if (m_watch && !m_nodesByWatch.count(number))
        m_watch->remove(number);
}

// Calls `action` for every folder with that watch; it may drop any of them.
void KPFolderWalk::forEachNode(int watch, const std::function<void(KPFolderNode &)> &action)
{
    std::vector<KPFolderNode *> nodes;
    const auto [first, last] = m_nodesByWatch.equal_range(watch);
    for (auto it = first; it != last; ++it)
        nodes.push_back(it->second);
    for (KPFolderNode *node : nodes) {
        const auto [begin, end] = m_nodesByWatch.equal_range(watch);
        if (std::any_of(begin, end, [node](const auto &entry) { return entry.second == node; }))
            action(*node);
    }
}

void KPFolderWalk::takeEvents()
{
    if (!m_watch)
        return;
    for (const KPFolderWatch::Event &event : m_watch->take())
        takeEvent(event);
    for (const auto &[place, mask] : std::exchange(m_looks, {})) {
        if (m_isStopped())
            return;
        forEachNode(place.first, [&, &name = place.second, &bits = mask](KPFolderNode &node) {
            lookAgain(node, name, bits);
        });
        deliverInTime();
    }
}

// What a folder's own notice (one without a name) is worth. Below a root the folder above tells
// the same; of a root, and of a volume, only they themselves.
static bool concernsFolder(const KPFolderNode &node, quint32 mask)
{
    return (mask & IN_UNMOUNT) ||
           (!node.parent && (mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_ATTRIB)));
}

void KPFolderWalk::takeEvent(const KPFolderWatch::Event &event)
{
    if (event.mask & IN_Q_OVERFLOW) {
        m_lostEvents = true;
        return;
    }
    forEachNode(event.watch, [&](KPFolderNode &node) {
        if (event.mask & IN_IGNORED)
            node.watch = -1;
        else if (event.name.isEmpty() && concernsFolder(node, event.mask))
            push(node, !(event.mask & IN_ATTRIB));
        else if ((event.mask & IN_ISDIR) && (event.mask & (IN_MOVED_FROM | IN_DELETE)))
            dropFolder(node, event.name);
    });
    if (event.mask & IN_IGNORED)
        m_nodesByWatch.erase(event.watch);
    else if (!event.name.isEmpty() && !event.name.startsWith('.'))
        m_looks[{event.watch, event.name}] |= event.mask;
}

void KPFolderWalk::lookAgain(KPFolderNode &node, const QByteArray &name, quint32 mask)
{
    const int descriptor = m_opener.open(node);
    if (descriptor < 0)
        return; // gone, and whatever took it away is told of the folder above
    const auto known = node.folders.find(name);
    const bool onlyAttributes = !(mask & ~static_cast<quint32>(IN_ATTRIB | IN_ISDIR));
    if (known != node.folders.end() && onlyAttributes && !known->second->failed &&
        ::faccessat(descriptor, name.constData(), R_OK | X_OK, AT_EACCESS) == 0)
        return;
    look(place(node, descriptor, true), name);
}
