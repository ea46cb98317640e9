#include "IndexReconciler.h"

#include "XPPath.h"

static constexpr size_t eventsAStep = 250;

using Event = IndexWatcher::Event;

// A file written in many steps is looked at once, after the last.
std::vector<bool> IndexReconciler::supersededIn(std::vector<Event> &events)
{
    std::vector<bool> superseded(events.size(), false);
    QHash<Name, size_t> later;
    for (size_t i = events.size(); i-- > 0;) {
        Event &event = events[i];
        if (event.kind != Event::Kind::Changed) {
            later.clear();
            continue;
        }
        const Name name(event.folder, event.name);
        const auto last = later.constFind(name);
        superseded[i] = last != later.cend();
        if (superseded[i])
            events[*last].isMade = events[*last].isMade || event.isMade;
        else
            later.insert(name, i);
    }
    return superseded;
}

bool IndexReconciler::apply(Events &events)
{
    if (events.next == 0)
        events.superseded = supersededIn(events.events);
    IndexBatch batch;
    QSet<QByteArray> folders; // whose own times changed with what they hold; nobody tells of that
    const size_t end = std::min(events.events.size(), events.next + eventsAStep);
    for (; events.next < end; ++events.next) {
        const Event &event = events.events[events.next];
        if (events.superseded[events.next])
            continue;
        if (m_calls.isDistant(event.folder)) {
            m_calls.read(event.folder, false);
            if (event.kind == Event::Kind::Moved)
                m_calls.read(event.toFolder, false);
            continue;
        }
        folders.insert(event.folder);
        if (event.kind == Event::Kind::Moved)
            folders.insert(event.toFolder);
        applyEvent(event, batch);
    }
    flush(batch);
    for (const QByteArray &folder : folders) {
        if (itemAt(folder) == 0)
            continue;
        if (const auto info = m_reader->readFacts(folder)) {
            note(parentOf(folder), nameOf(folder));
            putFolderFacts(folder, *info, batch);
        }
    }
    flush(batch);
    m_reader->closeFolder();
    return events.next == events.events.size();
}

// Each change is applied before the next is judged, unless both only concern facts.
void IndexReconciler::applyEvent(const Event &event, IndexBatch &batch)
{
    m_eventTime = event.time;
    applyTimedEvent(event, batch);
    m_eventTime = 0;
}

void IndexReconciler::applyTimedEvent(const Event &event, IndexBatch &batch)
{
    if (event.kind == Event::Kind::Changed) {
        note(event.folder, event.name);
        applyChanged(event.folder, event.name, event.isMade, batch);
        return;
    }
    flush(batch);
    if (event.isFolder)
        m_reader->closeFolder(); // what is open may be another folder now
    if (event.kind == Event::Kind::Gone) {
        note(event.folder, event.name);
        applyGone(event, batch);
    } else if (event.kind == Event::Kind::Moved) {
        note(event.folder, event.name);
        note(event.toFolder, event.toName);
        applyMoved(event, batch);
    }
    flush(batch);
}

// `made`: a folder that is new at this place, whose watches may be those of an earlier one.
void IndexReconciler::applyChanged(const QByteArray &folder, const QByteArray &name, bool made,
                                   IndexBatch &batch)
{
    const IndexItem parent = itemAt(folder);
    if (parent == 0)
        return;
    auto entry = m_reader->readEntry(folder, name);
    if (!entry)
        return; // gone again: an event of its own says so
    IndexFolderReader::Entry found = *std::move(entry);
    const QByteArray path = joined(folder, name);
    const IndexItem known = m_catalog.child(parent, name);
    const IndexSlot slot = m_catalog.slotOf(known);
    const bool again = made || slot == IndexCatalog::noSlot || m_unreadable.contains(path) ||
                       m_catalog.record(slot).info.inode != found.record.info.inode;
    putEntry(parent, found.record, known, batch, made);
    if (found.descend && again) {
        flush(batch);
        m_calls.read(path, true);
    }
}

void IndexReconciler::noteGone(const Event &event, IndexItem item)
{
    if (!event.isFolder)
        m_losses.gone(joined(event.folder, event.name), m_catalog.record(m_catalog.slotOf(item)),
                      event.time);
}

