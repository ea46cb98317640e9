#include "KPFolderListing.h"
#include "KPFolderWalk.h"
#include "XPPath.h"

#include <cerrno>

void KPFolderWalk::visit(const Visit &visit)
{
    KPFolderNode &node = *visit.node;
    node.queued = false;
    const int descriptor = m_opener.open(node);
    if (descriptor < 0) {
        cannotOpen(node, errno);
        return;
    }
    node.failed = false;
    // Watched before it is read: what changes from here on is in the list or in the notices.
    if (m_watch)
        watch(node, descriptor);
    const Place here = place(node, descriptor, visit.deep);
    forgetProblem(here.path);
    KPFolderListing listing(descriptor);
    readNames(here, listing);
    if (m_isStopped())
        return;
    if (listing.error())
        setProblem(here.path, XPError::fromErrno(listing.error()).reason());
    else
        sweep(here);
}

void KPFolderWalk::readNames(const Place &place, KPFolderListing &listing)
{
    ++place.node.pass;
    while (const auto entry = listing.next()) {
        if (m_isStopped())
            return;
        if (entry->name.startsWith('.'))
            continue;
        if (entry->type == KPFolderListing::Type::Folder)
            seeFolder(place, entry->name);
        else if (entry->type != KPFolderListing::Type::Other)
            look(place, entry->name);
        deliverInTime();
    }
}

// Takes back what the last reading of the folder did not see.
void KPFolderWalk::sweep(const Place &place)
{
    KPFolderNode &node = place.node;
    QList<QByteArray> gone;
    for (auto it = node.documents.cbegin(); it != node.documents.cend(); ++it) {
        if (it->pass != node.pass)
            gone.append(it.key());
    }
    for (const QByteArray &name : gone)
        forgetDocument(node, place.path, name);
    gone.clear();
    for (const auto &[name, folder] : node.folders) {
        if (folder->parentPass != node.pass)
            gone.append(name);
    }
    for (const QByteArray &name : gone)
        dropFolder(node, name);
}

void KPFolderWalk::cannotOpen(KPFolderNode &node, int number)
{
    node.failed = true;
    release(node);
    dropContents(node);
    const QString path = XPPath::decode(node.path());
    const bool gone = number == ENOENT || number == ENOTDIR || number == ELOOP;
    if (gone && node.parent) {
        dropFolder(*node.parent, QByteArray(node.name));
        return;
    }
    setProblem(path.isEmpty() ? QStringLiteral("/") : path, XPError::fromErrno(number).reason());
    // A forbidden folder tells when its rights change; a missing root or a lack of descriptors
    // tells nobody.
    if (m_watch && (number != EACCES || !node.parent))
        m_unwatched.insert(&node);
}

void KPFolderWalk::seeFolder(const Place &place, const QByteArray &name)
{
    // A requested folder inside another one is walked as a folder of its own.
    if (m_rootPaths.size() > 1 && m_rootPaths.count(place.node.path() + '/' + name))
        return;
    std::unique_ptr<KPFolderNode> &child = place.node.folders[name];
    const bool isNew = !child;
    if (isNew) {
        child = std::make_unique<KPFolderNode>();
        child->parent = &place.node;
        child->name = name;
        if (!place.node.documents.isEmpty())
            forgetDocument(place.node, place.path, name);
    }
    child->parentPass = place.node.pass;
    if (isNew || place.deep)
        push(*child, place.deep);
}

void KPFolderWalk::dropFolder(KPFolderNode &parent, const QByteArray &name)
{
    const auto it = parent.folders.find(name);
    if (it == parent.folders.end())
        return;
    std::vector<std::unique_ptr<KPFolderNode>> nodes;
    nodes.push_back(std::move(it->second));
    parent.folders.erase(it);
    drop(std::move(nodes));
}

void KPFolderWalk::dropContents(KPFolderNode &node)
{
    const QString path = XPPath::decode(node.path());
    for (const QByteArray &name : node.documents.keys())
        forgetDocument(node, path, name);
    std::vector<std::unique_ptr<KPFolderNode>> nodes;
    for (auto &[name, folder] : node.folders)
        nodes.push_back(std::move(folder));
    node.folders.clear();
    drop(std::move(nodes));
    forgetProblemsBelow(path);
}

// Forgets whole trees, without recursion: a tree can be deeper than the stack.
void KPFolderWalk::drop(std::vector<std::unique_ptr<KPFolderNode>> nodes)
{
    for (size_t i = 0; i < nodes.size(); ++i) {
        KPFolderNode &node = *nodes[i];
        node.dropped = true;
        m_opener.forget(node);
        release(node);
        m_unwatched.erase(&node);
        if (!node.documents.isEmpty()) {
            const QString path = XPPath::decode(node.path());
            for (const QByteArray &name : node.documents.keys())
                forgetDocument(node, path, name);
        }
        if (!m_problems.isEmpty()) {
            const QString path = XPPath::decode(node.path());
            forgetProblem(path);
            forgetProblemsBelow(path);
        }
        for (auto &[name, folder] : node.folders)
            nodes.push_back(std::move(folder));
        node.folders.clear();
    }
    std::erase_if(m_visits, [](const Visit &visit) { return visit.node->dropped; });
}

void KPFolderWalk::forgetDocument(KPFolderNode &node, const QString &folder, const QByteArray &name)
{
    if (node.documents.remove(name))
        m_reports.removed(folder + u'/' + XPPath::decode(name));
}
