#include "XPFileDeeds.h"

#include "XPFileMover.h"
#include "XPFileTransfers.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPTrash.h"

#include <cerrno>

using Kind = XPFileDeed::Kind;
using Chain = XPFileDeeds::Chain;
using Action = XPFileStep::Action;

static Chain chainOf(const XPFileStep &step)
{
    Chain chain;
    if (!step.inTrash.isEmpty())
        chain.append({Kind::Trashed, step.to, step.inTrash});
    if (!step.keptAside.isEmpty())
        chain.append({Kind::Moved, step.to, step.keptAside});
    if (step.action == Action::Moved)
        chain.append({Kind::Moved, step.from, step.to});
    if (step.action == Action::Copied) // its mark goes with it
        chain.append({Kind::Made, {}, step.to});
    else if (step.mark)
        chain.append({Kind::Marked, step.to, step.to, *step.mark});
    return chain;
}

QList<Chain> XPFileDeeds::of(const XPFileReport &report)
{
    QList<Chain> deeds;
    for (const XPFileStep &step : report.steps) {
        if (const Chain chain = chainOf(step); !chain.isEmpty())
            deeds.append(chain);
    }
    return deeds;
}

// The folder that a document comes back to may have been tidied away since.
static std::optional<XPError> moveBack(const QString &from, const QString &to)
{
    if (auto error = XPFolders::create(XPPath::folder(to)))
        return error;
    auto error = XPFileMover::move(from, to);
    if (!error)
        XPFileTransfers::tellMoved(from, to);
    else if (error->code == EEXIST)
        error->path = to;
    return error;
}

// The deed that takes it back, done.
static XPResult<XPFileDeed> takeBackOne(const XPFileDeed &deed)
{
    std::optional<XPError> error;
    XPFileDeed done{deed.kind, deed.after, deed.before, {deed.mark.after, deed.mark.before}};
    switch (deed.kind) {
    case Kind::Moved:
        error = moveBack(deed.after, deed.before);
        break;
    case Kind::Trashed:
        done.kind = Kind::Restored;
        error = XPTrash::putBack(deed.after, deed.before);
        break;
    case Kind::Made:
    case Kind::Restored: {
        const auto inTrash = XPTrash::move(deed.after);
        if (!inTrash)
            return inTrash.error();
        return XPFileDeed{Kind::Trashed, deed.after, *inTrash};
    }
    case Kind::Marked:
        error = deed.mark.before ? XPFiledDocuments::setManaged(*deed.mark.before, deed.after)
                                 : XPFiledDocuments::forgetMark(deed.after);
        break;
    }
    if (error)
        return *error;
    return done;
}

static XPResult<Chain> takeBackChain(const Chain &chain)
{
    Chain done;
    for (auto deed = chain.rbegin(); deed != chain.rend(); ++deed) {
        const auto one = takeBackOne(*deed);
        if (one) {
            done.append(*one);
            continue;
        }
        // Half of it would be neither the old state nor the new one.
        for (auto again = done.rbegin(); again != done.rend(); ++again)
            (void)takeBackOne(*again);
        return one.error();
    }
    return done;
}

XPFileDeeds::Outcome XPFileDeeds::takeBack(const QList<Chain> &deeds,
                                           const XPFileRunOptions &options)
{
    Outcome outcome;
    for (auto chain = deeds.rbegin(); chain != deeds.rend(); ++chain) {
        if (options.progress && !options.progress(outcome.deeds.size())) {
            outcome.left = deeds.first(deeds.rend() - chain);
            break;
        }
        auto done = takeBackChain(*chain);
        if (done)
            outcome.deeds.append(*std::move(done));
        else
            outcome.failures.append(done.error());
    }
    return outcome;
}
