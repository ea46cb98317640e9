#pragma once

#include "KarvexFacts.h"
#include "XPError.h"

#include <functional>

// Keeps the desktop's own tags, rating and comment of a file equal to ours, both ways, while the
// user wants it: the setting "KPMirrorDesktopTags", which is not there before he chose.
//
// Every write of ours is followed by the desktop's attribute, in the same change and under the
// same lock. Where that fails (there is no room for both) ours is put back: both are new, or
// neither is. What cannot be understood there is left alone and said in the log, and so is a tag
// with a comma, which the desktop cannot hold.
// Threads: any; blocking file calls.
namespace KarvexMirror {

extern const QString settingsKey; // "KPMirrorDesktopTags"
bool isOn();
bool wasAsked(); // has chosen, one way or the other

// Runs `write`, which gives our attribute `key` of the file the value (null: removes it), then
// brings the desktop's in line. Under the file's lock. Keys that the desktop knows nothing of are
// just written.
using Write = std::function<std::optional<XPError>()>;
std::optional<XPError> writeWith(const PropertyValue &value, const QString &key,
                                 const QString &path, const Write &write);

// Everything that both sides hold; see KarvexFacts.
XPResult<KarvexFacts::Attributes> read(const QString &path);

// Makes both sides of a file say the same, all or nothing. `base`: what they said when they were
// last known to agree. Nobody is asked for rights.
struct Outcome
{
    KarvexFacts before; // ours
    KarvexFacts after;
    bool changedOurs = false;
    bool changedDesktop = false;
    QStringList unfit;      // tags that the desktop cannot hold
    bool isReadable = true; // something cannot be understood, and was left alone
    bool isEmpty() const { return !changedOurs && !changedDesktop; }
};
XPResult<Outcome> reconcile(const QString &path, const KarvexFacts::Pair &base,
                            bool isDryRun = false);

} // namespace KarvexMirror