void IndexReconciler::applyGone(const Event &event, IndexBatch &batch)
{
    const IndexItem item = m_catalog.child(itemAt(event.folder), event.name);
    if (item) {
        noteGone(event, item);
        removeTree(item, batch);
    }
    // Another one may stand there already, and its watches may have gone with the old one's.
    if (event.isFolder) {
        flush(batch);
        applyChanged(event.folder, event.name, true, batch);
    }
}

void IndexReconciler::applyMoved(const Event &event, IndexBatch &batch)
{
    const IndexItem item = m_catalog.child(itemAt(event.folder), event.name);
    const IndexItem target = itemAt(event.toFolder);
    if (item == 0) {
        applyChanged(event.toFolder, event.toName, true, batch);
        return;
    }
    // Some programs save by renaming the old file aside and writing a new one.
    if (event.folder == event.toFolder)
        noteGone(event, item);
    auto entry = m_reader->readEntry(event.toFolder, event.toName);
    if (target == 0 ||
        (!entry && event.isFolder && m_rules->excludes(event.toFolder, event.toName))) {
        removeTree(item, batch);
        return;
    }
    const IndexItem overwritten = m_catalog.child(target, event.toName);
    if (overwritten && overwritten != item) {
        if (entry && !event.isFolder) {
            // Saved by writing a new file and renaming it over the old one: the old item goes on.
            removeTree(item, batch);
            IndexFolderReader::Entry found = *std::move(entry);
            putEntry(target, found.record, overwritten, batch, true);
            return;
        }
        removeTree(overwritten, batch);
    }
    IndexChange change;
    change.record = m_catalog.record(m_catalog.slotOf(item));
    if (!entry) { // moved on again; its attributes come with the next event
        change.kind = IndexChange::Kind::Move;
        change.record.parent = target;
        change.record.name = event.toName;
        batch.push_back(std::move(change));
    } else if ((change.record.info.mode & S_IFMT) != (entry->record.info.mode & S_IFMT)) {
        removeTree(item, batch);
        flush(batch);
        applyChanged(event.toFolder, event.toName, true, batch);
        return;
    } else {
        m_losses.made(joined(event.toFolder, event.toName), entry->record, event.time);
        change.record = entry->record;
        change.record.item = item;
        change.record.parent = target;
        batch.push_back(std::move(change));
    }
    // What happened inside on the way is looked for under the new path.
    if (event.isFolder) {
        flush(batch);
        m_calls.read(joined(event.toFolder, event.toName), true);
    }
}

void IndexReconciler::look(const QByteArray &path)
{
    const QByteArray folder = parentOf(path);
    const QByteArray name = nameOf(path);
    if (m_calls.isDistant(folder)) {
        m_calls.read(folder, false);
        return;
    }
    note(folder, name);
    m_eventTime = IndexLosses::now(); // whoever asked knows of an event
    IndexBatch batch;
    const auto entry = m_reader->readEntry(folder, name);
    const IndexItem known = m_catalog.child(itemAt(folder), name);
    if (entry)
        applyChanged(folder, name, false, batch);
    else if (entry.error().kind == XPError::Kind::NotFound && known)
        removeTree(known, batch);
    flush(batch);
    m_eventTime = 0;
    m_reader->closeFolder();
}

void IndexReconciler::lookAtMount(const QByteArray &path)
{
    const QByteArray folder = parentOf(path);
    const QByteArray name = nameOf(path);
    if (m_calls.isDistant(folder) || itemAt(folder) == 0)
        return;
    look(path);
    const auto entry = m_reader->readEntry(folder, name);
    m_reader->closeFolder();
    if (!entry || !entry->record.info.isDirectory())
        return;
    if (entry->descend) {
        m_calls.read(path, true);
        return;
    }
    // What lies below is covered by the mount.
    const IndexItem item = itemAt(path);
    IndexBatch batch;
    if (m_catalog.childCount(item) > 0) {
        removeTree(item, batch);
        std::erase_if(batch, [&](const IndexChange &change) { return change.record.item == item; });
    }
    flush(batch);
}
