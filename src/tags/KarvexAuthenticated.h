#pragma once

#include "PropertyValue.h"
#include "XPError.h"

class XPAuthorisation;

// The category of Karvex that repeats a refused write with administrator's rights.
//
// Such a write stores the value as XML text. Every failure is the error -4, save for a value that
// is too big (-5) or cannot be an XML property list (-2): nobody is asked for these. In the middle
// of a change, where the thread holds a file's lock (KarvexFileLock), nobody is asked either and
// only rights that are there count; see karvexUnderLock().
// Threads: any; runs are one after the other. Blocks while the user is asked.
class KarvexAuthenticated
{
public:
    // The process's authorisation, or null when the user (or the machine) gives none. Asks at
    // most once, and not at all for 20 seconds after a refusal.
    static XPAuthorisation *getAuthenticationPossiblyUsingUI(const QString &prompt);
    // Whether a change that failed so may be tried again, with rights that were there or that the
    // user gave now. Nobody is asked while the thread holds a lock.
    static bool obtainFor(const XPError &error);

    // `key` is the full attribute name; a null value removes the attribute.
    static std::optional<XPError> authenticatedSetXAttr(const PropertyValue &value,
                                                        const QString &key, const QString &path);

    // The same for bytes as they are; no value removes.
    static std::optional<XPError> writeBytes(const std::optional<QByteArray> &bytes,
                                             const QString &key, const QString &path);

    // While it exists, nobody is asked for what its thread does: for long work in the background.
    class NoDialogs
    {
    public:
        NoDialogs();
        ~NoDialogs();
        NoDialogs(const NoDialogs &) = delete;
        NoDialogs &operator=(const NoDialogs &) = delete;

    private:
        const bool m_before;
    };

    // The failure of a plain write that may be tried again here: EACCES, while the process-wide
    // switch allows dialogs and the thread is none of NoDialogs.
    static bool mayRetry(const XPError &error);
};
